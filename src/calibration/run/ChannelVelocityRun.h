#pragma once

#include "board/procedure/HiResTimer.h"
#include "board/procedure/ProcedureWait.h"
#include "calibration/history/RunRecorder.h"
#include "calibration/run/CalibrationLog.h"
#include "calibration/run/CalibrationView.h"
#include "calibration/run/MeasuringLoop.h"

#include <string>

namespace ombrix {

/// What the measurement of a channel works with.
struct ChannelRunServices {
    const ACURecord& Record;
    AirChannelControl& Air;
    MeasuringLoop& Loop;
    const ProcedureWait& Wait;
    CalibrationView& Stages;
    CalibrationLog& Log;
    RunRecorder& Recorder;
    ProcedureGate& Gate;
    /// What follows this channel, of the whole procedure, in seconds.
    double After_s = 0.0;
    /// The whole procedure.
    double Whole_s = 0.0;
};

/// How long the measuring of a channel takes, in seconds; 0 for one that is not there.
double ChannelTime_s(const ACURecord& record, std::size_t channel);
/// How long a velocity run takes, without what the operator takes to answer.
double VelocityRunTime_s(const ACURecord& record);

/// The measurement of one air channel: a rising and a falling sweep over the calibration points
/// and two steps from zero air.
class ChannelVelocityRun {
  public:
    ChannelVelocityRun(const ChannelRunServices& services, CalibrationKind kind,
                       std::int32_t channel);

    /// Measures the channel; all air is off afterwards. True when everything has been measured:
    /// false for a channel that is not there, and when the operator has cancelled. @param result
    /// takes what is measured, as it is measured, so that it is not lost with a board
    /// @throws BoardError
    bool CalibrateChannelVelocity(ChannelMeasurement& result);

  private:
    bool HasValves() const { return m_Services.Record.HasSolenoidValves != 0; }
    std::string Heading() const;
    /// True, and logged, for a channel that cannot be measured.
    bool SkipsUnmeasurable(std::int32_t points) const;
    void BuildDemands(std::int32_t points, ChannelMeasurement& result) const;
    void MeasureAll(ChannelMeasurement& result);
    /// Tells what is measured now, and how much is left.
    void Tell(const std::string& step);
    double MeasuringTime_s(std::size_t point) const;
    void PreFlow();
    void Sweep(ChannelMeasurement& result, std::vector<PointReading>& sweep, bool rising);
    void SetDemand(PointDemand& demand);
    void LogPoint(std::size_t point, const PointDemand& demand, const PointReading& reading) const;
    StepMeasurement MeasureCalibrationPoint(std::int32_t point);
    SampleSink Samples() const;
    void ShowReading(const LiveReading& live) const;
    void ShowWait(const LiveReading& live, double duration_s) const;

    ChannelRunServices m_Services;
    CalibrationKind m_Kind;
    std::int32_t m_Channel;
    float m_Capacity_ml_m;
    /// Of this channel.
    double m_Whole_s;
    HiResTimer m_Timer;
};

} // namespace ombrix
