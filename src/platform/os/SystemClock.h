#pragma once

#include "platform/ports/Clock.h"

namespace ombrix {

/// The clocks of the operating system.
class SystemClock final : public Clock {
  public:
    std::int64_t Counter() const override;
    std::int64_t Frequency() const override;
    double SecondsSinceMidnight() const override;
    OleDate Now() const override;
    /// Sleeps up to 0.2 ms before the deadline and leaves the rest to the caller's loop: the
    /// scheduler wakes a sleeper some 0.05 ms late, which would show in the sample spacing.
    void Rest(double longest_s) override;
};

/// A clock that runs a number of times faster than another: a simulated bench in a hurry.
class ScaledClock final : public Clock {
  public:
    /// @param scale how many seconds pass here in a second there, above 0
    /// @param start date and time when it begins
    ScaledClock(Clock& base, double scale, OleDate start);

    std::int64_t Counter() const override;
    std::int64_t Frequency() const override { return m_Base.Frequency(); }
    double SecondsSinceMidnight() const override;
    OleDate Now() const override;
    void Rest(double longest_s) override;

  private:
    double Elapsed_s() const;

    Clock& m_Base;
    double m_Scale;
    std::int64_t m_StartCounter;
    OleDate m_StartDate;
};

} // namespace ombrix
