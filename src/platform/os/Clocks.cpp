#include "platform/os/Clocks.h"

#include "platform/os/SystemTime.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace ombrix {

namespace {

double TimeOfDay(OleDate date) {
    return (date.Days() - std::floor(date.Days())) * SecondsPerDay;
}

} // namespace

std::int64_t SystemClock::Counter() const {
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

std::int64_t SystemClock::Frequency() const {
    using Period = std::chrono::steady_clock::period;
    return Period::den / Period::num;
}

double SystemClock::SecondsSinceMidnight() const {
    const auto now = std::chrono::system_clock::now();
    const auto wholeSeconds = std::chrono::floor<std::chrono::seconds>(now);
    const std::tm local = SystemTime::Local(std::chrono::system_clock::to_time_t(wholeSeconds));
    const std::chrono::duration<double> fraction = now - wholeSeconds;
    return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec + fraction.count();
}

OleDate SystemClock::Now() const {
    const std::tm local = SystemTime::Local(std::time(nullptr));
    return OleDate::FromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                               local.tm_min, std::min(local.tm_sec, 59)});
}

void SystemClock::Rest(double longest_s) {
    const double sleep_s = std::min(LongestRest_s, longest_s - SystemTime::WakeMargin_s);
    if (sleep_s > 0.0)
        SystemTime::SleepFor(sleep_s);
}

ScaledClock::ScaledClock(Clock& base, double scale, OleDate start)
    : m_Base(base), m_Scale(scale), m_StartCounter(base.Counter()), m_StartDate(start) {}

double ScaledClock::Elapsed_s() const {
    return static_cast<double>(Counter() - m_StartCounter) / static_cast<double>(Frequency());
}

std::int64_t ScaledClock::Counter() const {
    const auto passed = static_cast<double>(m_Base.Counter() - m_StartCounter);
    return m_StartCounter + std::llround(passed * m_Scale);
}

double ScaledClock::SecondsSinceMidnight() const {
    return std::fmod(TimeOfDay(m_StartDate) + Elapsed_s(), SecondsPerDay);
}

OleDate ScaledClock::Now() const {
    return OleDate(m_StartDate.Days() + std::floor(Elapsed_s()) / SecondsPerDay);
}

void ScaledClock::Rest(double longest_s) {
    m_Base.Rest(longest_s / m_Scale);
}

namespace {

constexpr std::int64_t CountsPerSecond = 1'000'000'000;

} // namespace

VirtualClock::VirtualClock(OleDate start) : m_Start(start) {}

std::int64_t VirtualClock::Frequency() const {
    return CountsPerSecond;
}

double VirtualClock::Elapsed_s() const {
    return static_cast<double>(m_Counter) / static_cast<double>(CountsPerSecond);
}

double VirtualClock::SecondsSinceMidnight() const {
    const double startOfDay = m_Start.Days() - std::floor(m_Start.Days());
    return std::fmod(startOfDay * SecondsPerDay + Elapsed_s(), SecondsPerDay);
}

OleDate VirtualClock::Now() const {
    return OleDate(m_Start.Days() + std::floor(Elapsed_s()) / SecondsPerDay);
}

void VirtualClock::Rest(double longest_s) {
    Advance(std::min(longest_s, LongestRest_s));
}

void VirtualClock::Advance(double seconds) {
    // At least one count, so that a loop that waits for a moment always reaches it.
    const double counts = std::ceil(seconds * static_cast<double>(CountsPerSecond));
    m_Counter += std::max<std::int64_t>(1, static_cast<std::int64_t>(counts));
}

} // namespace ombrix
