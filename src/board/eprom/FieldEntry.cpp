#include "board/eprom/FieldEntry.h"

#include "platform/text/OleDate.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>
#include <sstream>

namespace ombrix {

namespace {

FieldEntry Wrong(std::string error) {
    return {{}, std::move(error)};
}

/// As the typed operations store it. @param write given where to and an address
template <class Write>
FieldEntry Encoded(const Write& write) {
    EpromWords words;
    std::int32_t address = 0;
    write(words, address);
    FieldEntry entry;
    for (const EpromWords::Word& word : words.All())
        entry.Words.push_back(word.Value);
    return entry;
}

FieldEntry Encoded(OleDate date) {
    return Encoded(
        [date](EpromWords& words, std::int32_t& address) { words.WriteEPROMDate(address, date); });
}

FieldEntry ParseLong(std::string_view typed) {
    using Limits = std::numeric_limits<std::int32_t>;
    const auto number = ParseNumber(typed);
    if (!number || *number != std::trunc(*number))
        return Wrong("Not a whole number. Enter digits, or 0x and up to eight hexadecimal digits.");
    if (*number < Limits::min() || *number > Limits::max())
        return Wrong(fmt::format("Out of range: {} to {}.", Limits::min(), Limits::max()));
    return {{static_cast<std::int32_t>(*number)}};
}

FieldEntry ParseSingle(std::string_view typed) {
    const auto number = ParseNumber(typed);
    if (!number)
        return Wrong("Not a number. Enter digits with a point, like 1.5, or 0x and the bits of a "
                     "Single in hexadecimal.");
    if (std::abs(*number) > static_cast<double>(std::numeric_limits<float>::max()))
        return Wrong("Out of range: a Single goes up to 3.402823E+38.");
    const auto single = static_cast<float>(*number);
    if (single == 0.0F && *number != 0.0)
        return Wrong("Out of range: a Single cannot tell this from 0.");
    return Encoded([single](EpromWords& words, std::int32_t& address) {
        words.WriteEPROMSng(address, single);
    });
}

/// Takes a number of digits and what divides it from the next one; nothing where it is another.
std::optional<int> TakeDigits(std::string_view& text, std::string_view dividers) {
    int number = 0;
    constexpr std::size_t mostDigits = 4;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + std::min(text.size(), mostDigits), number);
    if (error != std::errc{} || text.front() == '-')
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (text.empty() != dividers.empty() ||
        (!text.empty() && dividers.find(text.front()) == std::string_view::npos))
        return std::nullopt;
    text.remove_prefix(text.empty() ? 0 : 1);
    return number;
}

/// Day, month and year in either order, divided by one sign or the other.
std::optional<CivilTime> TakeDate(std::string_view text) {
    constexpr std::size_t yearDigits = 4;
    const bool yearFirst = text.find('-') == yearDigits;
    const char* const divider = yearFirst ? "-" : "/";
    const auto first = TakeDigits(text, divider);
    const auto month = TakeDigits(text, divider);
    const std::size_t digits = text.size();
    const auto last = TakeDigits(text, "");
    if (!first || !month || !last || (!yearFirst && digits != yearDigits))
        return std::nullopt;
    const int year = yearFirst ? *first : *last;
    const int day = yearFirst ? *last : *first;
    const std::chrono::year_month_day date{std::chrono::year{year},
                                           std::chrono::month{static_cast<unsigned>(*month)},
                                           std::chrono::day{static_cast<unsigned>(day)}};
    constexpr int firstYear = 1900; // the day before it stands for "never"
    return date.ok() && year >= firstYear ? std::optional(CivilTime{year, *month, day, 0, 0, 0})
                                          : std::nullopt;
}

/// "14:05" or "14:05:09".
bool TakeTime(std::string_view text, CivilTime& time) {
    constexpr int hours = 24;
    constexpr int sixty = 60;
    const bool hasSeconds = text.find(':') != text.rfind(':');
    const auto hour = TakeDigits(text, ":");
    const auto minute = TakeDigits(text, hasSeconds ? ":" : "");
    const auto second = hasSeconds ? TakeDigits(text, "") : std::optional(0);
    if (!hour || !minute || !second || *hour >= hours || *minute >= sixty || *second >= sixty)
        return false;
    time.Hour = *hour;
    time.Minute = *minute;
    time.Second = *second;
    return true;
}

FieldEntry ParseDate(const std::string& typed) {
    if (SameIgnoringCase(typed, "never"))
        return Encoded(OleDate());
    const std::size_t divider = typed.find_first_of(" T");
    auto time = TakeDate(std::string_view(typed).substr(0, divider));
    if (time && divider != std::string::npos &&
        !TakeTime(std::string_view(typed).substr(divider + 1), *time))
        time.reset();
    if (!time)
        return Wrong("Not a date. Enter one like 15/03/2024 14:05:09, or never.");
    return Encoded(OleDate::FromCivil(*time));
}

FieldEntry ParseText(const EpromField& field, std::string_view typed) {
    const std::int32_t length = field.Words * EpromWordBytes;
    const std::size_t characters = CharacterCount(typed);
    if (characters > static_cast<std::size_t>(length))
        return Wrong(fmt::format("Too long: {} characters, {} fit.", characters, length));
    if (FromWindows1252(ToWindows1252(typed)) != typed)
        return Wrong("The board has no place for one of these characters.");
    if (std::any_of(typed.begin(), typed.end(),
                    [](char character) { return static_cast<unsigned char>(character) < ' '; }))
        return Wrong("A character of these cannot be shown.");
    return Encoded([&](EpromWords& words, std::int32_t& address) {
        words.WriteEPROMString(address, FixedWidth(typed, static_cast<std::size_t>(length)),
                               length);
    });
}

bool IsHexadecimal(std::string_view typed) {
    return typed.starts_with("0x") || typed.starts_with("0X");
}

/// "0x" and up to eight digits, or a whole number of 32 bits, with or without a sign.
std::optional<std::int32_t> ParseWord(std::string_view typed) {
    constexpr std::size_t mostDigits = 8;
    constexpr int decimal = 10;
    constexpr int hexadecimal = 16;
    const bool isHexadecimal = IsHexadecimal(typed);
    if (isHexadecimal)
        typed.remove_prefix(2);
    std::int64_t word = 0;
    const char* const end = typed.data() + typed.size();
    const auto [read, error] =
        std::from_chars(typed.data(), end, word, isHexadecimal ? hexadecimal : decimal);
    const bool fits = isHexadecimal ? typed.size() <= mostDigits && !typed.starts_with('-')
                                    : word >= std::numeric_limits<std::int32_t>::min() &&
                                          word <= std::numeric_limits<std::uint32_t>::max();
    if (error != std::errc{} || read != end || !fits)
        return std::nullopt;
    return static_cast<std::int32_t>(word);
}

} // namespace

