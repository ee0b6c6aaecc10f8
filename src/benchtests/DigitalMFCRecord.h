#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace ombrix {

/// What the test of the digital MFCs measures, and the lines in which it is stored.
class DigitalMFCRecord {
  public:
    static constexpr std::int32_t Channels = 2;
    static constexpr std::int32_t Steps = 10;
    /// Eleven phases of at most 16 s with a sample each 50 ms.
    static constexpr std::int32_t Rows = 3520;

    struct Sample {
        float Time_s = 0.0F;
        float Demand_bits = 0.0F;
        float Value_bits = 0.0F;
        float Pressure_bits = 0.0F;
    };
    /// The mean of the end of each demand phase, by channel and step.
    using StepMeans = std::array<std::array<float, Steps>, Channels>;

    static const char* Header();
    /// Demand of a step in % of full scale: each level once rising and, at step 9 - k, once
    /// falling.
    static float ProfileDemand(std::int32_t step);

    /// Samples beyond the table's rows are dropped.
    void Add(std::int32_t channel, const Sample& sample);
    void SetMean(std::int32_t channel, std::int32_t step, float mean_bits);

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

} // namespace ombrix
