#pragma once

#include "platform/ports/Clock.h"

namespace ombrix {

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
