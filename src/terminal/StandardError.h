#pragma once

#include <cstdio>
#include <string_view>

namespace ombrix {

/// Writes to standard error at once. A terminal that is gone takes nothing more, which must not
/// disturb what is being made safe meanwhile.
inline void WriteError(std::string_view text) noexcept {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

} // namespace ombrix
