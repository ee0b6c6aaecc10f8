#include "platform/os/Clocks.h"
#include "platform/text/OleDate.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace ombrix {
namespace {

TEST(Rounding, HalvesGoToTheEvenNeighbour) {
    EXPECT_EQ(RoundHalfEven(0.5), 0);
    EXPECT_EQ(RoundHalfEven(1.5), 2);
    EXPECT_EQ(RoundHalfEven(-2.5), -2);
    EXPECT_EQ(RoundHalfEven(32767.5), 32768);
    EXPECT_DOUBLE_EQ(RoundHalfEven(0.125, 2), 0.12);
}

TEST(Rounding, ValuesBeyond32BitsAreHeld) {
    EXPECT_EQ(RoundHalfEven(1e300), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(RoundHalfEven(-1e300), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(RoundHalfEven(std::numeric_limits<double>::quiet_NaN()), 0);
}

struct DateCase {
    CivilTime Time;
    double Days;
};
class OleDateTest : public ::testing::TestWithParam<DateCase> {};

TEST_P(OleDateTest, ConvertsBothWays) {
    const auto& [time, days] = GetParam();
    EXPECT_DOUBLE_EQ(OleDate::FromCivil(time).Days(), days);
    EXPECT_EQ(OleDate(days).ToCivil(), time);
}

INSTANTIATE_TEST_SUITE_P(Dates, OleDateTest,
                         ::testing::Values(DateCase{{1899, 12, 30, 0, 0, 0}, 0.0},
                                           DateCase{{2000, 1, 1, 0, 0, 0}, 36526.0},
                                           DateCase{{2024, 2, 29, 18, 0, 0}, 45351.75},
                                           DateCase{{1899, 12, 29, 6, 0, 0}, -1.25},
                                           DateCase{{9999, 12, 31, 0, 0, 0}, 2958465.0}));

TEST(OleDate, BitsThatAreNoDateGiveNone) {
    for (const double days : {std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300, 2958466.0,
                              std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(OleDate(days).ToCivil()) << days;
}

TEST(OleDate, TheLastHalfSecondOfADayRoundsIntoTheNext) {
    EXPECT_EQ(OleDate(36526.0 - 1e-7).ToCivil(), (CivilTime{2000, 1, 1, 0, 0, 0}));
}

TEST(CodePage, EveryByteSurvivesTheWayThroughTheProgram) {
    std::string bytes;
    for (int code = 0; code < 256; ++code)
        bytes += static_cast<char>(code);
    EXPECT_EQ(ToWindows1252(FromWindows1252(bytes)), bytes);
    EXPECT_EQ(FromWindows1252("\x80\xFF"), "€ÿ");
}

TEST(CodePage, WhatTheCodePageLacksBecomesAQuestionMark) {
    EXPECT_EQ(ToWindows1252("a漢\xF0\x9F\x98\x80z"), "a??z");
    EXPECT_EQ(ToWindows1252("cut\xE2\x82"), "cut??");
}

TEST(Clocks, VirtualTimeMovesOnlyByRestingAndCrossesMidnight) {
    VirtualClock clock(OleDate::FromCivil({2024, 3, 15, 23, 59, 59}));
    EXPECT_EQ(clock.Counter(), clock.Counter());
    clock.Rest(5.0);
    EXPECT_EQ(clock.Counter(), clock.Frequency() / 1000);
    clock.Advance(1.5);
    EXPECT_NEAR(clock.SecondsSinceMidnight(), 0.501, 1e-4);
    EXPECT_EQ(clock.Now().ToCivil(), (CivilTime{2024, 3, 16, 0, 0, 0}));
}

TEST(Clocks, ScaledTimeRunsFaster) {
    VirtualClock base;
    ScaledClock clock(base, 60.0, base.Now());
    const std::int64_t start = clock.Counter();
    base.Advance(2.0);
    EXPECT_EQ(clock.Counter() - start, 120 * clock.Frequency());
    EXPECT_EQ(clock.Now().ToCivil(), (CivilTime{2024, 3, 15, 14, 7, 9}));
}

} // namespace
} // namespace ombrix
