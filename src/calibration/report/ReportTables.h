#pragma once

#include "calibration/judge/VelocityMeasurement.h"
#include "calibration/unit/ACURecord.h"
#include "spreadsheet/Spreadsheet.h"

namespace ombrix {

/// Fills a channel's part of the report sheet: points, best fit, steps and segments.
/// @param stored the channel's table in the EPROM; an audit shows it in place of a new one
void FillReportTables(Worksheet& report, std::size_t channel, const ChannelMeasurement& measured,
                      CalibrationKind kind, const ACUChannelCal& stored);

/// Fills a channel's sheet of traces: times and readings of every sweep and step.
void FillTraces(Worksheet& traces, const ChannelMeasurement& measured);

} // namespace ombrix
