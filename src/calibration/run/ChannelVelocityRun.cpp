#include "calibration/run/ChannelVelocityRun.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace ombrix {

namespace {

// The span of a channel's progress bar, with and without solenoid valves.
constexpr float BarWithValves_s = 315.0F;
constexpr float BarWithoutValves_s = 615.0F;
/// Without valves the line is filled at 10 % first.
constexpr std::int32_t PreFlow_bits = 6553;
constexpr double PreFlowTime_s = 15.0;
constexpr double PointTime_s = 15.0;
/// The lowest demand of a unit without valves takes its time.
constexpr double LowestPointTime_s = 30.0;
constexpr double ZeroTime_s = 10.0;
/// A fit needs a segment.
constexpr std::int32_t FewestPoints = 2;

double PointTimeOf(std::size_t point, bool hasValves) {
    return point == 0 && !hasValves ? LowestPointTime_s : PointTime_s;
}

/// A damaged EPROM may claim any number of points.
std::int32_t PointsOf(const ACURecord& record) {
    return std::min(record.CalibrationPoints, static_cast<std::int32_t>(MaxCalibrationPoints));
}

} // namespace

double ChannelTime_s(const ACURecord& record, std::size_t channel) {
    const std::int32_t points = PointsOf(record);
    if (!(record.ChannelCapacity.at(channel) > 0.0F) || points < FewestPoints)
        return 0.0;
    const bool hasValves = record.HasSolenoidValves != 0;
    double time_s = hasValves ? 0.0 : PreFlowTime_s;
    for (std::size_t point = 0; point < static_cast<std::size_t>(points); ++point)
        time_s += 2.0 * PointTimeOf(point, hasValves);
    return time_s + StepPoints.size() * (ZeroTime_s + PointTime_s);
}

double VelocityRunTime_s(const ACURecord& record) {
    double time_s = 0.0;
    for (std::size_t channel = 0; channel < AirChannels; ++channel)
        time_s += ChannelTime_s(record, channel);
    return time_s;
}

ChannelVelocityRun::ChannelVelocityRun(const ChannelRunServices& services, CalibrationKind kind,
                                       std::int32_t channel)
    : m_Services(services), m_Kind(kind), m_Channel(channel),
      m_Capacity_ml_m(services.Record.ChannelCapacity.at(static_cast<std::size_t>(channel))),
      m_Whole_s(ChannelTime_s(services.Record, static_cast<std::size_t>(channel))),
      m_Timer(services.Loop.Time()) {}

std::string ChannelVelocityRun::Heading() const {
    return m_Kind == CalibrationKind::Audit ? "Air Velocity Audit Calibration"
                                            : "Air Velocity System Calibration";
}

bool ChannelVelocityRun::CalibrateChannelVelocity(ChannelMeasurement& result) {
    result.Capacity_ml_m = m_Capacity_ml_m;
    m_Services.Log.LogCalibration(fmt::format("> > Calibrating Channel: {} < <", m_Channel));
    const std::int32_t points = PointsOf(m_Services.Record);
    if (SkipsUnmeasurable(points)) {
        m_Services.Recorder.ChannelBegins(static_cast<std::size_t>(m_Channel), result);
        return false;
    }
    m_Services.Air.AllChannelsOff();
    BuildDemands(points, result);
    m_Services.Recorder.ChannelBegins(static_cast<std::size_t>(m_Channel), result);
    m_Services.Stages.BeginPoints(
        VelocityPoints(result, m_Kind, static_cast<std::size_t>(m_Channel)));
    m_Services.Stages.ShowLine(
        StageLine::Phase,
        Heading() + FormatArgs(" - Phase [1] of [2]",
                               {std::to_string(m_Channel + 1), std::to_string(AirChannels)}));
    m_Services.Stages.BeginProgress(HasValves() ? BarWithValves_s : BarWithoutValves_s);
    MeasureAll(result);
    return !m_Services.Wait.Ended();
}

