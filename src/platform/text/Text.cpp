#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

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

std::optional<double> ParseNumber(std::string_view text) {
    std::string_view number = text;
    while (!number.empty() && IsBlank(number.front()))
        number.remove_prefix(1);
    while (!number.empty() && IsBlank(number.back()))
        number.remove_suffix(1);
    if (number.starts_with('+') && number.size() > 1 && number[1] != '-')
        number.remove_prefix(1);
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

} // namespace ombrix
