#include "calibration/history/UnitSummary.h"

#include "calibration/history/HistoryText.h"
#include "calibration/judge/Judgement.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace ombrix {

namespace {

using RunPointers = std::vector<const HistoryEntry*>;

RunPointers WholeRunsOf(const CalibrationHistory& history, RunKind kind) {
    RunPointers runs;
    for (const HistoryEntry& run : history.Runs) {
        if (run.Kind == kind && CameToItsEnd(run))
            runs.push_back(&run);
    }
    return runs;
}

bool IsMeasured(const ChannelMeasurement& measured, std::size_t point) {
    return measured.Rising.at(point).Valid && measured.Falling.at(point).Valid;
}

/// Takes the one that is farther from zero.
void TakeWorse(std::optional<UnitSummary::Point>& worst, const UnitSummary::Point& point) {
    if (!worst || std::abs(point.Percent_ofLimit) > std::abs(worst->Percent_ofLimit))
        worst = point;
}

std::optional<UnitSummary::Point> WorstPointOf(const HistoryEntry& audit) {
    constexpr double percent = 100.0;
    std::optional<UnitSummary::Point> worst;
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const ChannelMeasurement& measured = audit.Velocity.Channels.at(channel);
        for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
            if (!IsMeasured(measured, point))
                continue;
            const auto share = JudgePoint(measured, CalibrationKind::Audit, point).OfLimit;
            if (share)
                TakeWorse(worst, {channel + 1, point + 1, *share * percent});
        }
    }
    return worst;
}

std::optional<double> DriftBetween(const HistoryEntry& before, const HistoryEntry& last) {
    std::optional<double> largest;
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const Drift drift = DriftOf({{before, last}}, RunKind::VelocityAudit, channel,
                                    DriftScale::PercentOfFullScale);
        for (const DriftSeries& series : drift.Series) {
            const auto change = series.Deviations.size() > 1 ? series.Deviations[1] : std::nullopt;
            if (change && series.Deviations[0] &&
                (!largest || std::abs(*change) > std::abs(*largest)))
                largest = change;
        }
    }
    return largest;
}

bool IsGood(const HistoryEntry& run) {
    // A table that was good and is not in the unit calibrates nothing.
    return run.Verdict == VerdictOf(End::Passed) && run.Left.has_value();
}

std::optional<OleDate> DateOf(const HistoryEntry* run) {
    return run == nullptr ? std::nullopt : std::optional(run->When);
}

std::string DateField(std::optional<OleDate> date) {
    return date ? IsoText(*date) : std::string();
}

} // namespace

UnitSummary SummaryOf(std::int32_t serial, const CalibrationHistory& history) {
    const auto lastOf = [](const RunPointers& runs) {
        return runs.empty() ? nullptr : runs.back();
    };
    const RunPointers audits = WholeRunsOf(history, RunKind::VelocityAudit);
    const HistoryEntry* const system = lastOf(WholeRunsOf(history, RunKind::VelocitySystem));
    const HistoryEntry* const audit = lastOf(audits);
    UnitSummary unit{.Serial = serial, .LastSystem = DateOf(system), .LastAudit = DateOf(audit)};
    if (!history.Runs.empty()) {
        const HistoryEntry& last = history.Runs.back();
        unit.MfcNumber = last.Left.value_or(last.Found).ACUMFCNumber();
    }
    // The later of both stands behind the other, whatever a clock that was set back says of them.
    if (const HistoryEntry* const last = std::max(audit, system, std::less<>())) {
        unit.Verdict = ShownVerdict(*last);
        unit.Due = OleDate(last->When.Days() + (IsGood(*last) ? CalibrationInterval_days : 0.0));
    }
    if (audit != nullptr)
        unit.WorstPoint = WorstPointOf(*audit);
    if (audits.size() > 1)
        unit.Drift_percentOfFullScale = DriftBetween(*audits[audits.size() - 2], *audit);
    return unit;
}

std::vector<UnitSummary> SummariesOfUnits(const Drive& files) {
    std::vector<UnitSummary> units;
    for (const std::int32_t serial : UnitsWithHistory(files))
        units.push_back(SummaryOf(serial, ReadHistory(files, serial)));
    return units;
}

std::string UnitsCsv(const std::vector<UnitSummary>& units) {
    std::string csv = "serial,mfc_number,last_system,last_audit,verdict,due,worst_channel,"
                      "worst_point,worst_percentOfLimit,drift_percentOfFullScale\r\n";
    for (const UnitSummary& unit : units) {
        const auto& worst = unit.WorstPoint;
        const auto& drift = unit.Drift_percentOfFullScale;
        csv += fmt::format("{},{},{},{},{},{},{},{}\r\n", unit.Serial, CsvField(unit.MfcNumber),
                           DateField(unit.LastSystem), DateField(unit.LastAudit),
                           CsvField(unit.Verdict), DateField(unit.Due),
                           worst ? fmt::format("{},{},{}", worst->Channel, worst->Number,
                                               FixedText(worst->Percent_ofLimit, 1))
                                 : ",,",
                           drift ? FixedText(*drift, 4) : "");
    }
    return csv;
}

} // namespace ombrix
