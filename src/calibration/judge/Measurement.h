#pragma once

#include "board/unit/ACURecord.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace ombrix {

inline constexpr std::size_t AirChannels = 2;

enum class CalibrationKind { System, Audit };

/// One reading of a trace; the time counts from the moment when the demand was set.
struct TraceSample {
    float Time_s = 0.0F;
    std::int32_t Reading_bits = 0;
};

/// Of how many last seconds the samples make a reading.
inline constexpr double MeanTime_s = 3.0;

/// What was read at one demand: the means of the last samples, and the trace that they end.
struct PointReading {
    std::int32_t Reading_bits = 0;
    float Flow_ml_m = 0.0F;
    /// At least one sample went into the means.
    bool Valid = false;
    std::vector<TraceSample> Trace{};
};

/// Makes a reading of its trace alone, so that whoever has the trace can make it again: the mean
/// in bits, rounded, and the mean of the samples' flows in ml/min, of the last seconds. A trace
/// without samples there makes none.
/// @param duration_s from the demand to the end of the trace
void TakeMeans(PointReading& reading, double duration_s, float capacity_ml_m);

/// What an air channel is told at a calibration point.
struct PointDemand {
    std::int32_t Bits = 0;
    float Flow_ml_m = 0.0F;
};

/// Percentage of full scale at which a calibration point is taken; 0 for any point but 0 to 9.
std::uint8_t CalPointPrecentage(std::int32_t point, CalibrationKind kind);

/// What a channel of that capacity is told at a point of a calibration: a system run demands
/// bits, an audit a flow, whose bits are found through the stored table when it is set.
PointDemand DemandOfPoint(std::int32_t point, CalibrationKind kind, float capacity_ml_m);

/// The calibration points that are measured from zero air too.
inline constexpr std::array<std::int32_t, 2> StepPoints = {1, 3};

/// A demand set from zero air, measured beside the sweeps.
struct StepMeasurement {
    std::int32_t Point = 0;
    PointDemand Demand;
    PointReading Reading;
};

/// Everything that was measured on one air channel.
struct ChannelMeasurement {
    /// Full-scale flow in ml/min; a channel without capacity is not there and is not measured.
    float Capacity_ml_m = 0.0F;
    /// One element a point; readings of a run that ended early stay invalid.
    std::vector<PointDemand> Demand;
    std::vector<PointReading> Rising;
    std::vector<PointReading> Falling;
    std::vector<StepMeasurement> Steps;
};

/// What a velocity calibration has measured: made by the run; read by judgement, log, journal and
/// workbooks.
struct VelocityMeasurement {
    CalibrationKind Kind = CalibrationKind::System;
    std::array<ChannelMeasurement, AirChannels> Channels;
};

/// The flows that a pressure calibration measures at.
inline constexpr std::size_t PressurePointCount = 5;
/// Diameter in mm of the aeration base that it is made with.
inline constexpr float PressureBase_mm = 50.0F;

/// One point of a pressure calibration.
struct PressureReading {
    float Flow_ml_m = 0.0F;
    /// Bits in a system run, mBar in an audit.
    float Reading = 0.0F;
};

/// A sample of the line's pressure.
struct PressureSample {
    float Time_s = 0.0F;
    std::int32_t Reading_bits = 0;
    /// Measured in an audit only.
    float Pressure_mBar = 0.0F;
};

/// The mean that a pressure point is judged by: of the bits in a system run, of the pressures in
/// mBar in an audit; nothing without samples.
std::optional<float> MeanOf(std::span<const PressureSample> samples, CalibrationKind kind);

/// The runs that a unit's history tells of: what a calibration calibrates or verifies, and the
/// health check, which does neither.
enum class RunKind { VelocitySystem, VelocityAudit, PressureSystem, PressureAudit, HealthCheck };

/// The calibrations.
inline constexpr std::array<RunKind, 4> RunKinds = {RunKind::VelocitySystem, RunKind::VelocityAudit,
                                                    RunKind::PressureSystem,
                                                    RunKind::PressureAudit};

/// Its name in files and on command lines ("velocity-system").
const char* NameOf(RunKind kind);
/// Its name for people ("Velocity System Calibration").
const char* TitleOf(RunKind kind);
/// The kind of that name; nothing for another text.
std::optional<RunKind> RunKindNamed(std::string_view name);

constexpr bool IsCalibration(RunKind kind) {
    return kind != RunKind::HealthCheck;
}
constexpr bool IsVelocity(RunKind kind) {
    return kind == RunKind::VelocitySystem || kind == RunKind::VelocityAudit;
}
/// Of calibrations.
constexpr CalibrationKind CalibrationKindOf(RunKind kind) {
    return kind == RunKind::VelocityAudit || kind == RunKind::PressureAudit
               ? CalibrationKind::Audit
               : CalibrationKind::System;
}
constexpr RunKind VelocityRunKind(CalibrationKind kind) {
    return kind == CalibrationKind::Audit ? RunKind::VelocityAudit : RunKind::VelocitySystem;
}
constexpr RunKind PressureRunKind(CalibrationKind kind) {
    return kind == CalibrationKind::Audit ? RunKind::PressureAudit : RunKind::PressureSystem;
}

} // namespace ombrix
