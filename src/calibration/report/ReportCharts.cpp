#include "calibration/report/ReportCharts.h"

#include "calibration/air/AirUnits.h"
#include "reports/layout/VelocityReportLayout.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace ombrix {

namespace {

using AcceptanceLimits::Error_share;
using AcceptanceLimits::LowError_share;

std::optional<float> Value(const std::vector<PointReading>& readings, std::size_t point,
                           CalibrationKind kind) {
    if (point >= readings.size() || !readings[point].Valid)
        return std::nullopt;
    const PointReading& reading = readings[point];
    return kind == CalibrationKind::Audit ? reading.Flow_ml_m
                                          : static_cast<float>(reading.Reading_bits);
}

std::optional<float> ExpectedAt(const std::optional<ChannelVerdict>& verdict, float demand,
                                CalibrationKind kind) {
    if (kind == CalibrationKind::Audit)
        return demand;
    // Air that does not rise with the demand has no line worth comparing with.
    if (!verdict || verdict->BestFit.Slope == 0.0F)
        return std::nullopt;
    return verdict->BestFit.Slope * demand + verdict->BestFit.Intercept;
}

/// The deviations from the demand between which the mean of a point is good.
struct Limits {
    double Lower;
    double Upper;
};

Limits LimitsOf(const ChannelMeasurement& measured, std::size_t point, CalibrationKind kind) {
    if (kind == CalibrationKind::System)
        return {-LowError_share * FullScale_bits, LowError_share * FullScale_bits};
    const int percent = CalPointPrecentage(static_cast<std::int32_t>(point), kind);
    if (percent <= AcceptanceLimits::LowPoint_percent) {
        const double capacity_ml_m = measured.Capacity_ml_m;
        return {-LowError_share * capacity_ml_m, LowError_share * capacity_ml_m};
    }
    // The reading at which the error just is its share of the reading itself.
    const double demand_ml_m = measured.Demand[point].Flow_ml_m;
    return {demand_ml_m / (1.0 + Error_share) - demand_ml_m,
            demand_ml_m / (1.0 - Error_share) - demand_ml_m};
}

std::optional<float> Difference(std::optional<float> value, std::optional<float> from) {
    return value && from ? std::optional(*value - *from) : std::nullopt;
}

std::optional<float> Mean(std::optional<float> first, std::optional<float> second) {
    return first && second ? std::optional((*first + *second) / 2.0F) : std::nullopt;
}

bool AllValid(const std::vector<PointReading>& readings) {
    return std::all_of(readings.begin(), readings.end(),
                       [](const PointReading& reading) { return reading.Valid; });
}

} // namespace

VelocitySeries SeriesOf(const VelocityResult& result, std::size_t channel) {
    const ChannelMeasurement& measured = result.Measured.Channels.at(channel);
    const CalibrationKind kind = result.Measured.Kind;
    VelocitySeries series;
    if (measured.Rising.empty())
        return series;
    const std::size_t points = std::min(measured.Demand.size(), MaxCalibrationPoints);
    for (std::size_t point = 0; point < points; ++point) {
        const PointDemand& told = measured.Demand[point];
        const float demand =
            kind == CalibrationKind::Audit ? told.Flow_ml_m : static_cast<float>(told.Bits);
        series.Demand.emplace_back(demand);
        series.Expected.push_back(ExpectedAt(result.Verdicts.at(channel), demand, kind));
        series.Rising.push_back(Value(measured.Rising, point, kind));
        series.Falling.push_back(Value(measured.Falling, point, kind));
        const Limits limits = LimitsOf(measured, point, kind);
        series.LowerLimit.emplace_back(static_cast<float>(limits.Lower));
        series.UpperLimit.emplace_back(static_cast<float>(limits.Upper));
        series.Difference.push_back(Difference(series.Falling.back(), series.Rising.back()));
        series.RisingDeviation.push_back(Difference(series.Rising.back(), series.Expected.back()));
        series.FallingDeviation.push_back(
            Difference(series.Falling.back(), series.Expected.back()));
        if (kind == CalibrationKind::Audit)
            series.MeanDeviation.push_back(
                Mean(series.RisingDeviation.back(), series.FallingDeviation.back()));
    }
    return series;
}

const char* ReadingUnit(CalibrationKind kind) {
    return kind == CalibrationKind::Audit ? "ml/min" : "bits";
}

ChannelState StateOf(const VelocityResult& result, std::size_t channel) {
    const ChannelMeasurement& measured = result.Measured.Channels.at(channel);
    const auto& verdict = result.Verdicts.at(channel);
    if (measured.Rising.empty())
        return measured.Capacity_ml_m > 0.0F ? ChannelState::NotMeasured : ChannelState::NotPresent;
    // A run that is cancelled after its last reading has all of them but no judgement.
    if (!AllValid(measured.Rising) || !AllValid(measured.Falling) || !verdict)
        return ChannelState::Incomplete;
    const bool passed = verdict->DataAcceptable && verdict->NotFollowing.empty() &&
                        (result.Measured.Kind == CalibrationKind::System || verdict->AuditPassed);
    return passed ? ChannelState::Passed : ChannelState::Failed;
}

