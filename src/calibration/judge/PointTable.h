#pragma once

#include "calibration/judge/Measurement.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ombrix {

/// A calibration point for people, in the figures of the log; "-" stands for what has not been
/// measured or is not judged.
struct PointLine {
    /// One a column of the table.
    std::vector<std::string> Cells{};
    /// Nothing while the point is not judged.
    std::optional<bool> Passed{};
    /// PointVerdict::Why and PointVerdict::OfLimit
    std::string Why{};
    std::optional<double> OfLimit{};
};

/// The points that are measured together: of an air channel, or of the pressure.
struct PointTable {
    /// Which they are, and what their readings are in ("channel 1, readings in bits").
    std::string Title{};
    std::vector<std::string> Columns{};
    std::vector<PointLine> Lines{};
};

/// @param channel from 0
PointTable VelocityPoints(const ChannelMeasurement& measured, CalibrationKind kind,
                          std::size_t channel);
/// A point is judged as soon as both sweeps have read it.
PointLine VelocityPoint(const ChannelMeasurement& measured, CalibrationKind kind,
                        std::size_t point);

/// Of points that have not been measured. @param flows_ml_m what they demand
PointTable PressurePoints(std::span<const float> flows_ml_m, CalibrationKind kind);
/// A point that has been measured. The points of a system run have no limit each: it is their
/// polynomial that is judged.
PointLine PressurePoint(const PressureReading& reading, CalibrationKind kind, std::size_t point);

} // namespace ombrix
