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

/// A clock that moves only when somebody rests on it: hours of bench time pass as fast as the
/// program computes.
class VirtualClock final : public Clock {
  public:
    explicit VirtualClock(OleDate start = OleDate::FromCivil({2024, 3, 15, 14, 5, 9}));

    std::int64_t Counter() const override { return m_Counter; }
    std::int64_t Frequency() const override;
    double SecondsSinceMidnight() const override;
    OleDate Now() const override;
    void Rest(double longest_s) override;

    /// Lets time pass at once.
    void Advance(double seconds);

  private:
    double Elapsed_s() const;

    OleDate m_Start;
    std::int64_t m_Counter = 0;
};

} // namespace ombrix
