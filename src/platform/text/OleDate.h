#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace ombrix {

/// A calendar date and time of day in local time, to the second.
struct CivilTime {
    int Year = 1899;
    int Month = 12;
    int Day = 30;
    int Hour = 0;
    int Minute = 0;
    int Second = 0;

    auto operator<=>(const CivilTime&) const = default;
};

inline constexpr double SecondsPerDay = 86400.0;

/// Date and time as days since 30 December 1899, the fraction being the time of day: the form
/// in which dates stand in EPROMs and workbooks. 0 means "never".
/// The count is kept as it is read, so that any 64 bits of an EPROM survive being carried.
class OleDate {
  public:
    constexpr OleDate() = default;
    constexpr explicit OleDate(double days) : m_Days(days) {}

    /// The date of a calendar time; the time is taken as given, without time zones.
    static OleDate FromCivil(const CivilTime& time);

    constexpr double Days() const { return m_Days; }

    /// The calendar time, to the nearest second; nothing for a count that is no date of the
    /// years 100 to 9999 (an EPROM may hold any bits).
    std::optional<CivilTime> ToCivil() const;

    constexpr bool operator==(const OleDate&) const = default;

  private:
    double m_Days = 0.0;
};

/// A date in a pattern of yyyy, yy, mm, dd, hh, nn (minutes) and ss; every other character
/// stands for itself. Bits that are no date give "(no date)".
std::string DateText(OleDate date, std::string_view pattern);

/// The same as windows, messages and lists show it wherever no other form is prescribed:
/// "2026-11-24 13:05:09".
std::string IsoText(OleDate date);

} // namespace ombrix