FieldEntry ParseWords(const EpromField& field, std::string_view typed) {
    FieldEntry entry;
    std::istringstream groups{std::string(typed)};
    for (std::string group; groups >> group;) {
        const auto word = ParseWord(group);
        if (!word)
            return Wrong("No word of 32 bits. Enter 0x and up to eight hexadecimal digits, or a "
                         "whole number.");
        entry.Words.push_back(*word);
    }
    if (std::ssize(entry.Words) != field.Words)
        return Wrong(field.Words == 1
                         ? std::string("Enter one word, such as 0x3FC00000.")
                         : fmt::format("Enter {} words, divided by blanks; these are {}.",
                                       field.Words, entry.Words.size()));
    return entry;
}

FieldEntry ParseValue(const EpromField& field, std::string_view typed) {
    if (field.Kind == EpromKind::Text)
        return ParseText(field, typed);
    const std::string value = Trimmed(typed);
    if (IsHexadecimal(value))
        return ParseWords(field, value);
    switch (field.Kind) {
    case EpromKind::Single: return ParseSingle(value);
    case EpromKind::Date: return ParseDate(value);
    default: return ParseLong(value);
    }
}

std::string ValueToEdit(const EpromField& field, const EpromImage& image) {
    const std::string shown = ShowField(field, image);
    if (shown.starts_with('(')) // erased, no number, no date
        return {};
    return field.Kind == EpromKind::Text ? shown.substr(1, shown.size() - 2) : shown;
}

} // namespace ombrix
