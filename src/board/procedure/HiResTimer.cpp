#include "board/procedure/HiResTimer.h"

#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

namespace ombrix {

HiResTimer::HiResTimer(const Clock& clock) : m_Clock(clock), m_Frequency(clock.Frequency()) {
    if (m_Frequency <= 0)
        throw HiResTimingError();
    StartTimer(false);
}

double HiResTimer::Seconds(std::int64_t counts) const {
    return static_cast<double>(counts) / static_cast<double>(m_Frequency);
}

void HiResTimer::StartTimer(bool reset) {
    m_Start = m_Clock.Counter();
    m_Now = m_Start;
    m_Running = true;
    if (reset)
        m_Total = 0;
}

double HiResTimer::StopTimer() {
    const double elapsed = ElapsedTime();
    if (m_Running)
        m_Total += m_Now - m_Start;
    m_Running = false;
    return elapsed;
}

double HiResTimer::ElapsedTime() {
    if (!m_Running)
        return 0.0;
    m_Now = m_Clock.Counter();
    return Seconds(m_Now - m_Start);
}

double HiResTimer::TotalTime() const {
    return Seconds(m_Running ? m_Total + (m_Now - m_Start) : m_Total);
}

std::string HiResTimer::FormatTime(std::string_view text, double& seconds, int decimals) {
    if (seconds < 0.0)
        seconds = ElapsedTime();
    std::string number = fmt::format("{:.{}f}", RoundHalfEven(seconds, decimals), decimals);
    if (number.find('.') != std::string::npos) {
        number.erase(number.find_last_not_of('0') + 1);
        if (number.back() == '.')
            number.pop_back();
    }
    return ReplaceAll(text, "###", number);
}

double HiResTimer::Precision() const {
    return 1.0 / static_cast<double>(m_Frequency);
}

} // namespace ombrix
