#pragma once

#include "platform/text/OleDate.h"

#include <cstdint>

namespace ombrix {

/// The time that the program lives by: a monotonic counter for measuring and waiting, and the
/// wall clock for time stamps. Waits never use the wall clock, so that midnight or a changed
/// system time neither cuts nor stretches them.
class Clock {
  public:
    virtual ~Clock() = default;

    /// The monotonic performance counter, in counts.
    virtual std::int64_t Counter() const = 0;
    /// Counts per second; 0 where the platform has no high-resolution counter.
    virtual std::int64_t Frequency() const = 0;
    /// Local time of day in seconds, 0 to 86400.
    virtual double SecondsSinceMidnight() const = 0;
    /// Local date and time, in whole seconds.
    virtual OleDate Now() const = 0;
    /// Rests for at most the given time and at most a millisecond. Returns early, if anything:
    /// a caller that waits for a deadline calls again until it has passed.
    virtual void Rest(double longest_s) = 0;

  protected:
    static constexpr double LongestRest_s = 0.001;
};

/// The monotonic counter in seconds.
inline double MonotonicSeconds(const Clock& clock) {
    return static_cast<double>(clock.Counter()) / static_cast<double>(clock.Frequency());
}

} // namespace ombrix
