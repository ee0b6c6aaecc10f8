#pragma once

#include <charconv>
#include <cmath>
#include <concepts>
#include <string>
#include <string_view>

namespace ombrix::xlsx {

/// Text as it may stand in XML: valid UTF-8 and none of the characters that XML forbids;
/// what is not becomes U+FFFD.
std::string CleanText(std::string_view text);

/// Appends clean text with the characters escaped that mean something in XML.
void AppendEscaped(std::string& out, std::string_view text);

/// Text of a cell: characters that XML cannot carry stand as _xHHHH_, the way spreadsheets do.
std::string EncodeCellText(std::string_view text);
std::string DecodeCellText(std::string_view text);

/// Appends the shortest decimal form that reads back as the same number; the number is finite.
template <class T>
requires std::integral<T> || std::floating_point<T>
void AppendNumber(std::string& out, T value) {
    char digits[40];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    out.append(digits, result.ptr);
}

} // namespace ombrix::xlsx