namespace {

namespace Layout = VelocityReportLayout;
namespace ChartData = Layout::ChartData;

/// Lines that are compared come in pairs: first what the readings should be, then the readings.
void WriteData(Worksheet& data, std::size_t channel, const VelocitySeries& series,
               CalibrationKind kind) {
    const std::string unit = ReadingUnit(kind);
    const bool isAudit = kind == CalibrationKind::Audit;
    const auto write = [&](ChartData::Series column, const std::string& name,
                           const PointValues& values) {
        const std::string letters = ColumnLetters(ChartData::Column(channel, column));
        data.SetValue(Cell(letters, ChartData::HeadRow), name);
        SetColumn(data, letters, ChartData::FirstRow, values);
    };
    write(ChartData::Demand, "Demand (" + unit + ")", series.Demand);
    write(ChartData::Expected, (isAudit ? "Demand (" : "Best fit (") + unit + ")", series.Expected);
    write(ChartData::Rising, "Rising (" + unit + ")", series.Rising);
    write(ChartData::Falling, "Falling (" + unit + ")", series.Falling);
    write(ChartData::UpperLimit, "Upper limit (" + unit + ")", series.UpperLimit);
    write(ChartData::RisingDeviation, "Rising, deviation (" + unit + ")", series.RisingDeviation);
    write(ChartData::LowerLimit, "Lower limit (" + unit + ")", series.LowerLimit);
    write(ChartData::FallingDeviation, "Falling, deviation (" + unit + ")",
          series.FallingDeviation);
    if (isAudit)
        write(ChartData::MeanDeviation, "Mean, deviation (" + unit + ")", series.MeanDeviation);
}

/// @param columns the first is x, each further one a line
void AddChart(Worksheet& charts, const Worksheet& data, const char* place,
              const std::string& columns, const std::vector<double>& weights_pt,
              const std::string& title) {
    Chart& chart = charts.AddChart(ChartType::XYScatterSmoothNoMarkers, charts.Box(place));
    chart.SetSourceData(data, columns);
    chart.SetElement(ChartElement::TitleAboveChart);
    chart.SetTitle(title);
    int series = 0;
    for (const double weight_pt : weights_pt) {
        ++series;
        chart.SetSeriesSmooth(series, false);
        chart.SetSeriesLineWeight(series, weight_pt);
    }
}

constexpr double ReferenceLine_pt = 1.0;
constexpr double ReadingLine_pt = 1.75;
/// Of a sweep beside the mean that is judged.
constexpr double SweepLine_pt = 0.75;

} // namespace

void DrawReportCharts(Worksheet& charts, Worksheet& data, std::size_t channel,
                      const VelocityResult& result) {
    const CalibrationKind kind = result.Measured.Kind;
    if (result.Measured.Channels.at(channel).Rising.empty())
        return;
    const VelocitySeries series = SeriesOf(result, channel);
    WriteData(data, channel, series, kind);
    const auto letters = [channel](ChartData::Series column) {
        return ColumnLetters(ChartData::Column(channel, column));
    };
    const auto columns = [&letters](ChartData::Series first, ChartData::Series last) {
        return fmt::format("{0}:{0},{1}:{2}", letters(ChartData::Demand), letters(first),
                           letters(last));
    };
    const Layout::ChartPlaces& places = Layout::Charts.at(channel);
    AddChart(charts, data, places.Readings, columns(ChartData::Expected, ChartData::Falling),
             {ReferenceLine_pt, ReadingLine_pt, ReadingLine_pt},
             fmt::format("Channel {}: readings", channel + 1));
    if (std::none_of(series.Expected.begin(), series.Expected.end(),
                     [](const auto& value) { return value.has_value(); }))
        return;
    if (kind == CalibrationKind::Audit)
        AddChart(charts, data, places.Deviations,
                 columns(ChartData::UpperLimit, ChartData::MeanDeviation),
                 {ReferenceLine_pt, SweepLine_pt, ReferenceLine_pt, SweepLine_pt, ReadingLine_pt},
                 fmt::format("Channel {}: deviation from the demand", channel + 1));
    else
        AddChart(charts, data, places.Deviations,
                 columns(ChartData::UpperLimit, ChartData::FallingDeviation),
                 {ReferenceLine_pt, ReadingLine_pt, ReferenceLine_pt, ReadingLine_pt},
                 fmt::format("Channel {}: deviation from the best fit", channel + 1));
}

void DrawStepCharts(Worksheet& charts, const Worksheet& traces, std::size_t channel,
                    const ChannelMeasurement& measured) {
    namespace Traces = Layout::Traces;
    const auto& places = Layout::Charts.at(channel).OfSteps;
    for (std::size_t step = 0; step < std::min(measured.Steps.size(), places.size()); ++step) {
        if (measured.Steps[step].Reading.Trace.empty())
            continue;
        const int time = Traces::TimeColumn(Traces::FirstStep + static_cast<int>(step));
        AddChart(charts, traces, places.at(step),
                 fmt::format("{0}:{0},{1}:{1}", ColumnLetters(time), ColumnLetters(time + 1)),
                 {ReadingLine_pt},
                 fmt::format("Channel {}: from zero air to point {}", channel + 1,
                             measured.Steps[step].Point + 1));
    }
}

} // namespace ombrix
