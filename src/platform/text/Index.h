#pragma once

#include <cstddef>
#include <cstdint>

namespace ombrix {

/// The place in a container of a number of the program's own 32-bit count, which is not negative.
constexpr std::size_t Index(std::int32_t number) {
    return static_cast<std::size_t>(number);
}

} // namespace ombrix
