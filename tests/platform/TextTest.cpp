#include "platform/text/Text.h"

#include "platform/text/OleDate.h"

#include <gtest/gtest.h>

#include <limits>

namespace ombrix {
namespace {

TEST(Text, GeneralTextKeepsTheDigitsOfTheType) {
    EXPECT_EQ(GeneralText(0.1F), "0.1");
    EXPECT_EQ(GeneralText(12.5F), "12.5");
    EXPECT_EQ(GeneralText(0.015625F), "0.015625");
    EXPECT_EQ(GeneralText(1.0F / 3.0F), "0.3333333");
    EXPECT_EQ(GeneralText(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(GeneralText(12345678.0F), "1.234568E+07");
    EXPECT_EQ(GeneralText(-0.0F), "0");
    EXPECT_EQ(GeneralText(std::numeric_limits<float>::quiet_NaN()), "NaN");
}

TEST(Text, FixedTextHasNoNegativeZero) {
    EXPECT_EQ(FixedText(2.0, 2), "2.00");
    EXPECT_EQ(FixedText(20.000000298, 1), "20.0");
    EXPECT_EQ(FixedText(-0.001, 2), "0.00");
    EXPECT_EQ(FixedText(-0.5, 1), "-0.5");
}

TEST(Text, HexadecimalIsThatOfThe32Bits) {
    EXPECT_EQ(HexText(0), "0");
    EXPECT_EQ(HexText(-1), "FFFFFFFF");
    EXPECT_EQ(HexText(0xAABB), "AABB");
}

TEST(Text, NumbersAreToldFromOtherTexts) {
    EXPECT_EQ(ParseNumber(" 70000 "), 70000.0);
    EXPECT_EQ(ParseNumber("-5"), -5.0);
    EXPECT_EQ(ParseNumber("+1e3"), 1000.0);
    EXPECT_EQ(ParseNumber(" 0xfF "), 255.0);
    for (const char* text : {"", " ", "12x", "0x", "0x1G", "0x100000000", "-0x1", "1,5", "nan",
                             "inf", "--1", "+-1", "1e999"})
        EXPECT_FALSE(ParseNumber(text)) << text;
}

TEST(Text, FixedWidthCountsCharactersNotBytes) {
    EXPECT_EQ(FixedWidth("M1", 4), "M1  ");
    EXPECT_EQ(FixedWidth("ÿÿÿ", 2), "ÿÿ");
    EXPECT_EQ(Trimmed(FixedWidth(" é", 12)), "é");
}

TEST(Text, PlacesAreFilledByTheirNumber) {
    EXPECT_EQ(FormatArgs("Channel [1] at [2], [1]", {"2", "50"}), "Channel 2 at 50, 2");
}

TEST(Text, DatePatterns) {
    const OleDate date = OleDate::FromCivil({2024, 3, 5, 14, 5, 9});
    EXPECT_EQ(DateText(date, "yyyymmdd_hhnnss"), "20240305_140509");
    EXPECT_EQ(DateText(date, "yymmdd_hhnnss"), "240305_140509");
    EXPECT_EQ(DateText(date, "yyyyddmm_hhnnss"), "20240503_140509");
    EXPECT_EQ(DateText(date, "dd/mm/yyyy hh:nn"), "05/03/2024 14:05");
    EXPECT_EQ(DateText(OleDate(1e300), "yyyy"), "(no date)");
}

} // namespace
} // namespace ombrix
