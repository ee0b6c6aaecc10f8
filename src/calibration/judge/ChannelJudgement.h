#pragma once

#include "calibration/judge/VelocityMeasurement.h"
#include "calibration/run/CalibrationLog.h"

namespace ombrix {

/// Judges what a run has measured on a channel (from 0) and, for a system run, fits it. Every
/// step stands in the log.
void JudgeChannel(ChannelMeasurement& measured, CalibrationKind kind, std::size_t channel,
                  CalibrationLog& log);

} // namespace ombrix
