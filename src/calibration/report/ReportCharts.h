#pragma once

#include "calibration/judge/VelocityMeasurement.h"
#include "spreadsheet/Spreadsheet.h"

namespace ombrix {

/// Draws a channel's charts: its readings, and how far they are from what was expected. A
/// channel that was not measured has none.
/// @param data takes what the charts are drawn from
void DrawReportCharts(Worksheet& charts, Worksheet& data, std::size_t channel,
                      const ChannelMeasurement& measured, CalibrationKind kind);

/// Draws how the air rose in a channel's steps from zero. @param traces the channel's traces
void DrawStepCharts(Worksheet& charts, const Worksheet& traces, std::size_t channel,
                    const ChannelMeasurement& measured);

} // namespace ombrix
