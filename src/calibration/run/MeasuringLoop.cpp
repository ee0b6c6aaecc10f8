#include "calibration/run/MeasuringLoop.h"

#include "board/procedure/HiResTimer.h"
#include "platform/text/Rounding.h"

namespace ombrix {

namespace {

/// Sums of the last seconds of a measurement.
class RunningMeans {
  public:
    void Add(const LiveReading& live) {
        m_Bits += live.Bits;
        m_Flow_ml_m += static_cast<double>(live.Flow_ml_m);
        ++m_Count;
    }
    void Store(PointReading& result) const {
        result.Valid = m_Count > 0;
        if (!result.Valid)
            return;
        result.Reading_bits = RoundHalfEven(static_cast<double>(m_Bits) / m_Count);
        result.Flow_ml_m = static_cast<float>(m_Flow_ml_m / m_Count);
    }

  private:
    std::int64_t m_Bits = 0;
    double m_Flow_ml_m = 0.0;
    std::int32_t m_Count = 0;
};

} // namespace

MeasuringLoop::MeasuringLoop(Station& station, AirChannelControl& air, ProcedureWait& wait)
    : m_AIB(station.CurrentAIB), m_Air(air), m_Wait(wait), m_Clock(station.World.Time),
      m_NeverCalibrated(station.Calibration().Record().VelocitySystemDate == OleDate()) {}

PointReading MeasuringLoop::Measure(std::int32_t channel, double duration_s, const Display& display,
                                    const SampleSink& samples) {
    PointReading result;
    result.Trace.reserve(static_cast<std::size_t>(duration_s / SampleSpacing_s) + 1);
    RunningMeans means;
    HiResTimer timer(m_Clock);
    double sampled_s = 0.0;
    double displayDue_s = 0.0;
    LiveReading live;
    while ((live.Elapsed_s = timer.ElapsedTime()) < duration_s) {
        if (const auto bits = Read(channel)) {
            live.Bits = *bits;
            live.Flow_ml_m = m_Air.FlowOfReading(channel, live.Bits);
            if (live.Elapsed_s - sampled_s >= SampleSpacing_s) {
                sampled_s = live.Elapsed_s;
                result.Trace.push_back({static_cast<float>(sampled_s), live.Bits});
                if (samples)
                    samples(result.Trace.back());
            }
            if (duration_s - live.Elapsed_s < MeanTime_s)
                means.Add(live);
        }
        if (live.Elapsed_s >= displayDue_s) {
            displayDue_s = live.Elapsed_s + DisplaySpacing_s;
            display(live);
        }
        if (!m_Wait.Pass(timer, duration_s))
            return result;
        PollChangeOver();
    }
    means.Store(result);
    return result;
}

void MeasuringLoop::PollChangeOver() {
    if (!m_Air.ChangeOverBusy())
        return;
    m_Air.CurrentAir_mms(false);
    // Polling does not advance a unit without a table, and without that its first point would
    // be measured at the pre-charge, so that it could never get a table.
    if (m_NeverCalibrated)
        m_Air.UpdateChannelChangeOver();
}

AIBStatus MeasuringLoop::AskForAnswer() {
    std::int32_t value = 0;
    return m_AIB->ReadReg(AIB::PressureRegister, value);
}

std::optional<std::int32_t> MeasuringLoop::Read(std::int32_t channel) {
    BoardAnswer answer;
    const auto bits = m_AIB->Reading(channel, &answer);
    m_Watch.Note(answer, MonotonicSeconds(m_Clock));
    return bits;
}

void MeasuringLoop::AwaitAnswer() {
    HiResTimer timer(m_Clock);
    for (AIBStatus status = AskForAnswer(); status != Status::NoError && !m_Wait.Ended();
         status = AskForAnswer()) {
        m_Watch.Note({status}, MonotonicSeconds(m_Clock));
        m_Wait.Pass(timer, timer.ElapsedTime() + AnswerWatch::Patience_s);
    }
}

} // namespace ombrix
