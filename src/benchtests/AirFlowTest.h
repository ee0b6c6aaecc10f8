#pragma once

#include "benchtests/BenchTest.h"
#include "board/Station.h"
#include "board/procedure/HiResTimer.h"
#include "board/procedure/Outcome.h"
#include "board/procedure/ProcedureWait.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace ombrix {

/// What became of an air flow test. Errors are in the outcome; the operator has been told of them.
struct AirFlowResult : Outcome {
    /// Which boards are missing, as the operator has been told; empty when all were there.
    std::string MissingBoards;
    /// Samples that were written.
    std::int32_t Lines = 0;
};

/// Runs a schedule of demands and valve positions on one board, the flow board, and samples it
/// all the while against an external reference that a second board reads, the measure board.
/// One object serves one run.
class AirFlowTest {
  public:
    explicit AirFlowTest(Station& station) : m_Station(station), m_Wait(station) {}

    AirFlowResult TestAirFlow(const BenchTestView& view);

  private:
    /// What the flow board is told in a step of the schedule.
    struct FlowDemand {
        std::array<std::int32_t, 2> Bits{};
        /// The valve's position: it selects the channel on the air line.
        std::int32_t Valve = 0;
    };
    /// What the parts of a running test work on.
    struct Running {
        LineFile& Log;
        HiResTimer& Timer;
        const BenchTestView& View;
        AirFlowResult& Result;
    };

    static FlowDemand AirFlowSchedule(std::int32_t step);
    void FindBoards();
    std::string MissingBoards() const;
    bool Measure(const BenchTestView& view, AirFlowResult& result);
    bool RunWhole(LineFile& log, const BenchTestView& view, AirFlowResult& result);
    bool RunSchedule(Running& run);
    /// Samples for a time. False when the operator has cancelled.
    bool SampleFor(Running& run, double duration_s, const std::string& label);
    /// Writes a line when the clock has moved on since the last one.
    bool SampleAirFlow(Running& run);
    /// The two inputs of the flow board and that of the measure board.
    using Inputs = std::array<std::optional<std::int32_t>, 3>;
    Inputs ReadInputs(HiResTimer& timer);
    void SetDemands(const FlowDemand& demand);

    Station& m_Station;
    ProcedureWait m_Wait;
    std::shared_ptr<AIB> m_Flow;
    std::shared_ptr<AIB> m_Measure;
    /// One for each input: an input that answers says nothing of the others.
    std::array<AnswerWatch, 3> m_Watches;
    /// Of the last line.
    std::int64_t m_LastTick = -1;
};

} // namespace ombrix
