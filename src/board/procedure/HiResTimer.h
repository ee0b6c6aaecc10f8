#pragma once

#include "platform/ports/Clock.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ombrix {

/// The platform has no high-resolution counter (error number 1001).
class HiResTimingError : public std::runtime_error {
  public:
    static constexpr int Number = 1001;
    HiResTimingError() : std::runtime_error("This system doesn't support high-res timing") {}
};

/// A stopwatch on the platform's performance counter; times in seconds.
class HiResTimer {
  public:
    /// Starts at once. @throws HiResTimingError
    explicit HiResTimer(const Clock& clock);

    void StartTimer(bool reset);
    /// Stops and returns the elapsed time; 0 when the timer was not running.
    double StopTimer();
    /// Time since the start, 0 when the timer is not running.
    double ElapsedTime();
    /// Time of all intervals up to the last reading.
    double TotalTime() const;
    /// The template with every "###" replaced by the seconds, rounded to the given number of
    /// decimals. Negative seconds are replaced by the elapsed time, in the caller's variable too.
    std::string FormatTime(std::string_view text, double& seconds, int decimals);
    /// Length of one count.
    double Precision() const;

  private:
    double Seconds(std::int64_t counts) const;

    const Clock& m_Clock;
    std::int64_t m_Frequency;
    std::int64_t m_Start = 0;
    std::int64_t m_Now = 0;
    std::int64_t m_Total = 0;
    bool m_Running = false;
};

} // namespace ombrix
