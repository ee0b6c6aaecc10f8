#pragma once

#include <cstdint>
#include <random>

namespace ombrix::soak {

/// Chance from a seed: the same on every machine, which the library's distributions are not.
class Random {
  public:
    explicit Random(std::uint64_t seed) : m_Engine(seed) {}

    /// A whole number from 0 to count - 1.
    std::size_t Below(std::size_t count) { return static_cast<std::size_t>(m_Engine() % count); }
    /// A number from first to last.
    double Between(double first, double last) {
        constexpr double steps = 1U << 20U;
        return first + (last - first) * static_cast<double>(Below(1U << 20U)) / steps;
    }

  private:
    std::mt19937_64 m_Engine;
};

} // namespace ombrix::soak
