#include "mainwindow/OutputSweep.h"

#include "mainwindow/BenchTestFixture.h"

namespace ombrix {
namespace {

const std::string Header = "Input,Output1,Output2,Output3,Output4";

class OutputSweepTest : public BenchTestFixture {
  protected:
    SweepResult Run(const SweepPlan& plan) {
        OutputSweep sweep(*m_Station, *m_Sliders);
        m_Cancel = [&sweep] { sweep.Cancel(); };
        const SweepResult result = sweep.Run(
            plan, {.Caption = [this](const std::string& text) { m_Captions.push_back(text); }});
        ExpectLeftSafely();
        return result;
    }
    /// What the first column of the file holds.
    static std::vector<std::string> Inputs(const std::vector<std::string>& lines) {
        std::vector<std::string> inputs;
        for (const std::string& line : lines)
            inputs.push_back(Fields(line)[0]);
        return inputs;
    }

    std::function<void()> m_Cancel;
    std::vector<std::string> m_Captions;
};

TEST_F(OutputSweepTest, UpperHalfIsLoggedAsTheUnitDeliversIt) {
    Use("plain");
    const SweepResult result = Run(SweepPlan::UpperHalf());
    EXPECT_EQ(result.Outcome.Ended, End::Completed);
    EXPECT_EQ(result.Outcome.Files.at(0).filename(), "AirData20240315_140509.csv");
    EXPECT_NEAR(Now_s(), 34 * 4.0, 0.1);
    const std::vector<std::string> lines = LinesOf(result.Outcome);
    ASSERT_EQ(lines.size(), 35U);
    EXPECT_EQ(result.Lines, 34);
    EXPECT_EQ(lines[0], Header);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const std::vector<std::string> fields = Fields(lines[i]);
        const int level = 31000 + 1000 * static_cast<int>(i);
        ASSERT_EQ(fields.size(), 5U);
        EXPECT_EQ(fields[0], std::to_string(level));
        EXPECT_NEAR(std::stoi(fields[1]), level, 100);
        EXPECT_NEAR(std::stoi(fields[2]), level, 100);
        EXPECT_GT(std::stoi(fields[3]), 6800) << "the back-pressure";
    }
    EXPECT_EQ(m_Captions.front(), "32000 bits");
    EXPECT_LT(m_Bench->FlowLater_bits(), TestBench::NoFlow_bits);
}

struct SteppedCase {
    std::int32_t Step_bits;
    bool BothWays;
    const char* FileName;
    std::vector<std::string> FirstColumn;
};

class SteppedSweep : public OutputSweepTest, public ::testing::WithParamInterface<SteppedCase> {};

TEST_P(SteppedSweep, GoesThroughTheWholeRange) {
    const SteppedCase& c = GetParam();
    Use("plain");
    const SweepResult result = Run(SweepPlan::Stepped(c.Step_bits, 250, c.BothWays));
    EXPECT_EQ(result.Outcome.Files.at(0).filename(), c.FileName);
    EXPECT_EQ(Inputs(LinesOf(result.Outcome)), c.FirstColumn);
}

INSTANTIATE_TEST_SUITE_P(Plans, SteppedSweep,
                         ::testing::Values(SteppedCase{20000,
                                                       true,
                                                       "AirData20240315_140509_D250_S20000.csv",
                                                       {"Input", "0", "20000", "40000", "60000", "",
                                                        "Input", "65000", "45000", "25000",
                                                        "5000"}},
                                           SteppedCase{32500,
                                                       false,
                                                       "AirData20240315_140509_D250_S32500.csv",
                                                       {"Input", "0", "32500", "65000"}},
                                           SteppedCase{65535,
                                                       true,
                                                       "AirData20240315_140509_D250_S65535.csv",
                                                       {"Input", "0", "", "Input", "65000"}}));

TEST_F(OutputSweepTest, SweepWithoutADelayCanBeCancelled) {
    Use("plain");
    int passes = 0;
    m_Bench->Events.EveryPass = [&] {
        if (++passes == 5)
            m_Cancel();
    };
    const SweepResult result = Run(SweepPlan::Stepped(1, 0, false));
    EXPECT_EQ(result.Outcome.Ended, End::Cancelled);
    EXPECT_EQ(result.Lines, 4);
}

TEST_F(OutputSweepTest, CancelAndTheEndOfTheProgramLeaveWhatWasMeasured) {
    for (const bool programEnds : {false, true}) {
        Use("acu");
        At(10.0, [this, programEnds] {
            EXPECT_EQ(m_Station->g_CurrentAIB->DAC(3), 34000);
            programEnds ? m_Bench->Events.EndProgram() : m_Cancel();
        });
        const SweepResult result = Run(SweepPlan::UpperHalf());
        EXPECT_EQ(result.Outcome.Ended, End::Cancelled);
        EXPECT_NEAR(Now_s(), 10.0, 0.01);
        EXPECT_EQ(Inputs(LinesOf(result.Outcome)),
                  (std::vector<std::string>{"Input", "32000", "33000"}));
        EXPECT_LT(m_Bench->FlowLater_bits(), TestBench::NoFlow_bits);
    }
}

TEST_F(OutputSweepTest, LostBoardEndsTheSweepWithinASecond) {
    Use("plain", {"unplug@9"});
    const SweepResult result = Run(SweepPlan::UpperHalf());
    EXPECT_EQ(result.Outcome.Ended, End::Failed);
    EXPECT_NEAR(Now_s(), 10.0, 0.2);
    EXPECT_EQ(LinesOf(result.Outcome).size(), 3U);
    ASSERT_EQ(m_Bench->Messages.Shown.size(), 1U);
    EXPECT_TRUE(m_Bench->Messages.Shown[0].Text.starts_with("The air test has been stopped."));
}

TEST_F(OutputSweepTest, FullDiskEndsTheSweepWithWholeLines) {
    Use("plain");
    m_Disk->WritesLeft = 3;
    SweepResult result = Run(SweepPlan::UpperHalf());
    EXPECT_EQ(result.Outcome.Ended, End::NotStored);
    EXPECT_EQ(LinesOf(result.Outcome).size(), 3U);
    EXPECT_EQ(m_Bench->Messages.Shown.size(), 1U);

    m_Disk->NoNewFiles = true;
    result = Run(SweepPlan::UpperHalf());
    EXPECT_EQ(result.Outcome.Ended, End::NotStored);
    EXPECT_TRUE(result.Outcome.Files.empty());
}

} // namespace
} // namespace ombrix
