#include "board/Detection.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

class RecordedDetection final : public DetectionView {
  public:
    std::string Outcome;
    std::vector<std::string> Story;
    std::map<std::int32_t, std::string> Tabs;

    void ShowOutcome(const std::string& text) override { Outcome = text; }
    void ShowInitState(const std::string& text) override { Story.push_back(text); }
    void ShowProgramming(const std::string& first, const std::string& second) override {
        Story.push_back(first + " / " + second);
    }
    void SetTabCaption(std::int32_t board, const std::string& caption) override {
        Story.push_back(caption);
        Tabs[board] = caption;
    }
};

TEST(Detection, NamesAndProgramsEveryBoard) {
    TestBench bench("pair");
    RecordedDetection view;
    EXPECT_TRUE(DetectAndProgramBoards(bench.TheStation, view));
    EXPECT_EQ(view.Outcome, "ACUs Detected: 2");
    EXPECT_EQ(view.Tabs[0], "AIB_123: USB");
    EXPECT_EQ(view.Tabs[1], "AIB_7: FireWire");
    EXPECT_EQ(view.Story, (std::vector<std::string>{
                              "USB AIB Detected (123)", "Initialising ACU 1: USB",
                              "Programming: AIB 1 / Please Wait...", "Programming USB AIB...",
                              "AIB_123: USB", "FireWire AIB Detected (7)",
                              "Initialising ACU 2: FireWire", "Programming: AIB 2 / Please Wait...",
                              "Programming FireWire AIB...", "AIB_7: FireWire",
                              "Programming Completed / 2 board(s) detected and programmed"}));
    EXPECT_EQ(bench.TheStation.AIBList.AIB(1)->BoardIndex(), 1);
}

TEST(Detection, WithoutBoardsTellsTheTimeOfTheTry) {
    TestBench bench("none");
    RecordedDetection view;
    EXPECT_FALSE(DetectAndProgramBoards(bench.TheStation, view));
    EXPECT_EQ(view.Outcome, "14:05:09 - No AIBs detected");
    EXPECT_EQ(bench.TheStation.AIBList.AIBCount(), 0);
    EXPECT_THROW(bench.TheStation.AIBList.AIB(0), std::out_of_range);
}

TEST(Detection, BoardsOfAnEarlierDetectionLiveOnWhereTheyAreHeld) {
    TestBench bench("acu");
    const std::shared_ptr<AIB> old = (bench.Detect(), bench.TheStation.CurrentAIB);
    bench.Detect();
    EXPECT_NE(old, bench.TheStation.CurrentAIB);
    EXPECT_EQ(old->SetDAC(2, 5), Status::NoError);
}

TEST(Detection, AnUnpluggedBenchHasNoBoards) {
    TestBench bench("acu", {"unplug@1"});
    bench.Detect();
    bench.Time.Advance(2.0);
    std::int32_t count = 9;
    EXPECT_TRUE(bench.TheStation.AIBList.OpenAIBAPI(count));
    EXPECT_EQ(count, 0);
}

} // namespace
} // namespace ombrix
