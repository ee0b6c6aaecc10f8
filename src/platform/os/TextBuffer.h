#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ombrix {

/// A text of limited length that asks for no memory, so that a signal handler can make one.
/// What does not fit is cut off.
template <std::size_t Capacity>
class TextBuffer {
  public:
    TextBuffer& Text(std::string_view text) {
        const std::size_t length = std::min(text.size(), Capacity - 1 - m_Length);
        std::copy_n(text.data(), length, m_Characters.data() + m_Length);
        m_Length += length;
        return *this;
    }
    /// @param digits at least so many, filled with zeros
    TextBuffer& Number(std::int64_t value, std::size_t digits = 1) {
        std::array<char, 24> text{};
        const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
        const auto length = static_cast<std::size_t>(result.ptr - text.data());
        for (std::size_t missing = length; missing < digits; ++missing)
            Text("0");
        return Text({text.data(), length});
    }

    std::string_view View() const { return {m_Characters.data(), m_Length}; }
    const char* CString() const { return m_Characters.data(); }

  private:
    std::array<char, Capacity> m_Characters{};
    std::size_t m_Length = 0;
};

} // namespace ombrix
