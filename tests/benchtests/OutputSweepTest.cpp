#include "benchtests/OutputSweep.h"

#include "benchtests/BenchTestFixture.h"

namespace ombrix {
namespace {

class OutputSweepTest : public BenchTestFixture {
  protected:
    SweepResult Run(const SweepPlan& plan) {
        OutputSweep sweep(*m_Station);
        const SweepResult result = sweep.Run(plan, View());
        ExpectLeftSafely();
        return result;
    }
};

TEST_F(OutputSweepTest, UpperHalfIsLoggedAsTheUnitDeliversIt) {
    Use("plain");
    const SweepResult result = Run(SweepPlan::UpperHalf());
    EXPECT_EQ(result.Ended, End::Passed);
    EXPECT_EQ(result.Files.at(0).filename(), "AirData20240315_140509.csv");
    EXPECT_NEAR(Now_s(), 34 * 4.0, 0.1);
    const std::vector<std::string> lines = LinesOf(result);
    ASSERT_EQ(lines.size(), 35U);
    EXPECT_EQ(result.Lines, 34);
    EXPECT_EQ(lines[0], "Input,Output1,Output2,Output3,Output4");
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
}

TEST_F(OutputSweepTest, SteppedSweepGoesThroughTheWholeRange) {
    struct Case {
        std::int32_t Step_bits;
        bool BothWays;
        std::vector<std::string> FirstColumn;
    };
    for (const Case& c : std::vector<Case>{{20000,
                                            true,
                                            {"Input", "0", "20000", "40000", "60000", "", "Input",
                                             "65000", "45000", "25000", "5000"}},
                                           {32500, false, {"Input", "0", "32500", "65000"}},
                                           {65535, true, {"Input", "0", "", "Input", "65000"}}}) {
        Use("plain");
        const SweepResult result = Run(SweepPlan::Stepped(c.Step_bits, 250, c.BothWays));
        EXPECT_EQ(result.Files.at(0).filename(),
                  "AirData20240315_140509_D250_S" + std::to_string(c.Step_bits) + ".csv");
        std::vector<std::string> firstColumn;
        for (const std::string& line : LinesOf(result))
            firstColumn.push_back(Fields(line)[0]);
        EXPECT_EQ(firstColumn, c.FirstColumn);
    }
}

TEST_F(OutputSweepTest, SweepWithoutADelayCanBeCancelled) {
    Use("plain");
    m_Bench->Events.EveryPass = [this, passes = 0]() mutable {
        if (++passes == 5)
            Cancel();
    };
    const SweepResult result = Run(SweepPlan::Stepped(1, 0, false));
    EXPECT_EQ(result.Ended, End::Cancelled);
    EXPECT_EQ(result.Lines, 4);
}

TEST_F(OutputSweepTest, AnInputThatNeverAnswersEndsTheSweep) {
    Use("acu", {"status:32@MFCGetFlowrate"}); // the pressure input answers
    EXPECT_EQ(Run(SweepPlan::UpperHalf()).Ended, End::Stopped);
}

TEST_F(OutputSweepTest, ALevelThatWasRefusedIsNotMeasuredHoweverShortItsDelay) {
    Use("plain", {"status:32@SetDAC"});
    const SweepResult result = Run(SweepPlan::Stepped(30000, 0, false));
    EXPECT_EQ(result.Ended, End::Stopped);
    EXPECT_EQ(result.Lines, 0);
}

} // namespace
} // namespace ombrix
