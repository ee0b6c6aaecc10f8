#include "calibration/run/MeasuringLoop.h"

#include "board/procedure/HiResTimer.h"

namespace ombrix {

MeasuringLoop::MeasuringLoop(Station& station, AirChannelControl& air, ProcedureWait& wait)
    : m_AIB(station.CurrentAIB), m_Unit(station.Calibration()), m_Air(air), m_Wait(wait),
      m_Clock(station.World.Time),
      m_NeverCalibrated(m_Unit.Record().VelocitySystemDate == OleDate()) {}

PointReading MeasuringLoop::Measure(std::int32_t channel, double duration_s, const Display& display,
                                    const SampleSink& samples) {
    PointReading result;
    result.Trace.reserve(static_cast<std::size_t>(duration_s / SampleSpacing_s) + 1);
    HiResTimer timer(m_Clock);
    double sampled_s = 0.0;
    double displayDue_s = 0.0;
    LiveReading live;
    while ((live.Elapsed_s = timer.ElapsedTime()) < duration_s) {
        if (const auto bits = Read(channel)) {
            live.Bits = *bits;
            live.Flow_ml_m = m_Air.FlowOf(channel, live.Bits);
            if (live.Elapsed_s - sampled_s >= SampleSpacing_s) {
                sampled_s = live.Elapsed_s;
                result.Trace.push_back({static_cast<float>(sampled_s), live.Bits});
                if (samples)
                    samples(result.Trace.back());
            }
        }
        if (live.Elapsed_s >= displayDue_s) {
            displayDue_s = live.Elapsed_s + DisplaySpacing_s;
            display(live);
        }
        if (!m_Wait.Pass(timer, duration_s))
            return result;
        PollChangeOver();
    }
    TakeMeans(result, duration_s,
              m_Unit.Record().ChannelCapacity.at(static_cast<std::size_t>(channel)));
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
