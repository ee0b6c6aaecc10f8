#include "calibration/history/HistoryDrift.h"

#include "calibration/air/AirUnits.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

/// A point as a share of full scale; nothing where it was not measured.
using Shares = std::vector<std::optional<double>>;

double Ratio(double part, float whole) {
    return part / static_cast<double>(whole);
}

Shares VelocityShares(const ChannelMeasurement& measured, CalibrationKind kind) {
    const auto shareOf = [&](const PointReading& reading) {
        return kind == CalibrationKind::Audit
                   ? Ratio(static_cast<double>(reading.Flow_ml_m), measured.Capacity_ml_m)
                   : static_cast<double>(reading.Reading_bits) / FullScale_bits;
    };
    Shares shares;
    for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
        const PointReading& rising = measured.Rising.at(point);
        const PointReading& falling = measured.Falling.at(point);
        shares.push_back(rising.Valid && falling.Valid
                             ? std::optional((shareOf(rising) + shareOf(falling)) / 2.0)
                             : std::nullopt);
    }
    return shares;
}

Shares PressureShares(const HistoryEntry& run) {
    // The sensor gives 4 V of the input's 5 V between zero and full scale.
    constexpr float span_bits = 4.0F * 65534.0F / 5.0F;
    Shares shares;
    for (const PressureReading& point : run.Pressure)
        shares.emplace_back(
            Ratio(static_cast<double>(point.Reading),
                  run.Kind == RunKind::PressureAudit ? run.Found.m_MaxPressure : span_bits));
    return shares;
}

Shares SharesOf(const HistoryEntry& run, std::size_t channel) {
    return IsVelocity(run.Kind)
               ? VelocityShares(run.Velocity.Channels.at(channel), CalibrationKindOf(run.Kind))
               : PressureShares(run);
}

float FullScaleOf(const HistoryEntry& run, std::size_t channel) {
    return IsVelocity(run.Kind) ? run.Velocity.Channels.at(channel).Capacity_ml_m
                                : run.Found.m_MaxPressure;
}

std::string PointName(const HistoryEntry& run, std::size_t point) {
    if (!IsVelocity(run.Kind))
        return FixedText(static_cast<double>(run.Pressure.at(point).Flow_ml_m), 0) + " ml/min";
    return fmt::format(
        "Point {}: {} %", point + 1,
        CalPointPrecentage(static_cast<std::int32_t>(point), CalibrationKindOf(run.Kind)));
}

/// Adds a run to the series; points that no run before has had begin with it.
void AddRun(Drift& drift, std::vector<double>& first, const HistoryEntry& run, const Shares& shares,
            double factor) {
    const std::size_t before = drift.Runs.size();
    drift.Runs.push_back(run.When);
    for (std::size_t point = drift.Series.size(); point < shares.size(); ++point) {
        drift.Series.push_back({PointName(run, point), Shares(before)});
        first.push_back(std::nan(""));
    }
    for (std::size_t point = 0; point < drift.Series.size(); ++point) {
        const auto share = point < shares.size() ? shares[point] : std::nullopt;
        if (share && std::isnan(first[point]))
            first[point] = *share;
        const double deviation = share ? (*share - first[point]) * factor : std::nan("");
        drift.Series[point].Deviations.push_back(std::isfinite(deviation) ? std::optional(deviation)
                                                                          : std::nullopt);
    }
}

} // namespace

Drift DriftOf(const CalibrationHistory& history, RunKind kind, std::size_t channel,
              DriftScale scale) {
    constexpr double percent = 100.0;
    const bool isPercent = scale == DriftScale::PercentOfFullScale;
    Drift drift;
    drift.Unit = isPercent ? "% of full scale" : IsVelocity(kind) ? "ml/min" : "mBar";
    std::vector<double> first;
    for (const HistoryEntry& run : history.Runs) {
        if (run.Kind != kind)
            continue;
        const Shares shares = SharesOf(run, channel);
        const bool measured = std::any_of(shares.begin(), shares.end(),
                                          [](const auto& share) { return share.has_value(); });
        if (measured)
            AddRun(drift, first, run, shares,
                   isPercent ? percent : static_cast<double>(FullScaleOf(run, channel)));
    }
    return drift;
}

} // namespace ombrix
