#pragma once

#include "board/AIBTools.h"
#include "calibration/unit/ACURecord.h"

#include <array>
#include <cstdint>
#include <vector>

namespace ombrix {

inline constexpr std::size_t AirChannels = 2;

enum class CalibrationKind { System, Audit };

/// One reading of a trace; the time counts from the moment when the demand was set.
struct TraceSample {
    float Time_s = 0.0F;
    std::int32_t Reading_bits = 0;
};

/// What was read at one demand: the mean of the last seconds, and the trace up to then.
struct PointReading {
    std::int32_t Reading_bits = 0;
    float Flow_ml_m = 0.0F;
    /// At least one reading went into the means.
    bool Valid = false;
    std::vector<TraceSample> Trace{};
};

/// What an air channel is told at a calibration point.
struct PointDemand {
    std::int32_t Bits = 0;
    float Flow_ml_m = 0.0F;
};

/// A demand set from zero air, measured beside the sweeps.
struct StepMeasurement {
    std::int32_t Point = 0;
    PointDemand Demand;
    PointReading Reading;
};

/// Everything that was measured on one air channel, and what was made of it.
struct ChannelMeasurement {
    /// Full-scale flow in ml/min; a channel without capacity is not there and is not measured.
    float Capacity_ml_m = 0.0F;
    /// One element a point; readings of a run that ended early stay invalid.
    std::vector<PointDemand> Demand;
    std::vector<PointReading> Rising;
    std::vector<PointReading> Falling;
    std::vector<StepMeasurement> Steps;
    /// Best-fit line through all readings in bits against demand in bits; system runs only.
    Line BestFit;
    /// The segments between the points; made of acceptable data only.
    ACUChannelCal NewVelocityCal;
    bool DataAcceptable = false;
    bool AuditPassed = false;
};

/// What a velocity calibration has measured: made by the run; read by checks, fit, log and
/// workbooks.
struct VelocityMeasurement {
    CalibrationKind Kind = CalibrationKind::System;
    std::array<ChannelMeasurement, AirChannels> Channels;
};

} // namespace ombrix
