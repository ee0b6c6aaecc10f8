#pragma once

#include "calibration/run/CalibrationLog.h"
#include "calibration/run/CalibrationView.h"
#include "calibration/run/MeasuringLoop.h"
#include "calibration/run/RunRecorder.h"

#include <string>

namespace ombrix {

/// What the measurement of a channel works with.
struct ChannelRunServices {
    const ACURecord& Record;
    AirChannelControl& Air;
    MeasuringLoop& Loop;
    CalibrationView& Stages;
    CalibrationLog& Log;
    const Clock& Time;
    const ProcedureWait& Wait;
    RunRecorder& Recorder;
};

/// The measurement of one air channel: a rising and a falling sweep over the calibration points
/// and two steps from zero air; then its data are judged and, for a system run, fitted.
class ChannelVelocityRun {
  public:
    ChannelVelocityRun(const ChannelRunServices& services, CalibrationKind kind,
                       std::int32_t channel);

    /// All air is off afterwards. When the operator cancels, the result holds what has been
    /// measured and is not acceptable. @param result takes what is measured, as it is measured,
    /// so that it is not lost with a board @throws BoardError
    void CalibrateChannelVelocity(ChannelMeasurement& result);

  private:
    bool HasValves() const { return m_Services.Record.m_HasSolenoidValves != 0; }
    std::string Heading() const;
    bool CanBeMeasured(std::int32_t points) const;
    void BuildDemands(std::int32_t points, ChannelMeasurement& result) const;
    void MeasureAll(ChannelMeasurement& result);
    double WholeTime_s(const ChannelMeasurement& result) const;
    double MeasuringTime_s(std::size_t point) const;
    void PreFlow();
    void Sweep(ChannelMeasurement& result, std::vector<PointReading>& sweep, bool rising);
    void SetDemand(PointDemand& demand);
    void LogPoint(std::size_t point, const PointDemand& demand, const PointReading& reading) const;
    StepMeasurement MeasureCalibrationPoint(std::int32_t point);
    void Judge(ChannelMeasurement& result) const;
    SampleSink Samples() const;
    void ShowReading(const LiveReading& live) const;
    void ShowWait(const LiveReading& live, double duration_s) const;

    const ChannelRunServices& m_Services;
    CalibrationKind m_Kind;
    std::int32_t m_Channel;
    float m_Capacity_ml_m;
    clsHiResTimer m_Timer;
};

} // namespace ombrix
