#pragma once

#include "benchtests/BenchTest.h"
#include "board/DACSliders.h"
#include "board/procedure/DrivingProcedure.h"
#include "board/procedure/ProcedureWait.h"

#include <cstdint>
#include <functional>
#include <utility>

namespace ombrix {

/// What became of a speed test: how long all pairs of writes took in each mode, 0 for a mode that
/// was not measured to its end. Errors are in the outcome.
struct SpeedResult {
    ProcedureOutcome Outcome;
    double Analog_s = 0.0;
    double Digital_s = 0.0;
};

/// Drives both air channels of the current board 2000 times in analog and then in digital mode,
/// and takes the time of each. Both channels end at zero, the board in the mode it had.
/// One object serves one run.
class SpeedTest {
  public:
    static constexpr std::int32_t Pairs = 2000;

    /// @param sliders show what the channels are told
    /// @param modeChanged told when the board has changed between analog and digital mode
    SpeedTest(Station& station, DACSliders& sliders, std::function<void()> modeChanged)
        : m_Station(station), m_Sliders(sliders), m_ModeChanged(std::move(modeChanged)),
          m_Wait(station.World.Time, station.World.Events, m_Cancel) {}

    SpeedResult Run(const BenchTestView& view);
    void Cancel() { m_Cancel.Request(); }

  private:
    bool DrivePairs(clsHiResTimer& timer, bool digital, const BenchTestView& view,
                    double& duration_s);
    void SetMode(bool digital);
    AIBStatus SetOutput(std::int32_t channel, std::int32_t bits);
    void BothChannelsToZero();

    Station& m_Station;
    DACSliders& m_Sliders;
    std::function<void()> m_ModeChanged;
    Cancellation m_Cancel;
    ProcedureWait m_Wait;
    AnswerWatch m_Watch;
};

} // namespace ombrix
