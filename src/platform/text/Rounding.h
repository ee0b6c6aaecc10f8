#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace ombrix {

/// The nearest integer of a measured or computed value, halves to even. The one rule by which
/// the program turns a value into an integer: stored calibration tables depend on it.
/// Values beyond 32 bits are held at the nearer end of the range; no number gives 0.
inline std::int32_t RoundHalfEven(double value) noexcept {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(value))
        return 0;
    const double rounded = std::nearbyint(value);
    if (rounded <= static_cast<double>(Limits::min()))
        return Limits::min();
    if (rounded >= static_cast<double>(Limits::max()))
        return Limits::max();
    return static_cast<std::int32_t>(rounded);
}

/// A value rounded to a number of decimals, halves to even.
inline double RoundHalfEven(double value, int decimals) noexcept {
    const double scale = std::pow(10.0, decimals);
    return std::nearbyint(value * scale) / scale;
}

/// The place in a container of a number of the program's own 32-bit count, which is not negative.
constexpr std::size_t Index(std::int32_t number) {
    return static_cast<std::size_t>(number);
}

} // namespace ombrix
