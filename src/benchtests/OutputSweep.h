#pragma once

#include "benchtests/BenchTest.h"
#include "board/Station.h"
#include "board/procedure/HiResTimer.h"
#include "board/procedure/Outcome.h"
#include "board/procedure/ProcedureWait.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ombrix {

/// What a sweep of the outputs does.
struct SweepPlan {
    static constexpr std::int32_t Top_bits = 65000;
    static constexpr std::int32_t LargestStep_bits = 65535;
    static constexpr std::int32_t UsualStep_bits = 1000;
    static constexpr std::int32_t LongestDelay_ms = 60000;
    static constexpr std::int32_t UsualDelay_ms = 4000;

    /// The upper half of the range, in steps wide enough for the air to settle.
    static SweepPlan UpperHalf();
    /// The whole range from 0. @param step_bits 1 to LargestStep_bits
    /// @param bothWays down again afterwards
    static SweepPlan Stepped(std::int32_t step_bits, std::int32_t delay_ms, bool bothWays);

    /// What the file's name has behind the time.
    std::string NameEnding;
    /// Levels in bits; each sweep has its own header in the file.
    std::vector<std::vector<std::int32_t>> Sweeps;
    /// From setting a level to reading the inputs.
    double Delay_s = 0.0;
};

/// What became of a sweep; errors are in the outcome, the readings in its file.
struct SweepResult : Outcome {
    /// Levels that were measured.
    std::int32_t Lines = 0;
};

/// Steps all four analog outputs of the current board through a range and logs its four inputs
/// after each step. One object serves one run.
class OutputSweep {
  public:
    explicit OutputSweep(Station& station) : m_Station(station), m_Wait(station) {}

    SweepResult Run(const SweepPlan& plan, const BenchTestView& view);

  private:
    bool Sweep(LineFile& log, const SweepPlan& plan, const BenchTestView& view,
               SweepResult& result);
    void SetOutputs(std::int32_t level_bits);
    bool Settle(HiResTimer& timer, double delay_s);
    std::optional<std::int32_t> Reading(std::int32_t channel, HiResTimer& timer);
    /// Nothing when an input could not be read.
    std::optional<std::string> MeasuredLine(std::int32_t level_bits, HiResTimer& timer);

    Station& m_Station;
    ProcedureWait m_Wait;
    /// One for each input: an input that answers says nothing of the others.
    std::array<AnswerWatch, AIB::DACChannels> m_Watches;
};

} // namespace ombrix
