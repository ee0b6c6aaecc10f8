#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace ombrix {

/// The texts in which numbers and dates are shown and stored. None depends on the locale: the
/// decimal sign is a point in every file, wherever it was written.

/// General decimal text: at most 7 significant digits of a Single, 15 of a Double; no trailing
/// zeros; an exponent ("1.5E+20") only beyond that many digits or below 0.0001.
std::string GeneralText(float value);
std::string GeneralText(double value);
/// A whole number; no text for a reading that is not there.
std::string OptionalText(std::optional<std::int32_t> value);
/// The same for people: "--" for a reading that is not there.
std::string ShownText(std::optional<std::int32_t> value);

/// Text with a fixed number of decimals, as the formats "0", "0.0" and "0.00" give it.
std::string FixedText(double value, int decimals);

/// Upper-case hexadecimal of the 32 bits, without prefix or leading zeros.
std::string HexText(std::int32_t value);

/// Every occurrence of a text replaced by another.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view by);

/// The template with "[1]", "[2]", … replaced by the first, second, … value.
std::string FormatArgs(std::string_view text, std::initializer_list<std::string_view> values);

/// Text of a number that an operator typed, decimal or hexadecimal ("0x1F"); nothing when it is no
/// number.
std::optional<double> ParseNumber(std::string_view text);

/// The text without surrounding blanks (and the zero bytes that fill up fixed-width texts).
std::string Trimmed(std::string_view text);

/// The small letter of a capital of the Latin alphabet; any other character as it is.
constexpr char LowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Equal without regard to the case of the Latin alphabet, as names of sheets and files are.
bool SameIgnoringCase(std::string_view left, std::string_view right);

/// Characters of UTF-8 text.
std::size_t CharacterCount(std::string_view text);

/// The text cut or filled with blanks to a number of characters.
std::string FixedWidth(std::string_view text, std::size_t characters);

/// Text of the boards is 8-bit text in Windows-1252; inside the program text is UTF-8.

/// Every one of the 256 bytes gives a character; the five that the code page leaves open give
/// the control character of the same number.
std::string FromWindows1252(std::string_view bytes);

/// A character that the code page lacks becomes "?".
std::string ToWindows1252(std::string_view text);

} // namespace ombrix
