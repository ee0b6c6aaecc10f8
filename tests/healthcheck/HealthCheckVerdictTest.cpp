// What a check comes to: by the program, and as LibreOffice works it out in its report.
#include "calibration/history/HistoryText.h"
#include "healthcheck/HealthCheckRun.h"
#include "healthcheck/MFCSequence.h"
#include "spreadsheet/LibreOfficeConverter.h"
#include "support/ReportBench.h"
#include "support/WorkbookProbe.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

struct VerdictCase {
    const char* Name;
    std::vector<std::string> Faults;
    double CancelAt_s;
    End Ended;
    int Completed;
    const char* Verdict;
    const char* Outcome;
    int Failed = 0;
};

class VerdictTest : public ::testing::TestWithParam<VerdictCase> {};

TEST_P(VerdictTest, IsTheSameInTheReportAndInTheHistory) {
    const VerdictCase& c = GetParam();
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
    EXPECT_EQ(text("L2"), c.Verdict);
    EXPECT_TRUE(text("C6").starts_with(c.Outcome)) << text("C6");
    EXPECT_EQ(text("I3"), std::to_string(c.Completed - c.Failed));
    EXPECT_EQ(text("I4"), std::to_string(c.Failed));
    const HistoryEntry run = ReadHistory(bench.Bench.Files, 301).Runs.at(0);
    EXPECT_EQ(run.Kind, RunKind::HealthCheck);
    EXPECT_EQ(run.Verdict, c.Verdict);
    EXPECT_EQ(run.Check.Outcome, text("C6"));
    EXPECT_EQ(CountsText(run.Check),
              fmt::format("{} of {} steps passed, {} failed, {} not evaluated", text("I3"),
                          text("I2"), text("I4"), text("I5")));
    EXPECT_EQ(run.Files.at(0), result.Files.at(0).string());
    EXPECT_EQ(run.Reasons.empty(), run.Verdict == "PASS");
    const CalibrationHistory history{{run}};
    for (const RunKind kind : RunKinds)
        EXPECT_TRUE(DriftOf(history, kind, 0, DriftScale::Physical).Runs.empty());
    EXPECT_EQ(ShownVerdict(run), c.Verdict) << "no table is missing in the unit";
    for (int row = 10; row < 34; ++row) {
        const std::string at = std::to_string(row);
        const bool judged = row < 10 + c.Completed;
        if (c.Failed == 0) {
            EXPECT_EQ(text("N" + at) + text("O" + at), judged ? "PassPass" : "--") << at;
        }
        EXPECT_EQ(text("J" + at) == "-", !judged) << at;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Ends, VerdictTest,
    ::testing::Values(
        VerdictCase{"Healthy", {}, 1e9, End::Passed, 24, "PASS", "Completed"},
        VerdictCase{"OutOfLimits", {"gain:1,50"}, 1e9, End::Failed, 24, "FAIL", "Completed", 15},
        VerdictCase{"Cancelled", {}, 23.4, End::Cancelled, 3, "INCOMPLETE", "Cancelled"},
        VerdictCase{"BoardLost",
                    {"unplug@20"},
                    1e9,
                    End::Stopped,
                    2,
                    "INCOMPLETE",
                    "Stopped: The board does not answer: AIB Generic"},
        VerdictCase{"TooSlow",
                    {"latency:500"},
                    1e9,
                    End::Failed,
                    0,
                    "INCOMPLETE",
                    "Too few samples to evaluate 24 of 24 steps"}),
    [](const auto& info) { return info.param.Name; });

TEST(LimitsTest, AreThoseOfTheSitesTemplateAndAValueOnThemPasses) {
    MFCSequence sequence;
    sequence.AddStep(0.2F, 0.0F, 10.0F);
    std::vector<MFCStep::Sample> samples;
    for (std::int32_t time_ms = 0; time_ms < 10000; time_ms += 20)
        samples.push_back({time_ms, 0, 13107 + 656, 0, 655, 0});
    sequence.AddSamples(0, samples, true);
    const StepJudgement usual = JudgeStep(sequence.Step(0), {});
    EXPECT_EQ(usual.Channels[0].Verdict, StepVerdict::Fail) << "656 of 655.35 bits";
    EXPECT_EQ(usual.Channels[1].Verdict, StepVerdict::Pass);
    EXPECT_EQ(usual.Why, "Channel 1: the end value is 1.001 % of full scale off its demand; 1 % "
                         "is allowed.");
    EXPECT_EQ(JudgeStep(sequence.Step(0), {656.0 / 65535.0, 65535.0}).Whole(), StepVerdict::Pass);
}

TEST(SlowBoardTest, LeavesTheShortCheckOfAHealthyUnitComplete) {
    for (const char* latency : {"latency:1", "latency:5", "latency:20", "latency:50"}) {
        ReportBench bench("acu", {latency});
        const HealthCheckResult result =
            HealthCheckRun(bench.Reports).Run(std::array{HealthCheckOption::Short}, {});
        EXPECT_TRUE(result.Ended == End::Passed && IsComplete(result.Check))
            << latency << result.Error;
    }
}

} // namespace
} // namespace ombrix
