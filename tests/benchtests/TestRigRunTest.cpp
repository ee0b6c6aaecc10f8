#include "benchtests/TestRigRun.h"

#include "benchtests/BenchTestFixture.h"
#include "platform/text/Paths.h"

#include <algorithm>
#include <cmath>

namespace ombrix {
namespace {

class RecordedRig final : public TestRigView {
  public:
    /// The statuses of all steps, each time one of them changed.
    std::vector<std::vector<std::string>> Story;
    double Progress_s = 0.0;

    void ShowSteps(const std::vector<TestRigStep>& steps) override {
        Story.emplace_back();
        for (const TestRigStep& step : steps)
            Story.back().emplace_back(RigStatusText(step.Status));
    }
    void BeginProgress(const RampStep& /*ramp*/) override { Progress_s = 0.0; }
    void ShowProgress(double elapsed_s) override { Progress_s = elapsed_s; }
};

class TestRigRunTest : public BenchTestFixture {
  protected:
    TestRigResult Run() {
        TestRigRun run(*m_Station, m_View);
        TestRigResult result = run.Run(TestRigJob::LoopThrough);
        ExpectLeftSafely();
        return result;
    }
    /// The samples of the step that ran last, without the heading.
    static std::vector<std::vector<std::string>> Samples(const TestRigResult& result) {
        std::vector<std::vector<std::string>> samples;
        for (const std::string& line : LinesOf(result))
            samples.push_back(Fields(line));
        samples.erase(samples.begin());
        return samples;
    }

    RecordedRig m_View;
};

const std::vector<int> LevelsUp = {0, 8192, 16384, 24576, 32768, 40959, 49151, 57343, 65535};

/// Every line of a ramp's file, against what the wired boards were told.
void ExpectRamp(const std::vector<std::vector<std::string>>& samples, std::vector<int> levels) {
    constexpr int noise_bits = 10;
    ASSERT_NEAR(static_cast<double>(samples.size()), 720.0, 3.0);
    double before_s = 0.0;
    for (const auto& fields : samples) {
        ASSERT_EQ(fields.size(), 17U);
        const double now_s = std::stod(fields[0]);
        EXPECT_GE(now_s - before_s, 0.0499);
        before_s = now_s;
        const auto value = [&fields](std::size_t column) { return std::stoi(fields[column]); };
        const auto level = static_cast<std::size_t>((now_s - 0.0001) / 4.0);
        const bool atTheEdge = std::abs(std::remainder(now_s, 4.0)) < 0.002;
        const int expected = levels.at(std::min<std::size_t>(level, 8));
        for (std::size_t channel = 0; channel < 4; ++channel) {
            const int output = channel < 2 ? expected : 0;
            EXPECT_TRUE(atTheEdge || value(1 + channel) == output) << fields[0];
            EXPECT_EQ(value(5 + channel), 0) << "outputs of the input board";
            EXPECT_LE(value(9 + channel), noise_bits) << "inputs of the output board";
            EXPECT_NEAR(value(13 + channel), value(1 + channel), noise_bits) << fields[0];
        }
    }
}

TEST_F(TestRigRunTest, RampsAreDrivenAndRecordedLineByLine) {
    Use("rig");
    TestRigResult up;
    At(36.02, [&] { // the file of the second step has begun, and nothing of the first is left
        up.Files = {m_World->Files.RealPath(Paths::TestRig)};
        EXPECT_LE(Samples(up).size(), 1U);
    });
    At(35.99, [&] {
        up.Files = {m_World->Files.RealPath(Paths::TestRig)};
        ExpectRamp(Samples(up), LevelsUp);
    });
    const TestRigResult result = Run();
    EXPECT_EQ(LinesOf(result).front(), "Timer,OutA0,OutA1,OutA2,OutA3,InA0,InA1,InA2,InA3,"
                                       "OutB0,OutB1,OutB2,OutB3,InB0,InB1,InB2,InB3");
    ExpectRamp(Samples(result), {LevelsUp.rbegin(), LevelsUp.rend()});
    EXPECT_EQ(result.Lines, static_cast<std::int64_t>(Samples(result).size()));
    EXPECT_NEAR(Now_s(), 72.0, 0.1);
    const std::vector<std::vector<std::string>> story = {
        {"Queued", "Queued"},
        {"Running...", "Queued"},
        {"Complete (Passed)", "Queued"},
        {"Complete (Passed)", "Running..."},
        {"Complete (Passed)", "Complete (Passed)"}};
    EXPECT_EQ(m_View.Story, story);
    EXPECT_NEAR(m_View.Progress_s, 36.0, 0.01);
}

TEST_F(TestRigRunTest, InputsThatDoNotFollowFailTheStepAndTheJobGoesOn) {
    Use("pair"); // two boards, but nothing between them
    const TestRigResult result = Run();
    EXPECT_EQ(result.Ended, End::Failed);
    EXPECT_EQ(result.Error, result.Steps[0].Remark);
    EXPECT_EQ(m_View.Story.back(),
              (std::vector<std::string>{"Complete (Failed)", "Complete (Failed)"}));
    EXPECT_TRUE(result.Steps[0].Remark.starts_with("Input 0 of board 1 read "))
        << result.Steps[0].Remark;
    EXPECT_TRUE(result.Steps[0].Remark.ends_with(" while output 0 of board 2 was 8192"));
}

TEST_F(TestRigRunTest, StepThatIsBrokenOffIsUnknown) {
    for (const bool inTheSecond : {false, true}) {
        Use("rig");
        At(inTheSecond ? 40.0 : 10.0, [this] { Cancel(); });
        EXPECT_EQ(Samples(Run()).end()[-2].size(), 17U);
        EXPECT_EQ(m_View.Story.back(),
                  inTheSecond ? (std::vector<std::string>{"Complete (Passed)", "UNKNOWN"})
                              : (std::vector<std::string>{"UNKNOWN", "Queued"}));
    }
}

TEST_F(TestRigRunTest, MissingBoardsAreNamed) {
    for (const auto& [name, missing] :
         {std::pair{"acu", "Board 2 is missing."}, std::pair{"none", "Both boards are missing."}}) {
        TestBench bench(name);
        const auto text = TestRigRun::Missing(bench.TheStation, TestRigJob::LoopThrough);
        ASSERT_TRUE(text);
        EXPECT_NE(text->find(missing), std::string::npos) << *text;
    }
}

/// One level of a ramp, of which some readings stray. @return whether the input has followed
bool Follows(int readings, int strays, std::int32_t off_bits) {
    const RampStep ramp = PlanTestRigJob(TestRigJob::LoopThrough).front();
    LoopThroughCheck check(ramp);
    check.BeginLevel(32768);
    check.Note(0.1, {0, 0, 0, 0}); // still on its way from the level before
    for (int reading = 0; reading < readings; ++reading) {
        const std::int32_t input = reading < strays ? 32768 + off_bits : 32768;
        check.Note(3.0, {32768, input, 40000, 40000}); // the last two are not driven
    }
    check.EndLevel();
    return check.Followed();
}

TEST(LoopThrough, InputFollowsWhenMostOfItsSettledReadingsAreWithinOnePerCent) {
    EXPECT_TRUE(Follows(40, 0, 0));
    EXPECT_TRUE(Follows(40, 40, 655));
    EXPECT_FALSE(Follows(40, 40, 656));
    EXPECT_FALSE(Follows(40, 40, -656));
    EXPECT_TRUE(Follows(40, 20, -32768));
    EXPECT_FALSE(Follows(40, 21, -32768));
}

} // namespace
} // namespace ombrix
