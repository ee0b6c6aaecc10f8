#include "platform/text/OleDate.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
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

std::string DateText(OleDate date, std::string_view pattern) {
    const auto time = date.ToCivil();
    if (!time)
        return "(no date)";
    struct Field {
        std::string_view Letters;
        int Value;
    };
    const std::array<Field, 7> fields = {{{"yyyy", time->Year},
                                          {"yy", time->Year % 100},
                                          {"mm", time->Month},
                                          {"dd", time->Day},
                                          {"hh", time->Hour},
                                          {"nn", time->Minute},
                                          {"ss", time->Second}}};
    std::string text;
    while (!pattern.empty()) {
        const auto* field = std::find_if(fields.begin(), fields.end(), [pattern](const Field& f) {
            return pattern.starts_with(f.Letters);
        });
        if (field == fields.end()) {
            text += pattern.front();
            pattern.remove_prefix(1);
        } else {
            text += fmt::format("{:0{}}", field->Value, field->Letters.size());
            pattern.remove_prefix(field->Letters.size());
        }
    }
    return text;
}

std::string IsoText(OleDate date) {
    return DateText(date, "yyyy-mm-dd hh:nn:ss");
}

} // namespace ombrix
