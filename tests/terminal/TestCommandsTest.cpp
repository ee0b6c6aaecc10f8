#include "terminal/OmbrixctlTest.h"

#include <vector>

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
}

TEST_F(OmbrixctlTest, AirSweepSweepsAsItsOptionsSay) {
    struct Case {
        const char* Options;
        const char* NameEnding;
        int Lines;
    };
    for (const Case& c : {Case{"", ".csv", 34}, Case{"--step 13000", "_D4000_S13000.csv", 6},
                          Case{"--both-ways --step 65000 --delay 0", "_D0_S65000.csv", 4}}) {
        const Outcome outcome =
            RunSimulated(std::string("--time-scale max test air-sweep ") + c.Options);
        EXPECT_EQ(outcome.Status, 0) << Errors();
        EXPECT_EQ(outcome.Result["lines"], c.Lines);
        constexpr std::size_t stampEnd = std::string_view("AirData20240315_140509").size();
        EXPECT_EQ(FileName(outcome.Result).substr(stampEnd), c.NameEnding);
    }
}

TEST_F(OmbrixctlTest, AirFlowAndSpeedTestGiveTheirResults) {
    const Outcome flow = Run("--simulate=airflow --time-scale max test air-flow");
    EXPECT_EQ(flow.Status, 0) << Errors();
    EXPECT_NEAR(flow.Result["lines"].get<int>(), 381 * 64, 2);
    EXPECT_TRUE(FileName(flow.Result).starts_with("_AirTest_"));
    const Outcome speed = RunSimulated("--time-scale 100 test speed");
    EXPECT_EQ(speed.Status, 0) << Errors();
    EXPECT_GT(speed.Result["analogSeconds"].get<double>(), 0.0);
    EXPECT_GT(speed.Result["digitalSeconds"].get<double>(), 0.0);
}

TEST_F(OmbrixctlTest, ProcedureThatIsNotDoneHasItsStatusAndItsError) {
    enum class End { ByItself, ByInterrupt };
    struct Case {
        const char* Arguments;
        int Status;
        const char* Error;
        End Ends = End::ByItself;
    };
    for (const Case& c : std::vector<Case>{
             {"--time-scale max test mfc", 1, "The test of the digital MFCs has been cancelled."},
             {"--time-scale max test air-flow", 3, "tAIB_Flow AND tAIB_Measure are Nothing!"},
             {"--fault unplug@9 --time-scale max test air-sweep", 1, "does not answer"},
             {"--fault unplug@8 --time-scale max health-check --short", 1, "does not answer"},
             {"health-check --short", 1, "The health check has been cancelled.", End::ByInterrupt},
             {"=airflow --time-scale 20 test air-flow", 1, "The air flow test has been cancelled.",
              End::ByInterrupt},
             {"=acu test rig", 3, "Board 2 is missing."},
             {"=none test rig", 3, "No AIBs"},
             {"=pair --time-scale max test rig", 1, "while output 0 of board 2 was 8192"},
             {"=rig --fault unplug@5 --time-scale max test rig", 1, "does not answer"},
             {"=rig --time-scale 2 test rig", 1, "The test rig job has been cancelled.",
              End::ByInterrupt}}) {
        const std::string simulate = *c.Arguments == '=' ? "--simulate" : "--simulate ";
        const Outcome outcome = c.Ends == End::ByInterrupt
                                    ? RunUntilItDrives(simulate + c.Arguments)
                                    : Run(simulate + c.Arguments);
        EXPECT_EQ(outcome.Status, c.Status) << c.Arguments;
        EXPECT_NE(outcome.Result["error"].get<std::string>().find(c.Error), std::string::npos)
            << outcome.Result["error"];
    }
}

} // namespace
} // namespace ombrix
