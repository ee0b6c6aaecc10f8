#include "terminal/OmbrixctlTest.h"

#include <algorithm>

namespace ombrix {
namespace {

TEST_F(OmbrixctlTest, RigJobTellsItsStepsAndItsFile) {
    const Outcome outcome = Run("--simulate=rig --time-scale max test rig");
    EXPECT_EQ(outcome.Status, 0) << Errors();
    ASSERT_EQ(outcome.Result["files"].size(), 1U) << "each step begins the same file anew";
    const std::string content = ReadWholeFile(outcome.Result["files"][0].get<std::string>());
    const auto lines = std::count(content.begin(), content.end(), '\n') - 1;
    EXPECT_EQ(outcome.Result["lines"], lines);
    ASSERT_EQ(outcome.Result["steps"].size(), 2U);
    EXPECT_EQ(outcome.Result["steps"][0]["name"], "Loop Through: Outputs Up");
    EXPECT_EQ(outcome.Result["steps"][1]["status"], "Complete (Passed)");
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
