#include "platform/text/OleDate.h"

#include <chrono>
#include <cmath>

namespace ombrix {

namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr sys_days Epoch{std::chrono::year{1899} / 12 / 30};
constexpr double FirstDay = -657434.0; // 1 January 100
constexpr double LastDay = 2958465.0;  // 31 December 9999

} // namespace

OleDate OleDate::FromCivil(const CivilTime& time) {
    const sys_days date{std::chrono::year{time.Year} /
                        std::chrono::month{static_cast<unsigned>(time.Month)} /
                        std::chrono::day{static_cast<unsigned>(time.Day)}};
    const auto wholeDays = static_cast<double>((date - Epoch).count());
    const double fraction = (time.Hour * 3600.0 + time.Minute * 60.0 + time.Second) / SecondsPerDay;
    // Before the epoch the fraction still counts forward within the day, so it is subtracted.
    return OleDate(wholeDays < 0.0 ? wholeDays - fraction : wholeDays + fraction);
}

std::optional<CivilTime> OleDate::ToCivil() const {
    if (!(m_Days > FirstDay - 1.0 && m_Days < LastDay + 1.0))
        return std::nullopt;
    double wholeDays = std::trunc(m_Days);
    double seconds = std::nearbyint(std::abs(m_Days - wholeDays) * SecondsPerDay);
    if (seconds >= SecondsPerDay) {
        seconds = 0.0;
        wholeDays += 1.0;
    }
    if (wholeDays > LastDay)
        return std::nullopt;
    const std::chrono::year_month_day date{Epoch + days{static_cast<int>(wholeDays)}};
    const int secondOfDay = static_cast<int>(seconds);
    return CivilTime{static_cast<int>(date.year()),
                     static_cast<int>(static_cast<unsigned>(date.month())),
                     static_cast<int>(static_cast<unsigned>(date.day())),
                     secondOfDay / 3600,
                     secondOfDay / 60 % 60,
                     secondOfDay % 60};
}

} // namespace ombrix
