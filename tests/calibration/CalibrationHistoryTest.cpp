#include "calibration/history/CalibrationHistory.h"

#include "calibration/CalibrationBench.h"
#include "calibration/MeasuredChannels.h"
#include "calibration/history/HistoryText.h"
#include "calibration/history/UnitSummary.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace ombrix {
namespace {

constexpr const char* Path = R"(C:\History\ACU00301.jsonl)";

TEST(CalibrationHistory, EveryRunThatMeasuredLeavesItsRecord) {
    CalibrationBench bench("acu");
    const ACURecord found = bench.Record().Record();
    bench.SetUp.RunVelocity(CalibrationKind::System);
    bench.Bench.Messages.Answers = {Answer::Cancel};
    bench.SetUp.RunVelocity(CalibrationKind::System); // declined: nothing was run
    const double now_s = MonotonicSeconds(bench.Bench.Time);
    bench.Bench.Events.At(now_s + 20.0, [&] { bench.Cancel(); });
    bench.SetUp.RunVelocity(CalibrationKind::Audit);
    bench.SetUp.RunPressure(CalibrationKind::Audit);

    const CalibrationHistory history = ReadHistory(bench.Bench.Files, 301);
    ASSERT_EQ(history.Runs.size(), 3U);
    const HistoryEntry& system = history.Runs[0];
    EXPECT_EQ(system.Verdict, VerdictOf(End::Passed));
    EXPECT_EQ(system.Found.VelocityCal[1], found.VelocityCal[1]);
    EXPECT_EQ(system.Left.value().VelocityCal[1], bench.Record().Record().VelocityCal[1]);
    EXPECT_EQ(FitSegments(system.Velocity.Channels[0]), system.Left->VelocityCal[0])
        << "the points are those that the stored table was made of";
    EXPECT_EQ(system.Limits.at(0), (std::pair<std::string, float>("hysteresis_bits", 131.068F)));
    EXPECT_EQ(system.Files.size(), 2U);
    EXPECT_EQ(history.Runs[1].Verdict, VerdictOf(End::Cancelled));
    EXPECT_TRUE(history.Runs[1].Velocity.Channels[0].Rising.at(0).Valid);
    EXPECT_FALSE(history.Runs[1].Left.has_value());
    EXPECT_EQ(history.Runs[2].Pressure.size(), 5U);
    EXPECT_EQ(history.Runs[2].Left.value().PressureAuditDate,
              bench.Record().Record().PressureAuditDate)
        << "an audit's result is in the EPROM as well";
}

TEST(CalibrationHistory, AFailureHasItsReason) {
    CalibrationBench bench("acu", {"hysteresis:1,150"});
    bench.SetUp.RunVelocity(CalibrationKind::System);
    const HistoryEntry run = ReadHistory(bench.Bench.Files, 301).Runs.at(0);
    EXPECT_EQ(run.Verdict, VerdictOf(End::Failed));
    EXPECT_EQ(run.Reasons.at(0), "The data collected from channel 2 was not acceptable");
}

HistoryEntry AuditEntry(float raisedBy_ml_m) {
    HistoryEntry entry;
    entry.Kind = RunKind::VelocityAudit;
    entry.When = OleDate(45000.0 + static_cast<double>(raisedBy_ml_m));
    entry.Serial = 301;
    entry.Program.Computer = "bench, \"left\"";
    entry.Verdict = VerdictOf(End::Passed);
    entry.Velocity = GoodRun(CalibrationKind::Audit).Measured;
    for (PointReading& reading : entry.Velocity.Channels[0].Falling)
        reading.Flow_ml_m += 2.0F * raisedBy_ml_m;
    return entry;
}

TEST(CalibrationHistory, DamagedLinesArePassedOverAndCounted) {
    TestBench bench;
    EXPECT_TRUE(AppendToHistory(bench.World, AuditEntry(0.0F)));
    std::string text = bench.Files.ReadFile(Path);
    text.insert(text.find('\n') + 1, "{}\nnot JSON\n{\"when\":\"2026-\n");
    bench.Files.ReplaceFile(Path, text + "{\"when"); // cut off
    EXPECT_TRUE(AppendToHistory(bench.World, AuditEntry(20.0F)));
    const CalibrationHistory history = ReadHistory(bench.Files, 301);
    EXPECT_EQ(history.DamagedLines, 4);
    EXPECT_EQ(history.Runs.size(), 2U) << "each but what was damaged";
}

TEST(CalibrationHistory, TheDriftIsThatFromTheFirstRun) {
    CalibrationHistory history{{AuditEntry(0.0F), AuditEntry(10.0F), AuditEntry(-25.0F)}};
    history.Runs[1].Velocity.Channels[0].Rising[4].Valid = false;
    history.Runs.push_back(AuditEntry(1.0F));
    history.Runs.back().Kind = RunKind::PressureAudit; // of another kind
    const auto kind = RunKind::VelocityAudit;
    const Drift percent = DriftOf(history, kind, 0, DriftScale::PercentOfFullScale);
    ASSERT_EQ(percent.Series.size(), 10U);
    EXPECT_EQ(percent.Series[2].Name, "Point 3: 9 %");
    EXPECT_NEAR(percent.Series[2].Deviations.at(1).value(), 0.2, 1e-5) << "10 of 5000 ml/min";
    EXPECT_FALSE(percent.Series[4].Deviations.at(1));
    const Drift flow = DriftOf(history, kind, 0, DriftScale::Physical);
    EXPECT_NEAR(flow.Series[9].Deviations.at(2).value(), -25.0, 1e-3);

    EXPECT_NEAR(percent.Series[2].Limit.value_or(0.0), 0.0, 0.0) << "judged by none";
    for (HistoryEntry& run : history.Runs)
        run.Limits = LimitsOf(run.Kind);
    const Drift limited = DriftOf(history, kind, 0, DriftScale::PercentOfFullScale);
    EXPECT_NEAR(limited.Series[2].Limit.value(), 0.1, 1e-6) << "at 9 %, of full scale";
    EXPECT_NEAR(limited.Series[9].Limit.value(), 0.9, 1e-6) << "at 90 %, of reading";
    EXPECT_NEAR(DriftOf(history, kind, 0, DriftScale::Physical).Series[9].Limit.value(), 45.0,
                1e-3);

    const std::string csv = HistoryCsv(history);
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 1 + 3 * 20);
    EXPECT_NE(csv.find(",\"bench, \"\"left\"\"\",velocity-audit,passed,1,5,"), std::string::npos);
}

