#include "board/procedure/HiResTimer.h"

#include "platform/os/Clocks.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

TEST(HiResTimer, AddsUpItsIntervals) {
    VirtualClock clock;
    HiResTimer timer(clock);
    clock.Advance(1.5);
    EXPECT_DOUBLE_EQ(timer.ElapsedTime(), 1.5);
    EXPECT_DOUBLE_EQ(timer.StopTimer(), 1.5);
    EXPECT_DOUBLE_EQ(timer.StopTimer(), 0.0);
    EXPECT_DOUBLE_EQ(timer.ElapsedTime(), 0.0);
    timer.StartTimer(false);
    clock.Advance(1.0);
    EXPECT_DOUBLE_EQ(timer.TotalTime(), 1.5) << "no new reading has been taken";
    timer.ElapsedTime();
    EXPECT_DOUBLE_EQ(timer.TotalTime(), 2.5);
    timer.StartTimer(true);
    EXPECT_DOUBLE_EQ(timer.TotalTime(), 0.0);
}

TEST(HiResTimer, FormatsTimeInPlainDecimals) {
    VirtualClock clock;
    HiResTimer timer(clock);
    clock.Advance(12.3456);
    double seconds = -1.0;
    EXPECT_EQ(timer.FormatTime("took ### s (###)", seconds, 2), "took 12.35 s (12.35)");
    EXPECT_DOUBLE_EQ(seconds, 12.3456);
    seconds = 100.0;
    EXPECT_EQ(timer.FormatTime("###", seconds, 1), "100");
}

class NoCounter final : public Clock {
  public:
    std::int64_t Counter() const override { return 0; }
    std::int64_t Frequency() const override { return 0; }
    double SecondsSinceMidnight() const override { return 0.0; }
    OleDate Now() const override { return {}; }
    void Rest(double) override {}
};

TEST(HiResTimer, NeedsACounter) {
    const NoCounter clock;
    EXPECT_THROW(HiResTimer{clock}, HiResTimingError);
}

} // namespace
} // namespace ombrix
