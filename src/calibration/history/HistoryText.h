#pragma once

#include "calibration/history/CalibrationHistory.h"

#include <optional>
#include <string>
#include <vector>

namespace ombrix {

/// How one calibration point has drifted over the runs of a kind.
struct DriftSeries {
    /// What the point is ("Point 3: 30 %").
    std::string Name;
    /// By run: the deviation from the first run that has the point and came to its end; nothing
    /// where it was not measured, or there is no such run.
    std::vector<std::optional<double>> Deviations;
    /// By how much the last run may have been off at the point, by the limits that it was judged
    /// by; nothing for a kind of run without such a limit.
    std::optional<double> Limit{};
};

/// The drift of all points.
struct Drift {
    std::string Unit;
    /// When each run began, oldest first.
    std::vector<OleDate> Runs;
    std::vector<DriftSeries> Series;
};

enum class DriftScale { PercentOfFullScale, Physical };

/// The drift of a unit's points over the runs of a kind. @param channel the air channel from 0;
/// the pressure has one only
Drift DriftOf(const CalibrationHistory& history, RunKind kind, std::size_t channel,
              DriftScale scale);

/// Every point of every calibration of a history as comma-separated values; a health check has a
/// line without points.
std::string HistoryCsv(const CalibrationHistory& history);

/// A text as a field of comma-separated values.
std::string CsvField(const std::string& text);

/// A calibration that was cancelled, stopped or interrupted may have measured what had not settled:
/// others are not compared with it, and no unit is judged by it.
bool CameToItsEnd(const HistoryEntry& run);

/// The verdict in lists: one that a system run has passed is no table in the unit yet ("passed, not
/// stored").
std::string ShownVerdict(const HistoryEntry& run);

/// A run for people to read: what it was, what it came to, and its points.
std::string DetailsOf(const HistoryEntry& run);

} // namespace ombrix
