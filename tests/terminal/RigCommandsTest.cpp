#include "terminal/OmbrixctlTest.h"

#include <algorithm>

namespace ombrix {
namespace {

TEST_F(OmbrixctlTest, RigJobTellsItsStepsAndItsFile) {
    const Outcome outcome = Run("--simulate=rig --time-scale max test rig");
    EXPECT_EQ(outcome.Status, 0) << Errors();
    EXPECT_EQ(outcome.Result["command"], "test rig");
    ASSERT_EQ(outcome.Result["files"].size(), 1U) << "each step begins the same file anew";
    const std::string content = ReadWholeFile(outcome.Result["files"][0].get<std::string>());
    const auto lines = std::count(content.begin(), content.end(), '\n') - 1;
    EXPECT_EQ(outcome.Result["lines"], lines);
    ASSERT_EQ(outcome.Result["steps"].size(), 2U);
    EXPECT_EQ(outcome.Result["steps"][0]["name"], "Loop Through: Outputs Up");
    EXPECT_EQ(outcome.Result["steps"][1]["status"], "Complete (Passed)");
}

TEST_F(OmbrixctlTest, RigJobThatCannotBeDoneHasItsExitStatus) {
    struct Case {
        const char* Arguments;
        int Status;
        const char* Error;
    };
    const Case cases[] = {
        {"--simulate=acu", 3, "Board 2 is missing."},
        {"--simulate=none", 3, "No AIBs"},
        {"--simulate=pair", 1, "while output 0 of board 2 was 8192"},
        {"--simulate=rig --fault unplug@5", 1, "does not answer"},
    };
    for (const Case& c : cases) {
        const Outcome outcome = Run(std::string(c.Arguments) + " --time-scale max test rig");
        EXPECT_EQ(outcome.Status, c.Status) << c.Arguments;
        EXPECT_NE(outcome.Result["error"].get<std::string>().find(c.Error), std::string::npos)
            << outcome.Result["error"];
    }
}

TEST_F(OmbrixctlTest, InterruptCancelsTheRigJob) {
    const Outcome outcome =
        Run("--simulate=rig --time-scale 2 test rig", "", "timeout --preserve-status -s INT 0.7");
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_EQ(outcome.Result["error"], "The test rig job has been cancelled.");
    EXPECT_EQ(outcome.Result["steps"][0]["status"], "UNKNOWN");
}

TEST_F(OmbrixctlTest, UartExchangesTellValueAndStatus) {
    const Outcome set = RunSimulated("uart set 1 20000");
    EXPECT_EQ(set.Status, 0);
    EXPECT_EQ(set.Result["value"], 20000);
    EXPECT_EQ(set.Result["statusText"], "AIB No Error");
    EXPECT_TRUE(RunSimulated("uart get 0").Result["value"].is_number());

    const Outcome failed = RunSimulated("--fault status:32@MFCGetFlowrate uart get 1");
    EXPECT_EQ(failed.Status, 1);
    EXPECT_EQ(failed.Result["status"], 32);
    EXPECT_EQ(failed.Result["statusText"], "AIB Timeout");
}

} // namespace
} // namespace ombrix