bool ChannelVelocityRun::SkipsUnmeasurable(std::int32_t points) const {
    if (!(m_Capacity_ml_m > 0.0F)) {
        m_Services.Log.LogCalibration(" - Skipped as it is not present");
        return true;
    }
    if (points < FewestPoints) {
        m_Services.Log.LogCalibration(
            fmt::format(" - Skipped as the record has {} calibration points", points));
        return true;
    }
    return false;
}

void ChannelVelocityRun::BuildDemands(std::int32_t points, ChannelMeasurement& result) const {
    for (std::int32_t point = 0; point < points; ++point)
        result.Demand.push_back(DemandOfPoint(point, m_Kind, m_Capacity_ml_m));
    result.Rising.resize(result.Demand.size());
    result.Falling.resize(result.Demand.size());
}

void ChannelVelocityRun::MeasureAll(ChannelMeasurement& result) {
    m_Timer.StartTimer(true);
    if (!HasValves())
        PreFlow();
    Sweep(result, result.Rising, true);
    Sweep(result, result.Falling, false);
    m_Services.Air.AllChannelsOff();
    for (const std::int32_t point : StepPoints) {
        if (point < static_cast<std::int32_t>(result.Demand.size()) && !m_Services.Wait.Ended())
            result.Steps.push_back(MeasureCalibrationPoint(point));
    }
}

double ChannelVelocityRun::MeasuringTime_s(std::size_t point) const {
    return PointTimeOf(point, HasValves());
}

void ChannelVelocityRun::Tell(const std::string& step) {
    const double channel_s = std::max(0.0, m_Whole_s - m_Timer.ElapsedTime());
    const double left_s = channel_s + m_Services.After_s;
    m_Services.Gate.Tell({fmt::format("channel {}, {}", m_Channel + 1, step),
                          m_Services.Whole_s > 0.0 ? 1.0 - left_s / m_Services.Whole_s : 0.0,
                          left_s});
}

void ChannelVelocityRun::PreFlow() {
    Tell("pre-flow");
    m_Services.Air.SetChannelDAC(m_Channel, PreFlow_bits);
    m_Services.Stages.ShowLine(StageLine::Demand, fmt::format("Pre-flow:  {} bits", PreFlow_bits));
    m_Services.Loop.Wait(m_Channel, PreFlowTime_s, [this](const LiveReading& live) {
        ShowWait(live, PreFlowTime_s);
        m_Services.Stages.ShowProgress(static_cast<float>(m_Timer.ElapsedTime()));
    });
}

void ChannelVelocityRun::Sweep(ChannelMeasurement& result, std::vector<PointReading>& sweep,
                               bool rising) {
    const auto display = [this](const LiveReading& live) {
        const double elapsed_s = m_Timer.ElapsedTime();
        ShowReading(live);
        m_Services.Stages.ShowLine(
            StageLine::Remaining,
            fmt::format("Time left:  {:.0f} s", std::max(0.0, std::ceil(m_Whole_s - elapsed_s))));
        m_Services.Stages.ShowProgress(static_cast<float>(elapsed_s));
    };
    for (std::size_t step = 0; step < sweep.size() && !m_Services.Wait.Ended(); ++step) {
        const std::size_t point = rising ? step : sweep.size() - 1 - step;
        PointDemand& demand = result.Demand.at(point);
        SetDemand(demand);
        Tell(fmt::format("{}, point {} of {}", rising ? "rising" : "falling", point + 1,
                         sweep.size()));
        const double time_s = MeasuringTime_s(point);
        m_Services.Recorder.ReadingBegins(rising ? Sweeps::Rising : Sweeps::Falling, point, demand,
                                          time_s);
        sweep.at(point) = m_Services.Loop.Measure(m_Channel, time_s, display, Samples());
        m_Services.Recorder.ReadingEnds(sweep.at(point));
        if (m_Services.Wait.Ended())
            return;
        LogPoint(point, demand, sweep.at(point));
        m_Services.Stages.ShowPoint(point, VelocityPoint(result, m_Kind, point));
    }
}

