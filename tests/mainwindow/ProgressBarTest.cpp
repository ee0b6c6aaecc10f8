#include "support/ReadableColour.h"
#include "support/ctrlProgressBar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace ombrix {
namespace {

constexpr Colour Blue{64, 64, 255};
constexpr Colour Red{255, 0, 0};
constexpr Colour Yellow{255, 255, 0};

/// A bar whose surface measures 200 × 40 pixels within its frame.
class ProgressBarTest : public ::testing::Test {
  protected:
    ProgressBarTest() {
        const int frame = 2 * m_Bar.frameWidth();
        m_Bar.resize(200 + frame, 40 + frame);
        m_Bar.show();
    }
    QImage Surface() { return m_Bar.grab(m_Bar.contentsRect()).toImage().convertToFormat(Format); }
    QColor At(int x, int y) { return Surface().pixelColor(x, y); }
    bool IsBlank() {
        const QImage surface = Surface();
        QImage blank(surface.size(), surface.format());
        blank.fill(ToQt(m_Bar.BackColour()));
        return surface == blank;
    }
    std::string Text() const { return m_Bar.accessibleDescription().toStdString(); }
    /// Contrast of the ground of a column range with what is printed most boldly on it.
    double ContrastWithin(int left, int right, const QColor& ground) {
        const QImage surface = Surface();
        double best = 1.0;
        for (int x = left; x < right; ++x) {
            for (int y = 0; y < surface.height(); ++y)
                best = std::max(best, Contrast(surface.pixelColor(x, y), ground));
        }
        return best;
    }

