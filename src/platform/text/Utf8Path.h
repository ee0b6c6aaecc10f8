#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace ombrix {

/// Texts inside the program are UTF-8 on every system; what a path makes of a plain text, or gives
/// as one, is another code page on some.

/// The path that a text names.
inline std::filesystem::path PathOf(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

/// The text of a path.
inline std::string TextOf(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace ombrix
