#pragma once

#include "board/procedure/ProcedureWait.h"
#include "calibration/air/AirChannelControl.h"
#include "calibration/judge/Measurement.h"

#include <functional>
#include <memory>
#include <optional>

namespace ombrix {

/// What a channel reads at this moment.
struct LiveReading {
    /// Time since the loop began.
    double Elapsed_s = 0.0;
    std::int32_t Bits = 0;
    float Flow_ml_m = 0.0F;
};

/// Takes the samples of a trace as they are taken.
using SampleSink = std::function<void(const TraceSample&)>;

/// The loop in which a channel is read while time passes. It advances a change-over that is
/// going on, and ends early when the operator cancels.
class MeasuringLoop {
  public:
    /// The trace keeps a reading every so often.
    static constexpr double SampleSpacing_s = 0.1;
    /// Often enough for an eye, rarely enough for a processor.
    static constexpr double DisplaySpacing_s = 0.05;

    using Display = std::function<void(const LiveReading&)>;

    MeasuringLoop(Station& station, AirChannelControl& air, ProcedureWait& wait);

    const Clock& Time() const { return m_Clock; }

    /// Reads a channel for a time. The reading is not valid when the operator has cancelled.
    /// @param samples is told each sample of the trace; may be none
    /// @throws BoardError when the board has stopped answering
    PointReading Measure(std::int32_t channel, double duration_s, const Display& display,
                         const SampleSink& samples = {});
    /// Lets a time pass. False when the operator has cancelled. @throws BoardError
    bool Wait(std::int32_t channel, double duration_s, const Display& display) {
        return Measure(channel, duration_s, display).Valid;
    }
    /// Returns once the board answers. @throws BoardError when it does not
    void AwaitAnswer();

  private:
    /// Nothing when the reading has failed. @throws BoardError
    std::optional<std::int32_t> Read(std::int32_t channel);
    AIBStatus AskForAnswer();
    void PollChangeOver();

    std::shared_ptr<AIB> m_AIB;
    const ACUCalibration& m_Unit;
    AirChannelControl& m_Air;
    ProcedureWait& m_Wait;
    const Clock& m_Clock;
    AnswerWatch m_Watch;
    /// The unit has no table yet.
    bool m_NeverCalibrated;
};

} // namespace ombrix