    static constexpr QImage::Format Format = QImage::Format_RGB32;
    ctrlProgressBar m_Bar{nullptr};
};

TEST_F(ProgressBarTest, StartsBlankWithItsDefaults) {
    EXPECT_TRUE(IsBlank());
    EXPECT_EQ(m_Bar.Value(), 50.0F);
    EXPECT_EQ(m_Bar.Range(), 100.0F);
    EXPECT_EQ(m_Bar.Orientation(), 2);
    EXPECT_EQ(m_Bar.Appearance(), 0);
    m_Bar.DisplayType(5);
    m_Bar.Refresh();
    EXPECT_EQ(Text(), "50.00 of 100 (50%)");
}

TEST_F(ProgressBarTest, BoxFollowsTheOrientation) {
    struct Case {
        int Orientation;
        QRect Filled;
    };
    const std::vector<Case> cases = {{0, {0, 0, 50, 40}},
                                     {1, {50, 0, 150, 40}},
                                     {2, {0, 0, 200, 30}},
                                     {3, {0, 30, 200, 10}},
                                     {4, {}},
                                     {-1, {}}};
    m_Bar.Value(25.0F);
    for (const Case& c : cases) {
        m_Bar.Orientation(c.Orientation);
        m_Bar.Refresh();
        const QImage surface = Surface();
        for (const int x : {0, 49, 50, 199}) {
            for (const int y : {0, 29, 30, 39}) {
                const bool filled = c.Filled.contains(x, y);
                EXPECT_EQ(surface.pixelColor(x, y), filled ? ToQt(Blue) : QColor(Qt::white))
                    << c.Orientation << ": " << x << ", " << y;
            }
        }
    }
}

TEST_F(ProgressBarTest, TextFollowsTheDisplayType) {
    m_Bar.UserString("Step");
    m_Bar.MinVal(20.0F);
    m_Bar.MaxVal(70.5F);
    m_Bar.Value(40.2F); // two fifths of the range: the text reckons like the box
    const std::vector<std::pair<int, std::string>> cases = {{0, ""},
                                                            {1, "40%"},
                                                            {2, "40.20"},
                                                            {3, "40.20 of 70.5"},
                                                            {4, "40.20 (40%)"},
                                                            {5, "40.20 of 70.5 (40%)"},
                                                            {6, "Step"},
                                                            {7, "Step (40.20)"},
                                                            {8, "Step 40.20 of 70.5"},
                                                            {9, "Step (40%)"},
                                                            {10, ""},
                                                            {-1, ""}};
    for (const auto& [type, text] : cases) {
        m_Bar.DisplayType(type);
        m_Bar.Refresh();
        EXPECT_EQ(Text(), text) << type;
    }
}

TEST_F(ProgressBarTest, PercentageIsRoundedDownAndWholeOnesStayWhole) {
    m_Bar.DisplayType(1);
    m_Bar.Value(33.3F);
    EXPECT_EQ(Text(), "33%");
    m_Bar.Value(99.9F);
    EXPECT_EQ(Text(), "99%");
    m_Bar.Value(29.0F); // 29 / 100 × 100 would fall short of 29
    EXPECT_EQ(Text(), "29%");
}

TEST_F(ProgressBarTest, WithoutARangeThereIsNeitherBoxNorPercentage) {
    m_Bar.MinVal(100.0F);
    m_Bar.DisplayType(1);
    m_Bar.Refresh();
    EXPECT_TRUE(IsBlank());
    m_Bar.DisplayType(4);
    m_Bar.Refresh();
    EXPECT_EQ(Text(), "50.00");
}

TEST_F(ProgressBarTest, ValueIsHeldToTheLimits) {
    m_Bar.Value(150.0F);
    EXPECT_EQ(m_Bar.Value(), 100.0F);
    m_Bar.Value(-5.0F);
    EXPECT_EQ(m_Bar.Value(), 0.0F);
}

TEST_F(ProgressBarTest, SameValueIsNotDrawnAgain) {
    m_Bar.Value(30.0F);
    EXPECT_FALSE(IsBlank());
    m_Bar.Clear();
    m_Bar.Value(30.0F);
    EXPECT_TRUE(IsBlank());
    m_Bar.Value(31.0F);
    EXPECT_FALSE(IsBlank());
}

TEST_F(ProgressBarTest, StoredSettingsShowWithTheNextRedraw) {
    m_Bar.Orientation(0);
    m_Bar.Value(50.1F);
    m_Bar.ForeColour(Red);
    m_Bar.DisplayType(6);
    m_Bar.UserString("Stored");
    EXPECT_EQ(At(0, 0), ToQt(Blue));
    EXPECT_EQ(Text(), "");
    m_Bar.Value(50.0F);
    EXPECT_EQ(At(0, 0), ToQt(Red));
    EXPECT_EQ(Text(), "Stored");
}

TEST_F(ProgressBarTest, NewMinimumChangesTheRangeWithTheNextRescale) {
    m_Bar.DisplayType(1);
    m_Bar.MinVal(40.0F);
    m_Bar.Value(60.0F);
    EXPECT_EQ(Text(), "20%");
    m_Bar.Refresh();
    EXPECT_EQ(Text(), "33%");
    m_Bar.MinVal(50.0F);
    EXPECT_EQ(m_Bar.Range(), 60.0F);
    m_Bar.resize(300, 30);
    EXPECT_EQ(m_Bar.Range(), 50.0F);
}

TEST_F(ProgressBarTest, NewBackgroundClearsTheSurface) {
    m_Bar.Value(80.0F);
    m_Bar.BackColour(Yellow);
    EXPECT_EQ(At(0, 0), ToQt(Yellow));
    EXPECT_TRUE(IsBlank());
}

TEST_F(ProgressBarTest, TextIsReadableOnBothSidesOfTheEdge) {
    constexpr double readable = 4.5;
    m_Bar.setFont(QFont("Arial", 12));
    m_Bar.Orientation(0);
    m_Bar.DisplayType(6);
    m_Bar.UserString("HHHHHHHH");
    for (const Colour colour : {Blue, Yellow}) {
        m_Bar.ForeColour(colour);
        m_Bar.Refresh();
        EXPECT_GE(ContrastWithin(0, 100, ToQt(colour)), readable);
        EXPECT_GE(ContrastWithin(100, 200, Qt::white), readable);
        EXPECT_EQ(At(0, 20), ToQt(colour));
        EXPECT_EQ(At(199, 20), QColor(Qt::white));
    }
}

TEST_F(ProgressBarTest, AppearanceIsThatOfTheSurface) {
    const QImage flat = m_Bar.grab().toImage();
    m_Bar.Appearance(1);
    EXPECT_EQ(m_Bar.Appearance(), 1);
    EXPECT_NE(m_Bar.grab().toImage(), flat);
    m_Bar.Appearance(0);
    EXPECT_EQ(m_Bar.grab().toImage(), flat);
}

} // namespace
} // namespace ombrix
