#pragma once

#include "calibration/judge/VelocityMeasurement.h"
#include "calibration/run/CalibrationLog.h"

namespace ombrix {

/// What calibrations are judged by.
namespace AcceptanceLimits {
/// 0.2 % and 0.1 % of full scale.
inline constexpr double Hysteresis_bits = 131.068;
inline constexpr double Deviation_bits = 65.534;
/// Of reading; at low points of full scale.
inline constexpr float Error_percent = 1.0F;
inline constexpr float LowError_percent = 0.1F;
/// Up to this share of full scale an audit point is judged by full scale, not by its reading.
inline constexpr int LowPoint_percent = 10;
inline constexpr float Pressure_mBar = 0.5F;
} // namespace AcceptanceLimits

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
