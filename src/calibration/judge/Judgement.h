#pragma once

#include "calibration/judge/CurveFit.h"
#include "calibration/judge/Measurement.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ombrix {

/// What calibrations are judged by.
namespace AcceptanceLimits {

/// 0.2 % and 0.1 % of full scale.
inline constexpr double Hysteresis_bits = 131.068;
inline constexpr double Deviation_bits = 65.534;
/// Of reading; at low points of full scale.
inline constexpr float Error_percent = 1.0F;
inline constexpr float LowError_percent = 0.1F;
/// The same as shares, of the reading and of the channel's capacity.
inline constexpr double Error_share = 0.01;
inline constexpr double LowError_share = 0.001;
/// Up to this share of full scale an audit point is judged by full scale, not by its reading.
inline constexpr int LowPoint_percent = 10;
inline constexpr float Pressure_mBar = 0.5F;
/// Of the best fit of readings to demands, both in bits.
inline constexpr float SmallestSlope = 0.5F;
inline constexpr float LargestSlope = 2.0F;

} // namespace AcceptanceLimits

/// Lines for the text log of a calibration.
using LogLines = std::vector<std::string>;

/// A line that divides a log.
std::string Rule(std::size_t length);

/// What was made of a channel's measurement.
struct ChannelVerdict {
    /// Every reading is there and, of a system run, rising and falling ones agree.
    bool DataAcceptable = false;
    bool AuditPassed = false;
    /// Why readings that agree do not follow the demand all the same, of a system run; empty when
    /// they do: "the readings do not rise with the demand".
    std::string NotFollowing{};
    /// Best-fit line through all readings in bits against demand in bits; system runs only.
    Line BestFit;
    /// The segments between the points; made of acceptable data only.
    ACUChannelCal NewVelocityCal;
    /// Every step of the judgement.
    LogLines Log;
};

/// What a velocity run has measured, and what was made of it.
struct VelocityResult {
    VelocityMeasurement Measured;
    /// By channel; nothing of one that was not measured to its end.
    std::array<std::optional<ChannelVerdict>, AirChannels> Verdicts;
};

/// Judges what a run has measured on a channel (from 0) and, for a system run, fits it.
ChannelVerdict JudgeChannel(const ChannelMeasurement& measured, CalibrationKind kind,
                            std::size_t channel);

/// Why a velocity run has not passed, for the operator; empty when it has.
std::string ReasonOfFailure(const VelocityResult& result);
/// All data of a system run are acceptable, so that its table could be stored.
bool HasTable(const VelocityResult& result);
/// A channel of a system run at least has a new table.
bool HasPartOfTable(const VelocityResult& result);

/// A calibration point as it is judged, in the figures of the log.
struct PointVerdict {
    bool Passed = false;
    const char* Criterion = "";
    /// The figure that is judged, and its limit, both in the unit.
    std::string Figure;
    std::string Limit;
    const char* Unit = "";
    /// Why the point has not passed, for the operator; empty when it has.
    std::string Why{};
    /// The figure as a share of its limit, with its sign; nothing where there is no figure.
    std::optional<double> OfLimit{};
};

/// Judges a point that both sweeps have read: of a system run by how far they differ, of an audit
/// by how far their mean is from the demand.
PointVerdict JudgePoint(const ChannelMeasurement& measured, CalibrationKind kind,
                        std::size_t point);
/// Judges a point of a pressure audit.
PointVerdict JudgePressure(const PressureReading& point);
/// The mean of both sweeps' flows at a point.
float MeanFlow_ml_m(const ChannelMeasurement& measured, std::size_t point);

/// Judges what a system run has measured on a channel: at every point the rising and the falling
/// reading must agree within 0.2 % of full scale. Points that deviate from the best-fit straight
/// line by more than 0.1 % of full scale are warned of.
/// @param bestFit takes the line through all readings
bool CheckSystemCalibrationData(const ChannelMeasurement& measured, Line& bestFit, LogLines& log);

/// Judges what an audit has measured on a channel: the mean flow of every point must be within
/// 1 % of reading of its demand, at 10 % of full scale and below within 0.1 % of full scale.
bool CheckAuditCalibrationData(const ChannelMeasurement& measured, LogLines& log);

/// Whether every reading is higher than that at the point below it, on both sweeps.
bool ReadingsRiseWithDemand(const ChannelMeasurement& measured);

/// What was made of a pressure measurement.
struct PressureVerdict {
    bool Passed = false;
    /// Why a polynomial that was found is not to be trusted; empty when it is.
    std::string NotFollowing{};
    /// The back-pressure's polynomial, of a system run that has passed; slot 3 is not used.
    std::array<float, 4> Coefficients{};
    /// Every step of the judgement.
    LogLines Log;
};

/// Fits the polynomial of the back-pressure to the points of a system run.
PressureVerdict FitPressure(std::span<const PressureReading> points);
/// Judges the points of an audit: the pressure must read as 0 within 0.5 mBar.
PressureVerdict CheckPressure(std::span<const PressureReading> points, float base_mm);

} // namespace ombrix
