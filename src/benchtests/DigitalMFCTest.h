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

/// What the test of the digital MFCs measures, and the lines in which it is stored.
class DigitalMFCTable {
  public:
    static constexpr std::int32_t Channels = 2;
    static constexpr std::int32_t Steps = 10;
    /// Eleven phases of at most 16 s with a sample each 50 ms.
    static constexpr std::int32_t Rows = 3520;

    struct Sample {
        float Time_s = 0.0F;
        std::int32_t Demand_bits = 0;
        /// Nothing where a reading has failed.
        std::optional<std::int32_t> Value_bits{};
        std::optional<std::int32_t> Pressure_bits{};
    };
    /// The mean of the end of each demand phase, by channel and step; nothing where none was
    /// measured.
    using StepMeans = std::array<std::array<std::optional<float>, Steps>, Channels>;

    static const char* Header();
    /// Demand of a step in % of full scale: each level once rising and, at step 9 - k, once
    /// falling.
    static float ProfileDemand(std::int32_t step);

    /// Samples beyond the table's rows are dropped.
    void Add(std::int32_t channel, const Sample& sample);
    void SetMean(std::int32_t channel, std::int32_t step, std::optional<float> mean_bits);

    std::int32_t SampleCount(std::int32_t channel) const;
    bool Empty() const { return m_Samples[0].empty() && m_Samples[1].empty(); }
    const StepMeans& Means() const { return m_Means; }
    /// A row of the file; rows without samples are zero.
    std::string Line(std::int32_t row) const;

  private:
    std::string EndPointBlock(std::int32_t row) const;

    std::array<std::vector<Sample>, Channels> m_Samples;
    StepMeans m_Means{};
};

/// What became of a test of the digital MFCs, and what it compares; errors are in the outcome.
struct DigitalMFCResult : Outcome {
    /// In bits.
    DigitalMFCTable::StepMeans Means{};
};

/// Runs ten demand steps on each of the current board's air channels, records them, and compares
/// the readings of the way up with those of the way down. Whatever way it ends, both channels
/// are at zero and what was measured is stored. The table of both channels can be written at the
/// end only: until then the samples lie in a file of their own, a line each. One object serves one
/// run.
class DigitalMFCTest {
  public:
    explicit DigitalMFCTest(Station& station) : m_Station(station), m_Wait(station) {}

    DigitalMFCResult Run(const BenchTestView& view);

  private:
    enum class Recording { Off, On };
    struct Phase {
        std::int32_t Channel = 0;
        float Demand_percent = 0.0F;
        double Duration_s = 0.0;
        Recording Record = Recording::On;
    };
    /// The mean of a phase's last seconds.
    class EndMean;
    struct Running {
        HiResTimer& Timer;
        const BenchTestView& View;
        LineFile& Samples;
        /// On the timer, of the channel's profile.
        double ProfileStart_s = 0.0;
        double LastSample_s = 0.0;
    };

    bool MeasureAndStore(const BenchTestView& view, Outcome& outcome);
    bool Measure(LineFile& samples, const BenchTestView& view);
    bool RunDemandProfile(Running& run, std::int32_t channel);
    bool RunDemandPhase(Running& run, const Phase& phase, std::optional<float>& mean_bits);
    bool FollowPhase(Running& run, const Phase& phase, std::int32_t demand_bits, EndMean& mean);
    void TakeSample(Running& run, const Phase& phase, std::int32_t demand_bits, double inPhase_s,
                    EndMean& mean);
    std::optional<std::int32_t> Read(Running& run, std::int32_t channel, AnswerWatch& watch);
    std::string PathNow(const char* ending) const;
    /// @param lastLine why the test has ended early; empty when it has not
    void Store(const BenchTestView& view, const std::string& lastLine, Outcome& outcome);

    Station& m_Station;
    ProcedureWait m_Wait;
    /// One for each input: an input that answers says nothing of the other.
    AnswerWatch m_ValueWatch;
    AnswerWatch m_PressureWatch;
    DigitalMFCTable m_Table;
};

} // namespace ombrix
