#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace ombrix {

namespace {

std::string General(double value, int significantDigits) {
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value < 0 ? "-Infinity" : "Infinity";
    if (value == 0.0)
        return "0";
    return fmt::format("{:.{}G}", value, significantDigits);
}

bool IsBlank(char character) {
    return character == ' ' || character == '\0';
}

/// Number of bytes of the UTF-8 text that its first characters take.
std::size_t BytesOfCharacters(std::string_view text, std::size_t characters) {
    std::size_t bytes = 0;
    while (bytes < text.size()) {
        const bool startsCharacter = (static_cast<unsigned char>(text[bytes]) & 0xC0U) != 0x80U;
        if (startsCharacter && characters-- == 0)
            break;
        ++bytes;
    }
    return bytes;
}

} // namespace

std::string GeneralText(float value) {
    return General(static_cast<double>(value), 7);
}

std::string GeneralText(double value) {
    return General(value, 15);
}

std::string OptionalText(std::optional<std::int32_t> value) {
    return value ? std::to_string(*value) : "";
}

std::string ShownText(std::optional<std::int32_t> value) {
    return value ? std::to_string(*value) : "--";
}

std::string FixedText(double value, int decimals) {
    std::string text = fmt::format("{:.{}f}", value, decimals);
    // A value that rounds to zero has no sign.
    if (text.starts_with('-') && text.find_first_of("123456789in") == std::string::npos)
        text.erase(0, 1);
    return text;
}

std::string HexText(std::int32_t value) {
    return fmt::format("{:X}", static_cast<std::uint32_t>(value));
}

bool SameIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return LowerCase(a) == LowerCase(b); });
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view by) {
    std::string result;
    for (std::size_t found = text.find(what); found != std::string_view::npos;
         found = text.find(what)) {
        result.append(text.substr(0, found)).append(by);
        text.remove_prefix(found + what.size());
    }
    return result.append(text);
}

std::string FormatArgs(std::string_view text, std::initializer_list<std::string_view> values) {
    std::string result(text);
    int position = 0;
    for (const std::string_view value : values)
        result = ReplaceAll(result, fmt::format("[{}]", ++position), value);
    return result;
}

namespace {

/// What stands behind the "0x" of a number.
std::optional<double> ParseHexadecimal(std::string_view digits) {
    std::uint32_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    const bool isNumber = error == std::errc{} && end == digits.data() + digits.size();
    return isNumber ? std::optional<double>(value) : std::nullopt;
}

} // namespace

std::optional<double> ParseNumber(std::string_view text) {
    std::string_view number = text;
    while (!number.empty() && IsBlank(number.front()))
        number.remove_prefix(1);
    while (!number.empty() && IsBlank(number.back()))
        number.remove_suffix(1);
    if (number.starts_with('+') && number.size() > 1 && number[1] != '-')
        number.remove_prefix(1);
    if (number.starts_with("0x") || number.starts_with("0X"))
        return ParseHexadecimal(number.substr(2));
    double value = 0.0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    const bool isNumber = error == std::errc{} && end == number.data() + number.size();
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::string Trimmed(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return std::string(text);
}

std::size_t CharacterCount(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    }));
}

std::string FixedWidth(std::string_view text, std::size_t characters) {
    std::string result(text.substr(0, BytesOfCharacters(text, characters)));
    result.append(characters - CharacterCount(result), ' ');
    return result;
}

namespace {

// Characters 0x80 to 0x9F of Windows-1252; all others have the number of their Unicode character.
constexpr std::array<char16_t, 32> Upper = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void AppendUtf8(std::string& text, char32_t character) {
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | (character >> 6));
        text += static_cast<char>(0x80 | (character & 0x3F));
    } else {
        text += static_cast<char>(0xE0 | (character >> 12));
        text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (character & 0x3F));
    }
}

/// Takes the next character off the front of the text; a malformed byte counts as U+FFFD.
char32_t TakeUtf8(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    if (lead < 0x80)
        return lead;
    const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : -1;
    if (following < 0 || text.size() < static_cast<std::size_t>(following))
        return 0xFFFD;
    char32_t character = lead & (0x3FU >> following);
    for (int i = 0; i < following; ++i) {
        const auto next = static_cast<unsigned char>(text.front());
        if ((next & 0xC0U) != 0x80U)
            return 0xFFFD;
        character = (character << 6) | (next & 0x3FU);
        text.remove_prefix(1);
    }
    return character;
}

char ToByte(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
        return static_cast<char>(character);
    const auto* found = std::find(Upper.begin(), Upper.end(), character);
    return found == Upper.end() ? '?' : static_cast<char>(0x80 + (found - Upper.begin()));
}

} // namespace

std::string FromWindows1252(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        AppendUtf8(text, code >= 0x80 && code < 0xA0 ? char32_t{Upper.at(code - 0x80U)} : code);
    }
    return text;
}

std::string ToWindows1252(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty())
        bytes += ToByte(TakeUtf8(text));
    return bytes;
}

} // namespace ombrix
