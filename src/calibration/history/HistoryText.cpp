#include "calibration/history/HistoryText.h"

#include "calibration/air/AirUnits.h"
#include "platform/text/OleDate.h"
#include "platform/text/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
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
                  run.Kind == RunKind::PressureAudit ? run.Found.MaxPressure : span_bits));
    return shares;
}

Shares SharesOf(const HistoryEntry& run, std::size_t channel) {
    return IsVelocity(run.Kind)
               ? VelocityShares(run.Velocity.Channels.at(channel), CalibrationKindOf(run.Kind))
               : PressureShares(run);
}

float FullScaleOf(const HistoryEntry& run, std::size_t channel) {
    return IsVelocity(run.Kind) ? run.Velocity.Channels.at(channel).Capacity_ml_m
                                : run.Found.MaxPressure;
}

std::string PointName(const HistoryEntry& run, std::size_t point) {
    if (!IsVelocity(run.Kind))
        return FixedText(static_cast<double>(run.Pressure.at(point).Flow_ml_m), 0) + " ml/min";
    return fmt::format(
        "Point {}: {} %", point + 1,
        CalPointPrecentage(static_cast<std::int32_t>(point), CalibrationKindOf(run.Kind)));
}

/// A run as a part of the drift.
struct DriftRun {
    const HistoryEntry* Run;
    Shares Points;
    /// Of a share, in the drift's unit.
    double Scale;
};

/// What a point of a run was judged by, as a share of full scale: of a system run the agreement of
/// its sweeps, of an audit the error.
std::optional<double> LimitOf(const HistoryEntry& run, std::size_t point) {
    const auto limit = [&run](std::string_view name) -> std::optional<double> {
        for (const auto& [known, value] : run.Limits) {
            if (known == name)
                return static_cast<double>(value);
        }
        return std::nullopt;
    };
    const auto shareOf = [](std::optional<double> part, double whole) {
        return part && whole > 0.0 ? std::optional(*part / whole) : std::nullopt;
    };
    constexpr double percent = 100.0;
    switch (run.Kind) {
    case RunKind::VelocitySystem: return shareOf(limit("hysteresis_bits"), FullScale_bits);
    case RunKind::PressureAudit:
        return shareOf(limit("error_mBar"), static_cast<double>(run.Found.MaxPressure));
    case RunKind::VelocityAudit: {
        const double at_percent =
            CalPointPrecentage(static_cast<std::int32_t>(point), CalibrationKind::Audit);
        return at_percent <= limit("lowUpTo_percentOfFullScale").value_or(0.0)
                   ? shareOf(limit("lowError_percentOfFullScale"), percent)
                   : shareOf(limit("error_percentOfReading"), percent * percent / at_percent);
    }
    case RunKind::PressureSystem:
    case RunKind::HealthCheck: break;
    }
    return std::nullopt;
}

std::optional<double> ShareAt(const DriftRun& run, std::size_t point) {
    return point < run.Points.size() ? run.Points[point] : std::nullopt;
}

DriftSeries SeriesOf(const std::vector<DriftRun>& runs, std::size_t point) {
    const auto has = [point](const DriftRun& run) { return ShareAt(run, point).has_value(); };
    const auto first = std::find_if(runs.begin(), runs.end(), [&](const DriftRun& run) {
        return has(run) && CameToItsEnd(*run.Run);
    });
    const auto named = std::find_if(runs.begin(), runs.end(),
                                    [&](const DriftRun& run) { return point < run.Points.size(); });
    DriftSeries series{PointName(*named->Run, point), {}};
    for (const DriftRun& run : runs) {
        const double deviation = first != runs.end() && has(run)
                                     ? (*ShareAt(run, point) - *ShareAt(*first, point)) * run.Scale
                                     : std::nan("");
        series.Deviations.push_back(std::isfinite(deviation) ? std::optional(deviation)
                                                             : std::nullopt);
    }
    if (const auto limit = LimitOf(*runs.back().Run, point))
        series.Limit = *limit * runs.back().Scale;
    return series;
}

} // namespace

Drift DriftOf(const CalibrationHistory& history, RunKind kind, std::size_t channel,
              DriftScale scale) {
    constexpr double percent = 100.0;
    const bool isPercent = scale == DriftScale::PercentOfFullScale;
    Drift drift;
    drift.Unit = isPercent ? "% of full scale" : IsVelocity(kind) ? "ml/min" : "mBar";
    std::vector<DriftRun> runs;
    std::size_t points = 0;
    for (const HistoryEntry& run : history.Runs) {
        if (run.Kind != kind)
            continue;
        Shares shares = SharesOf(run, channel);
        if (std::none_of(shares.begin(), shares.end(),
                         [](const auto& share) { return share.has_value(); }))
            continue;
        points = std::max(points, shares.size());
        drift.Runs.push_back(run.When);
        runs.push_back({&run, std::move(shares),
                        isPercent ? percent : static_cast<double>(FullScaleOf(run, channel))});
    }
    for (std::size_t point = 0; point < points; ++point)
        drift.Series.push_back(SeriesOf(runs, point));
    return drift;
}

namespace {

std::string ReadingFields(const PointReading& reading) {
    return reading.Valid
               ? fmt::format("{},{}", reading.Reading_bits, GeneralText(reading.Flow_ml_m))
               : ",";
}

void AddVelocityLines(std::string& csv, const std::string& head, const HistoryEntry& run) {
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const ChannelMeasurement& measured = run.Velocity.Channels.at(channel);
        for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
            const PointDemand& demand = measured.Demand.at(point);
            csv +=
                fmt::format("{},{},{},{},{},{},{},\r\n", head, channel + 1, point + 1, demand.Bits,
                            GeneralText(demand.Flow_ml_m), ReadingFields(measured.Rising.at(point)),
                            ReadingFields(measured.Falling.at(point)));
        }
    }
}

