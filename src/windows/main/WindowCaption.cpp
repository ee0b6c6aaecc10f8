#include "windows/main/WindowCaption.h"

#include <fmt/format.h>

#include <array>
#include <charconv>

namespace ombrix {

std::string WindowCaption(std::string_view version) {
    std::array<int, 3> parts{};
    const char* position = version.data();
    const char* const end = version.data() + version.size();
    for (int& part : parts) {
        position = std::from_chars(position, end, part).ptr;
        if (position != end)
            ++position; // the point
    }
    return fmt::format("Ombrix [v{}.{:02}.{:04}]", parts[0], parts[1], parts[2]);
}

} // namespace ombrix
