#include "platform/os/VirtualClock.h"

#include <algorithm>
#include <cmath>

namespace ombrix {

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
