#pragma once

#include "calibration/CalibrationLog.h"
#include "calibration/VelocityMeasurement.h"

namespace ombrix {

/// Judges what a system run has measured on a channel: at every point the rising and the falling
/// reading must agree within 0.2 % of full scale. Points that deviate from the best-fit straight
/// line by more than 0.1 % of full scale are warned of. Every step stands in the log.
/// @param bestFit takes the line through all readings
bool CheckSystemCalibrationData(const ChannelMeasurement& measured, Line& bestFit,
                                CalibrationLog& log);

/// Judges what an audit has measured on a channel: the mean flow of every point must be within
/// 1 % of reading of its demand, at 10 % of full scale and below within 0.1 % of full scale.
bool CheckAuditCalibrationData(const ChannelMeasurement& measured, CalibrationLog& log);

/// Whether every reading is higher than that at the point below it, on both sweeps.
bool ReadingsRiseWithDemand(const ChannelMeasurement& measured);

} // namespace ombrix
