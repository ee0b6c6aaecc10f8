#include "calibration/report/VelocitySeries.h"

#include "calibration/air/AirUnits.h"

#include <algorithm>

namespace ombrix {

namespace {

constexpr float ShareOfFullScale = 0.001F;
constexpr float ShareOfDemand = 0.01F;

std::optional<float> Value(const std::vector<PointReading>& readings, std::size_t point,
                           CalibrationKind kind) {
    if (point >= readings.size() || !readings[point].Valid)
        return std::nullopt;
    const PointReading& reading = readings[point];
    return kind == CalibrationKind::Audit ? reading.Flow_ml_m
                                          : static_cast<float>(reading.Reading_bits);
}

std::optional<float> ExpectedAt(const ChannelMeasurement& measured, float demand,
                                CalibrationKind kind) {
    if (kind == CalibrationKind::Audit)
        return demand;
    // Air that does not rise with the demand has no line worth comparing with.
    if (measured.BestFit.Slope == 0.0F)
        return std::nullopt;
    return measured.BestFit.Slope * demand + measured.BestFit.Intercept;
}

float Limit(const ChannelMeasurement& measured, std::size_t point, float demand,
            CalibrationKind kind) {
    if (kind == CalibrationKind::System)
        return ShareOfFullScale * FullScale_bits;
    constexpr int highestLowDemand = 10;
    const int percent = CalPointPrecentage(static_cast<std::int32_t>(point), kind);
    return percent > highestLowDemand ? ShareOfDemand * demand
                                      : ShareOfFullScale * measured.Capacity_ml_m;
}

std::optional<float> Difference(std::optional<float> value, std::optional<float> from) {
    return value && from ? std::optional(*value - *from) : std::nullopt;
}

/// A run that is cancelled after its last reading has all of them but no judgement.
bool IsJudged(const ChannelMeasurement& measured) {
    return measured.DataAcceptable || measured.BestFit.Slope != 0.0F ||
           measured.BestFit.Intercept != 0.0F;
}

bool AllValid(const std::vector<PointReading>& readings) {
    return std::all_of(readings.begin(), readings.end(),
                       [](const PointReading& reading) { return reading.Valid; });
}

} // namespace

VelocitySeries SeriesOf(const ChannelMeasurement& measured, CalibrationKind kind) {
    VelocitySeries series;
    if (measured.Rising.empty())
        return series;
    const std::size_t points = std::min(measured.Demand.size(), MaxCalibrationPoints);
    for (std::size_t point = 0; point < points; ++point) {
        const PointDemand& told = measured.Demand[point];
        const float demand =
            kind == CalibrationKind::Audit ? told.Flow_ml_m : static_cast<float>(told.Bits);
        series.Demand.emplace_back(demand);
        series.Expected.push_back(ExpectedAt(measured, demand, kind));
        series.Rising.push_back(Value(measured.Rising, point, kind));
        series.Falling.push_back(Value(measured.Falling, point, kind));
        series.Limit.emplace_back(Limit(measured, point, demand, kind));
        series.Difference.push_back(Difference(series.Falling.back(), series.Rising.back()));
        series.RisingDeviation.push_back(Difference(series.Rising.back(), series.Expected.back()));
        series.FallingDeviation.push_back(
            Difference(series.Falling.back(), series.Expected.back()));
    }
    return series;
}

const char* UnitOf(CalibrationKind kind) {
    return kind == CalibrationKind::Audit ? "ml/min" : "bits";
}

ChannelState StateOf(const ChannelMeasurement& measured, CalibrationKind kind) {
    if (measured.Rising.empty())
        return measured.Capacity_ml_m > 0.0F ? ChannelState::NotMeasured : ChannelState::NotPresent;
    if (!AllValid(measured.Rising) || !AllValid(measured.Falling) || !IsJudged(measured))
        return ChannelState::Incomplete;
    const bool passed =
        measured.DataAcceptable && (kind == CalibrationKind::System || measured.AuditPassed);
    return passed ? ChannelState::Passed : ChannelState::Failed;
}

} // namespace ombrix
