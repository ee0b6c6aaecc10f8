#pragma once

#include "benchtests/BenchTest.h"
#include "board/Station.h"
#include "board/procedure/HiResTimer.h"
#include "board/procedure/Outcome.h"
#include "board/procedure/ProcedureWait.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

namespace ombrix {

/// What became of a speed test: how long all pairs of writes took in each mode, nothing for a mode
/// that was not measured to its end. Errors are in the outcome.
struct SpeedResult : Outcome {
    std::optional<double> Analog_s{};
    std::optional<double> Digital_s{};
};

/// Drives both air channels of the current board 2000 times in analog and then in digital mode,
/// and takes the time of each. Both channels end at zero, the board in the mode it had.
/// One object serves one run.
class SpeedTest {
  public:
    static constexpr std::int32_t Pairs = 2000;

    /// @param modeChanged told when the board has changed between analog and digital mode
    SpeedTest(Station& station, std::function<void()> modeChanged)
        : m_Station(station), m_ModeChanged(std::move(modeChanged)), m_Wait(station) {}

    SpeedResult Run(const BenchTestView& view);

  private:
    bool DriveBothWays(const BenchTestView& view, SpeedResult& result);
    bool DrivePairs(HiResTimer& timer, bool digital, const BenchTestView& view,
                    std::optional<double>& duration_s);
    /// @throws BoardError when the outputs cannot be brought to zero
    void SetMode(bool digital);

    Station& m_Station;
    std::function<void()> m_ModeChanged;
    ProcedureWait m_Wait;
};

} // namespace ombrix
