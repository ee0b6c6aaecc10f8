#include "benchtests/SpeedTest.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

namespace ombrix {

SpeedResult SpeedTest::Run(const BenchTestView& view) {
    SpeedResult result;
    const auto asBefore = [this, digital = m_Station.g_CurrentAIB->IsDigitalSetup()] {
        m_Sliders.ShowAllOff();
        SetMode(digital);
    };
    RunBenchProcedure(m_Station, "speed test", {{m_Station.g_CurrentAIB}, asBefore}, result.Outcome,
                      [&] {
                          clsHiResTimer timer(m_Station.World.Time);
                          return DrivePairs(timer, false, view, result.Analog_s) &&
                                 DrivePairs(timer, true, view, result.Digital_s);
                      });
    const auto ended = result.Outcome.Ended;
    view.Stage(ended == ProcedureOutcome::End::Completed
                   ? fmt::format("Analogue {} s, digital {} s", FixedText(result.Analog_s, 2),
                                 FixedText(result.Digital_s, 2))
                   : EndText(ended));
    return result;
}

bool SpeedTest::DrivePairs(clsHiResTimer& timer, bool digital, const BenchTestView& view,
                           double& duration_s) {
    // A mode reaches other outputs than the one before it, which would keep their last value.
    BothChannelsToZero();
    SetMode(digital);
    AIBStatus refused = Status::NoError;
    const double start_s = timer.ElapsedTime();
    for (std::int32_t value = 0; value < Pairs; ++value) {
        for (const std::int32_t channel : {0, 1}) {
            const AIBStatus status = SetOutput(channel, value);
            m_Watch.Note(status, timer.ElapsedTime());
            refused = status == Status::NoError ? refused : status;
        }
        view.Progress(((digital ? Pairs : 0) + value) / (2.0 * Pairs));
        // Nothing is waited for but the events.
        if (!m_Wait.Pass(timer, 0.0))
            return false;
    }
    // The time of calls that the board refused says nothing of its speed.
    if (refused != Status::NoError)
        throw BoardError("The board has refused outputs: " + clsAIB::AIBErrorStr(refused) + ".");
    duration_s = timer.ElapsedTime() - start_s;
    return true;
}

void SpeedTest::SetMode(bool digital) {
    m_Station.g_CurrentAIB->IsDigitalSetup(digital);
    m_ModeChanged();
}

AIBStatus SpeedTest::SetOutput(std::int32_t channel, std::int32_t bits) {
    const AIBStatus status = m_Station.g_CurrentAIB->SetDAC(channel, bits);
    m_Sliders.Show(channel, DACSliders::PositionOf(bits));
    return status;
}

void SpeedTest::BothChannelsToZero() {
    SetOutput(0, 0);
    SetOutput(1, 0);
}

} // namespace ombrix
