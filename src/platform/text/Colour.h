#pragma once

#include <cstdint>

namespace ombrix {

/// A colour of the display; red, green and blue 0 to 255.
struct Colour {
    std::uint8_t Red = 0;
    std::uint8_t Green = 0;
    std::uint8_t Blue = 0;

    bool operator==(const Colour&) const = default;
};

} // namespace ombrix
