#include "terminal/OmbrixctlTest.h"

namespace ombrix {
namespace {

std::string FileName(const json& result) {
    return std::filesystem::path(result["files"].at(0).get<std::string>()).filename().string();
}

TEST_F(OmbrixctlTest, MFCTestGivesItsMeans) {
    const Outcome outcome = RunSimulated("--yes --time-scale max test mfc");
    EXPECT_EQ(outcome.Status, 0) << Errors();
    EXPECT_TRUE(FileName(outcome.Result).starts_with("ACU_301_M9200301A_"));
    ASSERT_EQ(outcome.Result["results"].size(), 2U);
    for (const json& means : outcome.Result["results"]) {
        ASSERT_EQ(means.size(), 10U);
        EXPECT_NEAR(means[5].get<double>(), 52428, 100);
    }
    const Outcome declined = RunSimulated("--time-scale max test mfc");
    EXPECT_EQ(declined.Status, 1);
    EXPECT_EQ(declined.Result["files"], json::array());
    EXPECT_EQ(declined.Result["error"], "The test of the digital MFCs has been cancelled.");
}

struct SweepCase {
    const char* Options;
    const char* NameEnding;
    int Lines;
};

class AirSweepCommand : public OmbrixctlTest, public ::testing::WithParamInterface<SweepCase> {};

TEST_P(AirSweepCommand, SweepsAsItsOptionsSay) {
    const SweepCase& c = GetParam();
    const Outcome outcome =
        RunSimulated(std::string("--time-scale max test air-sweep ") + c.Options);
    EXPECT_EQ(outcome.Status, 0) << Errors();
    EXPECT_EQ(outcome.Result["lines"], c.Lines);
    constexpr std::size_t stampEnd = std::string_view("AirData20240315_140509").size();
    EXPECT_EQ(FileName(outcome.Result).substr(stampEnd), c.NameEnding);
}

INSTANTIATE_TEST_SUITE_P(
    Options, AirSweepCommand,
    ::testing::Values(SweepCase{"", ".csv", 34}, SweepCase{"--step 13000", "_D4000_S13000.csv", 6},
                      SweepCase{"--delay 10", "_D10_S1000.csv", 66},
                      SweepCase{"--both-ways --step 65000 --delay 0", "_D0_S65000.csv", 4}));

TEST_F(OmbrixctlTest, AirSweepRefusesWhatTheControlsDoNotOffer) {
    EXPECT_EQ(RunSimulated("test air-sweep --step 0").Status, 2);
    EXPECT_EQ(RunSimulated("test air-sweep --delay -1").Status, 2);
}

TEST_F(OmbrixctlTest, AirFlowTestNeedsItsBoards) {
    const Outcome outcome = Run("--simulate=airflow --time-scale max test air-flow");
    EXPECT_EQ(outcome.Status, 0) << Errors();
    EXPECT_NEAR(outcome.Result["lines"].get<int>(), 381 * 64, 2);
    EXPECT_TRUE(FileName(outcome.Result).starts_with("_AirTest_"));

    const Outcome missing = RunSimulated("--time-scale max test air-flow");
    EXPECT_EQ(missing.Status, 3);
    EXPECT_EQ(missing.Result["error"], "tAIB_Flow AND tAIB_Measure are Nothing!");
    EXPECT_EQ(missing.Result["lines"], 0);
}

TEST_F(OmbrixctlTest, SpeedTestGivesItsTimes) {
    const Outcome outcome = RunSimulated("--time-scale 100 test speed");
    EXPECT_EQ(outcome.Status, 0) << Errors();
    EXPECT_GT(outcome.Result["analogSeconds"].get<double>(), 0.0);
    EXPECT_GT(outcome.Result["digitalSeconds"].get<double>(), 0.0);
    EXPECT_EQ(outcome.Result["files"], json::array());
}

TEST_F(OmbrixctlTest, InterruptCancelsABenchTest) {
    const Outcome outcome = Run("--simulate=airflow --time-scale 20 test air-flow", "",
                                "timeout --preserve-status -s INT 0.5");
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_EQ(outcome.Result["error"], "The air flow test has been cancelled.");
    EXPECT_GT(outcome.Result["lines"].get<int>(), 0);
}

TEST_F(OmbrixctlTest, LostBoardIsAnErrorOfTheBenchTest) {
    const Outcome outcome =
        Run("--simulate=plain --time-scale max --fault unplug@9 test air-sweep");
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_NE(outcome.Result["error"].get<std::string>().find("does not answer"),
              std::string::npos);
    EXPECT_EQ(outcome.Result["lines"], 2);
}

} // namespace
} // namespace ombrix