TEST(CalibrationHistory, ARunThatWasBrokenOffIsNoBaseline) {
    CalibrationHistory history{{AuditEntry(7.0F), AuditEntry(0.0F), AuditEntry(10.0F)}};
    const auto drift = [&] {
        return DriftOf(history, RunKind::VelocityAudit, 0, DriftScale::Physical).Series.at(9);
    };
    for (const char* verdict :
         {VerdictOf(End::Cancelled), VerdictOf(End::Stopped), InterruptedVerdict}) {
        history.Runs[0].Verdict = verdict;
        EXPECT_NEAR(drift().Deviations.at(0).value(), 7.0, 1e-3) << "shown, against the next one";
        EXPECT_NEAR(drift().Deviations.at(2).value(), 10.0, 1e-3);
    }
    history.Runs.resize(1);
    EXPECT_FALSE(drift().Deviations.at(0)) << "nothing to compare with";
}

TEST(UnitSummary, ALateRunThatWasNotGoodMakesTheUnitDue) {
    HistoryEntry system = AuditEntry(-3.0F);
    system.Kind = RunKind::VelocitySystem;
    system.Velocity = GoodRun(CalibrationKind::System).Measured;
    system.Left.emplace().MFCNumber = "MFC-7       ";
    CalibrationHistory history{{system}};
    EXPECT_EQ(SummaryOf(301, history).Due, OleDate(system.When.Days() + 365.0));
    EXPECT_EQ(SummaryOf(301, history).WorstPoint, std::nullopt);
    history.Runs = {AuditEntry(0.0F), system, AuditEntry(-60.0F)};
    history.Runs[2].Velocity.Channels[0].Rising[9].Valid = false; // not judged, no drift
    history.Runs[2].Verdict = VerdictOf(End::Failed);
    const UnitSummary failed = SummaryOf(301, history);
    EXPECT_EQ(failed.LastSystem, system.When);
    EXPECT_EQ(failed.LastAudit, history.Runs[2].When);
    EXPECT_EQ(failed.Verdict, VerdictOf(End::Failed));
    EXPECT_EQ(failed.Due, history.Runs[2].When) << "at once";
    ASSERT_TRUE(failed.WorstPoint && failed.Drift_percentOfFullScale);
    EXPECT_EQ(failed.WorstPoint->Channel, 1U);
    const PointVerdict judged = JudgePoint(history.Runs[2].Velocity.Channels[0],
                                           CalibrationKind::Audit, failed.WorstPoint->Number - 1);
    EXPECT_NEAR(failed.WorstPoint->Percent_ofLimit, 100.0 * judged.OfLimit.value(), 1e-9);
    EXPECT_NEAR(*failed.Drift_percentOfFullScale, -60.0 / 5000.0 * 100.0, 1e-5);
    history.Runs.push_back(AuditEntry(9.0F));
    history.Runs.back().Verdict = VerdictOf(End::Cancelled);
    EXPECT_EQ(SummaryOf(301, history).LastAudit, failed.LastAudit)
        << "a cancelled run says nothing";
    history.Runs.back().Verdict = VerdictOf(End::Passed);
    EXPECT_EQ(SummaryOf(301, history).Due, history.Runs[3].When) << "nothing was stored";
    EXPECT_EQ(UnitsCsv({failed}).find("serial,mfc_number"), 0U);
    EXPECT_TRUE(UnitSummary{}.IsDue(OleDate(45000.0))) << "never calibrated";
}

} // namespace
} // namespace ombrix
