// What a check that has not measured everything says, as LibreOffice works it out in its report.
#include "healthcheck/HealthCheckRun.h"
#include "spreadsheet/LibreOfficeConverter.h"
#include "support/ReportBench.h"
#include "support/WorkbookProbe.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

struct IncompleteCase {
    const char* Name;
    std::vector<std::string> Faults;
    double CancelAt_s;
    End Ended;
    int Completed;
    const char* Outcome;
};

class IncompleteCheckTest : public ::testing::TestWithParam<IncompleteCase> {};

TEST_P(IncompleteCheckTest, JudgesNoStepThatLacksItsEnd) {
    const IncompleteCase& c = GetParam();
    ReportBench bench("acu", c.Faults);
    bench.Bench.Events.At(c.CancelAt_s, [&bench] { bench.Cancel(); });
    const HealthCheckResult result =
        HealthCheckRun(bench.Reports).Run(std::array{HealthCheckOption::LowCh2}, {});
    EXPECT_EQ(result.Ended, c.Ended);
    EXPECT_EQ(result.Sequences.at(0).Completed, c.Completed);
    WorkbookProbe report(
        LibreOfficeConverter().Convert(ReadWholeFile(result.Files.at(0)), "xlsx", "xlsx"));
    const auto text = [&report](const std::string& cell) {
        const std::string value = report.Value("Overview", cell);
        return value.starts_with('=') ? report.Cell("Overview", cell).child("v").text().get()
                                      : value;
    };
    EXPECT_EQ(text("L2"), "INCOMPLETE");
    EXPECT_TRUE(text("C6").starts_with(c.Outcome)) << text("C6");
    EXPECT_EQ(text("I3") + text("I4"), std::to_string(c.Completed) + "0");
    for (int row = 10; row < 34; ++row) {
        const std::string at = std::to_string(row);
        const bool judged = row < 10 + c.Completed;
        EXPECT_EQ(text("N" + at) + text("O" + at), judged ? "PassPass" : "--") << at;
        EXPECT_EQ(text("J" + at) == "-", !judged) << at;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Ends, IncompleteCheckTest,
    ::testing::Values(IncompleteCase{"Cancelled", {}, 23.4, End::Cancelled, 3, "Cancelled"},
                      IncompleteCase{"BoardLost",
                                     {"unplug@20"},
                                     1e9,
                                     End::Stopped,
                                     2,
                                     "Stopped: The board does not answer: AIB Generic"},
                      IncompleteCase{"TooSlow",
                                     {"latency:500"},
                                     1e9,
                                     End::Failed,
                                     0,
                                     "Too few samples to evaluate 24 of 24 steps"}),
    [](const auto& info) { return info.param.Name; });

TEST(SlowBoardTest, LeavesTheShortCheckOfAHealthyUnitComplete) {
    for (const char* latency : {"latency:1", "latency:5", "latency:20", "latency:50"}) {
        ReportBench bench("acu", {latency});
        const HealthCheckResult result =
            HealthCheckRun(bench.Reports).Run(std::array{HealthCheckOption::Short}, {});
        EXPECT_TRUE(result.Ended == End::Passed && result.Complete()) << latency << result.Error;
    }
}

} // namespace
} // namespace ombrix
