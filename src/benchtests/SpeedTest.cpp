#include "benchtests/SpeedTest.h"

#include "board/procedure/DrivingProcedure.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

namespace ombrix {

SpeedResult SpeedTest::Run(const BenchTestView& view) {
    SpeedResult result;
    RunBenchProcedure(m_Station, "speed test", {m_Station.CurrentAIB}, result,
                      [&] { return DriveBothWays(view, result); });
    view.Stage(result.Ended == End::Passed
                   ? fmt::format("Analogue {} s, digital {} s", FixedText(*result.Analog_s, 2),
                                 FixedText(*result.Digital_s, 2))
                   : StageText(result.Ended));
    return result;
}

bool SpeedTest::DriveBothWays(const BenchTestView& view, SpeedResult& result) {
    /// Gives the board its mode back, whatever way the test is left.
    class ModeKept {
      public:
        explicit ModeKept(SpeedTest& test)
            : m_Test(test), m_Digital(test.m_Station.CurrentAIB->IsDigitalSetup()) {}
        ModeKept(const ModeKept&) = delete;
        ModeKept& operator=(const ModeKept&) = delete;
        ~ModeKept() {
            // The end of the procedure switches off what reaches the outputs either way.
            m_Test.m_Station.CurrentAIB->IsDigitalSetup(m_Digital);
            m_Test.m_ModeChanged();
        }

      private:
        SpeedTest& m_Test;
        bool m_Digital;
    };
    const ModeKept asBefore(*this);
    HiResTimer timer(m_Station.World.Time);
    return DrivePairs(timer, false, view, result.Analog_s) &&
           DrivePairs(timer, true, view, result.Digital_s);
}

bool SpeedTest::DrivePairs(HiResTimer& timer, bool digital, const BenchTestView& view,
                           std::optional<double>& duration_s) {
    SetMode(digital);
    std::string refused;
    const double start_s = timer.ElapsedTime();
    for (std::int32_t value = 0; value < Pairs; ++value) {
        for (const std::int32_t channel : {0, 1}) {
            const BoardAnswer answer = m_Station.Outputs.Set(*m_Station.CurrentAIB, channel, value);
            if (!answer.Taken())
                refused = answer.Text();
        }
        view.Progress(((digital ? Pairs : 0) + value) / (2.0 * Pairs));
        // Nothing is waited for but the events.
        if (!m_Wait.Pass(timer, 0.0))
            return false;
    }
    // The time of calls that the board refused says nothing of its speed.
    if (!refused.empty())
        throw BoardError("The board has refused outputs: " + refused);
    duration_s = timer.ElapsedTime() - start_s;
    return true;
}

void SpeedTest::SetMode(bool digital) {
    const BoardAnswer answer = m_Station.Outputs.SetDigitalSetup(*m_Station.CurrentAIB, digital);
    if (!answer.Taken())
        throw BoardError("The board has refused outputs: " + answer.Text());
    m_ModeChanged();
}

} // namespace ombrix
