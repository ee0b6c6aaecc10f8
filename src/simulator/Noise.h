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

} // namespace ombrix
