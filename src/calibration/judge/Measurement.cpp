#include "calibration/judge/Measurement.h"

#include "calibration/air/AirUnits.h"
#include "platform/text/Rounding.h"

namespace ombrix {

namespace {

// Percent of full scale. A table is measured densely where the channels bend most; the audit
// tests between those points.
constexpr std::array<std::uint8_t, MaxCalibrationPoints> SystemPercent = {1,  4,  8,  12, 16,
                                                                          20, 40, 60, 80, 95};
constexpr std::array<std::uint8_t, MaxCalibrationPoints> AuditPercent = {3,  6,  9,  12, 15,
                                                                         30, 45, 60, 75, 90};

} // namespace

std::uint8_t CalPointPrecentage(std::int32_t point, CalibrationKind kind) {
    if (point < 0 || point >= static_cast<std::int32_t>(MaxCalibrationPoints))
        return 0;
    const auto& percent = kind == CalibrationKind::Audit ? AuditPercent : SystemPercent;
    return percent.at(static_cast<std::size_t>(point));
}

PointDemand DemandOfPoint(std::int32_t point, CalibrationKind kind, float capacity_ml_m) {
    const double percent = CalPointPrecentage(point, kind);
    if (kind == CalibrationKind::Audit)
        return {0, static_cast<float>(percent * static_cast<double>(capacity_ml_m) / 100.0)};
    const std::int32_t bits = RoundHalfEven(percent * FullScale_bits / 100.0);
    return {bits, FlowOfBits(bits, capacity_ml_m)};
}

void TakeMeans(PointReading& reading, double duration_s, float capacity_ml_m) {
    std::int64_t bits = 0;
    double flow_ml_m = 0.0;
    std::int32_t count = 0;
    for (const TraceSample& sample : reading.Trace) {
        if (duration_s - static_cast<double>(sample.Time_s) >= MeanTime_s)
            continue;
        bits += sample.Reading_bits;
        flow_ml_m += static_cast<double>(FlowOfReading(sample.Reading_bits, capacity_ml_m));
        ++count;
    }
    reading.Valid = count > 0;
    reading.Reading_bits = reading.Valid ? RoundHalfEven(static_cast<double>(bits) / count) : 0;
    reading.Flow_ml_m = reading.Valid ? static_cast<float>(flow_ml_m / count) : 0.0F;
}

std::optional<float> MeanOf(std::span<const PressureSample> samples, CalibrationKind kind) {
    if (samples.empty())
        return std::nullopt;
    double sum = 0.0;
    for (const PressureSample& sample : samples)
        sum += kind == CalibrationKind::Audit ? static_cast<double>(sample.Pressure_mBar)
                                              : sample.Reading_bits;
    return static_cast<float>(sum / static_cast<double>(samples.size()));
}

namespace {

struct Names {
    const char* Name;
    const char* Title;
};

/// In the order of the kinds.
constexpr std::array<Names, RunKinds.size() + 1> NamesOfKinds = {
    {{"velocity-system", "Velocity System Calibration"},
     {"velocity-audit", "Velocity Audit Calibration"},
     {"pressure-system", "Pressure System Calibration"},
     {"pressure-audit", "Pressure Audit Calibration"},
     {"health-check", "Health Check"}}};

} // namespace

const char* NameOf(RunKind kind) {
    return NamesOfKinds.at(static_cast<std::size_t>(kind)).Name;
}

const char* TitleOf(RunKind kind) {
    return NamesOfKinds.at(static_cast<std::size_t>(kind)).Title;
}

std::optional<RunKind> RunKindNamed(std::string_view name) {
    for (std::size_t kind = 0; kind < NamesOfKinds.size(); ++kind) {
        if (name == NamesOfKinds.at(kind).Name)
            return static_cast<RunKind>(kind);
    }
    return std::nullopt;
}

} // namespace ombrix
