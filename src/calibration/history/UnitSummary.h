#pragma once

#include "calibration/history/CalibrationHistory.h"

#include <optional>
#include <string>
#include <vector>

namespace ombrix {

/// A calibration holds for a year from its last run that was good.
inline constexpr double CalibrationInterval_days = 365.0;

/// How a unit stands, by what its history says of its velocity calibration.
struct UnitSummary {
    /// The audit point that used most of its limit.
    struct Point {
        /// Both from 1.
        std::size_t Channel = 0;
        std::size_t Number = 0;
        /// Deviation as a share of what is allowed, with its sign.
        double Percent_ofLimit = 0.0;
    };

    std::int32_t Serial = 0;
    /// As the last run left it.
    std::string MfcNumber{};
    /// The last runs that came to their end, whatever their verdict.
    std::optional<OleDate> LastSystem{};
    std::optional<OleDate> LastAudit{};
    /// Of the last velocity calibration that came to its end; empty without one.
    std::string Verdict{};
    /// When it is to be calibrated again: an interval after the last good run; at once, the date of
    /// that run, when the last run was not good. Nothing for a unit that was never calibrated.
    std::optional<OleDate> Due{};
    /// Of the last audit.
    std::optional<Point> WorstPoint{};
    /// The largest change of a point from the audit before to the last one, with its sign.
    std::optional<double> Drift_percentOfFullScale{};

    bool IsDue(OleDate now) const { return !Due || Due->Days() <= now.Days(); }
};

UnitSummary SummaryOf(std::int32_t serial, const CalibrationHistory& history);

/// The units that have a history, by serial number. @throws DriveError
std::vector<UnitSummary> SummariesOfUnits(const Drive& files);

/// As comma-separated values, with a line of headings.
std::string UnitsCsv(const std::vector<UnitSummary>& units);

} // namespace ombrix
