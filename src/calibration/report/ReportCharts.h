#pragma once

#include "calibration/judge/Judgement.h"
#include "spreadsheet/Spreadsheet.h"

#include <optional>
#include <vector>

namespace ombrix {

/// Values of the points of a calibration, one after the other; nothing where none was taken.
using PointValues = std::vector<std::optional<float>>;

/// What tables and charts of a velocity run show of a channel, in the unit that the run judges
/// by: bits in a system run, ml/min in an audit.
struct VelocitySeries {
    PointValues Demand;
    /// What the readings are compared with: the best-fit line, or the demand of an audit.
    PointValues Expected;
    PointValues Rising;
    PointValues Falling;
    /// Falling less rising.
    PointValues Difference;
    /// Readings less what was expected.
    PointValues RisingDeviation;
    PointValues FallingDeviation;
    /// Of the mean of both sweeps, which an audit is judged by; empty in a system run.
    PointValues MeanDeviation;
    /// Between which it may lie; a system run only warns of what lies beyond. An audit's limits are
    /// a share of the reading, so they are not alike.
    PointValues UpperLimit;
    PointValues LowerLimit;
};

VelocitySeries SeriesOf(const VelocityResult& result, std::size_t channel);

/// What the values of a run of that kind count: "bits" or "ml/min".
const char* ReadingUnit(CalibrationKind kind);

/// What became of a channel.
enum class ChannelState { NotPresent, NotMeasured, Incomplete, Failed, Passed };
ChannelState StateOf(const VelocityResult& result, std::size_t channel);

/// Draws a channel's charts: its readings, and how far they are from what was expected. A
/// channel that was not measured has none.
/// @param data takes what the charts are drawn from
void DrawReportCharts(Worksheet& charts, Worksheet& data, std::size_t channel,
                      const VelocityResult& result);

/// Draws how the air rose in a channel's steps from zero. @param traces the channel's traces
void DrawStepCharts(Worksheet& charts, const Worksheet& traces, std::size_t channel,
                    const ChannelMeasurement& measured);

} // namespace ombrix