void AddPressureLines(std::string& csv, const std::string& head, const HistoryEntry& run) {
    int number = 0;
    for (const PressureReading& point : run.Pressure)
        csv += fmt::format("{},pressure,{},,{},,,,,{}\r\n", head, ++number,
                           GeneralText(point.Flow_ml_m), GeneralText(point.Reading));
}

std::string DateOrNever(OleDate date) {
    return date == OleDate() ? "never" : IsoText(date);
}

std::string ReadingText(const PointReading& reading) {
    return reading.Valid ? fmt::format("{:>7} {:>9}", reading.Reading_bits,
                                       FixedText(static_cast<double>(reading.Flow_ml_m), 2))
                         : fmt::format("{:>17}", "-");
}

std::string ChannelText(const ChannelMeasurement& measured, std::size_t channel) {
    if (measured.Demand.empty())
        return {};
    std::string text =
        fmt::format("\nChannel {}, {} ml/min\nPoint       Demand             Rising           "
                    "Falling\n          bits ml/min     bits    ml/min    bits    ml/min\n",
                    channel + 1, GeneralText(measured.Capacity_ml_m));
    for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
        const PointDemand& demand = measured.Demand.at(point);
        text += fmt::format("{:>5} {:>8} {:>6}  {} {}\n", point + 1, demand.Bits,
                            FixedText(static_cast<double>(demand.Flow_ml_m), 0),
                            ReadingText(measured.Rising.at(point)),
                            ReadingText(measured.Falling.at(point)));
    }
    return text;
}

std::string PressureText(const HistoryEntry& run) {
    std::string text =
        fmt::format("\n  ml/min  {}\n", run.Kind == RunKind::PressureAudit ? "mBar" : "bits");
    for (const PressureReading& point : run.Pressure)
        text += fmt::format("{:>8}  {}\n", FixedText(static_cast<double>(point.Flow_ml_m), 0),
                            FixedText(static_cast<double>(point.Reading), 2));
    return text;
}

std::string CheckText(const HealthCheckFigures& check) {
    const std::string worst = WorstText(check);
    return fmt::format("\nTests:    {}\nOutcome:  {}\n{}\n{}", fmt::join(check.Options, ", "),
                       check.Outcome, CountsText(check), worst.empty() ? "" : worst + "\n");
}

std::string FoundText(const ACURecord& found) {
    return fmt::format("As found: velocity {}, audit {};\n          pressure {}, audit {}\n",
                       DateOrNever(found.VelocitySystemDate), DateOrNever(found.VelocityAuditDate),
                       DateOrNever(found.PressureSystemDate), DateOrNever(found.PressureAuditDate));
}

} // namespace

std::string HistoryCsv(const CalibrationHistory& history) {
    std::string csv = "when,unit,station,kind,verdict,channel,point,demand_bits,demand_ml_m,"
                      "rising_bits,rising_ml_m,falling_bits,falling_ml_m,pressure\r\n";
    for (const HistoryEntry& run : history.Runs) {
        const std::string head =
            fmt::format("{},ACU{:05},{},{},{}", IsoText(run.When), run.Serial,
                        CsvField(run.Program.Computer), NameOf(run.Kind), CsvField(run.Verdict));
        if (!IsCalibration(run.Kind))
            csv += head + ",,,,,,,,,\r\n"; // it has no points
        else if (IsVelocity(run.Kind))
            AddVelocityLines(csv, head, run);
        else
            AddPressureLines(csv, head, run);
    }
    return csv;
}

std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    return "\"" + ReplaceAll(text, "\"", "\"\"") + "\"";
}

bool CameToItsEnd(const HistoryEntry& run) {
    constexpr std::array whole = {End::Passed, End::Failed, End::NotStored};
    return std::any_of(whole.begin(), whole.end(),
                       [&run](End end) { return run.Verdict == VerdictOf(end); });
}

std::string ShownVerdict(const HistoryEntry& run) {
    const bool lacksTable = IsCalibration(run.Kind) &&
                            CalibrationKindOf(run.Kind) == CalibrationKind::System && !run.Left &&
                            run.Verdict == VerdictOf(End::Passed);
    return run.Verdict + (lacksTable ? ", not stored" : "");
}

std::string DetailsOf(const HistoryEntry& run) {
    std::string text =
        fmt::format("{}: {}\n{} on {}, {} {}\n", TitleOf(run.Kind), ShownVerdict(run),
                    IsoText(run.When), run.Program.Computer, run.Program.Name, run.Program.Version);
    for (const std::string& reason : run.Reasons)
        text += reason + "\n";
    text += FoundText(run.Found);
    if (run.Left)
        text += "As left:  new values were stored in the unit\n";
    if (!run.Eprom.empty())
        text += "As left:  " + ReplaceAll(run.Eprom, ". ", ".\n          ") + "\n";
    if (!IsCalibration(run.Kind)) {
        text += CheckText(run.Check);
    } else if (IsVelocity(run.Kind)) {
        for (std::size_t channel = 0; channel < AirChannels; ++channel)
            text += ChannelText(run.Velocity.Channels.at(channel), channel);
    } else {
        text += PressureText(run);
    }
    if (run.Number > 0)
        text +=
            fmt::format("\nRecord {} of the unit, fingerprint\n{}\n", run.Number, run.Fingerprint);
    if (!run.Limits.empty())
        text += "\nLimits\n";
    for (const auto& [name, value] : run.Limits)
        text += fmt::format("{}: {}\n", name, GeneralText(value));
    if (!run.Files.empty())
        text += "\nFiles\n";
    for (const std::string& file : run.Files)
        text += file + "\n";
    return text;
}

} // namespace ombrix
