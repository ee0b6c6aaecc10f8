#pragma once

#include <cstdint>

namespace ombrix {

/// Seeded noise: the same seed gives the same readings on every machine.
class Noise {
  public:
    explicit Noise(std::uint64_t seed) : m_State(seed * 0x9E3779B97F4A7C15U + 1U) {}

    /// A value of mean 0 and standard deviation 1, near to normal and never beyond 3.5: the sum
    /// of four uniform values, cut out of one 64-bit draw.
    double Normal() {
        const std::uint64_t draw = Next();
        constexpr std::uint64_t mask = 0xFFFF;
        const std::uint64_t sum =
            (draw & mask) + (draw >> 16U & mask) + (draw >> 32U & mask) + (draw >> 48U);
        constexpr double mean = 2.0 * 65535.0;
        constexpr double deviation = 65536.0 * 0.577350269189626; // √(4/12) of the range
        return (static_cast<double>(sum) - mean) / deviation;
    }

  private:
    // SplitMix64, by Steele, Lea and Flood, "Fast splittable pseudorandom number generators".
    std::uint64_t Next() {
        std::uint64_t z = m_State += 0x9E3779B97F4A7C15U;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }

    std::uint64_t m_State;
};

/// How a mass-flow controller differs from the ideal; amounts in bits of 65534 full scale.
struct MFCCharacteristics {
    double Gain = 1.0;
    double Offset_bits = 0.0;
    /// Largest deviation from the straight line, at half scale.
    double NonLinearity_bits = 0.0;
    /// Difference between the outputs reached from above and from below.
    double Hysteresis_bits = 0.0;
    double Noise_bits = 0.0;
    /// First-order response: 63 % of a step after this time.
    double TimeConstant_s = 0.15;
};

/// One air channel: takes a demand, lets the flow follow, and reads it back.
class MFCChannel {
  public:
    static constexpr double FullScale_bits = 65534.0;

    explicit MFCChannel(const MFCCharacteristics& characteristics)
        : m_Characteristics(characteristics) {}

    /// Another controller in its place; what it does shows with the next demand.
    void SetCharacteristics(const MFCCharacteristics& characteristics) {
        m_Characteristics = characteristics;
    }

    /// Output in bits that a demand settles at, midway between rising and falling.
    static double SteadyOutput(const MFCCharacteristics& characteristics, double demand_bits);

    /// @param now_s never runs backwards
    void SetDemand(double demand_bits, double now_s);
    /// The demand was set long ago: the flow is what it settles at.
    void Settle() { m_Flow_bits = m_Target_bits; }
    /// The flow in bits of full scale.
    double Flow_bits(double now_s);
    /// What the controller reports of its flow: with noise, never below 0.
    double Reading_bits(double now_s, Noise& noise);

  private:
    MFCCharacteristics m_Characteristics;
    double m_Demand_bits = 0.0;
    double m_Target_bits = 0.0;
    double m_Flow_bits = 0.0;
    double m_Time_s = 0.0;
};

} // namespace ombrix