void ChannelVelocityRun::SetDemand(PointDemand& demand) {
    if (m_Kind == CalibrationKind::Audit) {
        demand.Bits =
            m_Services.Air.SetAirVelocityInternal_ml_m(demand.Flow_ml_m, m_Channel).DemandBits;
        m_Services.Stages.ShowLine(StageLine::Demand,
                                   fmt::format("Demand:  {} ml/min    =  {} bits",
                                               FixedText(static_cast<double>(demand.Flow_ml_m), 1),
                                               demand.Bits));
        return;
    }
    m_Services.Air.SetAirVelocityInternal_bits(m_Channel, demand.Bits);
    m_Services.Stages.ShowLine(StageLine::Demand, fmt::format("Demand:  {} bits", demand.Bits));
}

void ChannelVelocityRun::LogPoint(std::size_t point, const PointDemand& demand,
                                  const PointReading& reading) const {
    const bool isAudit = m_Kind == CalibrationKind::Audit;
    m_Services.Log.LogCalibration(fmt::format(
        "Point {},{},{}", point,
        isAudit ? GeneralText(demand.Flow_ml_m) : std::to_string(demand.Bits),
        isAudit ? GeneralText(reading.Flow_ml_m) : std::to_string(reading.Reading_bits)));
}

StepMeasurement ChannelVelocityRun::MeasureCalibrationPoint(std::int32_t point) {
    CalibrationView& stages = m_Services.Stages;
    StepMeasurement step{point, DemandOfPoint(point, m_Kind, m_Capacity_ml_m), {}};
    m_Services.Air.AllChannelsOff();
    Tell(fmt::format("from zero air to point {}", point + 1));
    stages.ShowLine(StageLine::Phase, Heading());
    stages.ShowLine(StageLine::Demand, "Waiting at zero demand...");
    if (HasValves())
        m_Services.Air.SetValveState(m_Channel);
    const auto wait = [this, &stages](double duration_s, const SampleSink& samples) {
        stages.BeginProgress(static_cast<float>(duration_s));
        return m_Services.Loop.Measure(
            m_Channel, duration_s,
            [this, &stages, duration_s](const LiveReading& live) {
                ShowWait(live, duration_s);
                stages.ShowProgress(static_cast<float>(live.Elapsed_s));
            },
            samples);
    };
    const auto tell = [this, &step] {
        m_Services.Recorder.ReadingBegins(Sweeps::Step, static_cast<std::size_t>(step.Point),
                                          step.Demand, PointTime_s);
    };
    tell();
    if (wait(ZeroTime_s, {}).Valid) {
        SetDemand(step.Demand);
        tell();
        stages.ShowLine(StageLine::Demand, "Calculating Data...");
        step.Reading = wait(PointTime_s, Samples());
    }
    m_Services.Recorder.ReadingEnds(step.Reading);
    m_Services.Air.AllChannelsOff();
    return step;
}

SampleSink ChannelVelocityRun::Samples() const {
    return [this](const TraceSample& sample) { m_Services.Recorder.Sample(sample); };
}

void ChannelVelocityRun::ShowReading(const LiveReading& live) const {
    m_Services.Stages.ShowLine(StageLine::Reading,
                               fmt::format("Current:  {} ml/min    =  {} bits",
                                           FixedText(static_cast<double>(live.Flow_ml_m), 1),
                                           live.Bits));
}

void ChannelVelocityRun::ShowWait(const LiveReading& live, double duration_s) const {
    ShowReading(live);
    m_Services.Stages.ShowLine(
        StageLine::Remaining,
        fmt::format("Elapsed:  {:.0f} s of {:.0f} s", std::floor(live.Elapsed_s), duration_s));
}

} // namespace ombrix
