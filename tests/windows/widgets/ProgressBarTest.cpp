#include "windows/widgets/ProgressBar.h"

#include "windows/widgets/Controls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace ombrix {
namespace {

constexpr Colour BarBlue{64, 64, 255};
constexpr Colour BarRed{255, 0, 0};
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
        QImage blank = Surface();
        blank.fill(ToQt(m_Bar.BackColour()));
        return Surface() == blank;
    }
    std::string Text() const { return m_Bar.accessibleDescription().toStdString(); }
    /// Contrast of the ground of a column range with what is printed most boldly across its
    /// middle.
    double ContrastWithin(int left, int right, const QColor& ground) {
        const QImage surface = Surface();
        double best = 1.0;
        for (int x = left; x < right; ++x)
            best = std::max(best, Contrast(surface.pixelColor(x, 20), ground));
        return best;
    }

    static constexpr QImage::Format Format = QImage::Format_RGB32;
    ProgressBar m_Bar{nullptr};
};

TEST_F(ProgressBarTest, StartsBlankWithItsDefaults) {
    EXPECT_TRUE(IsBlank());
    EXPECT_EQ(m_Bar.Value(), 50.0F);
    EXPECT_EQ(m_Bar.Range(), 100.0F);
    EXPECT_EQ(m_Bar.Orientation(), 2);
    m_Bar.DisplayType(5);
    m_Bar.Refresh();
    EXPECT_EQ(Text(), "50.00 of 100 (50%)");
}

TEST_F(ProgressBarTest, BoxFollowsTheOrientation) {
    m_Bar.Value(25.0F);
    for (const auto& [orientation, box] : {std::pair(0, QRect(0, 0, 50, 40)),
                                           {1, {50, 0, 150, 40}},
                                           {2, {0, 0, 200, 30}},
                                           {3, {0, 30, 200, 10}},
                                           {4, {}}}) {
        m_Bar.Orientation(orientation);
        m_Bar.Refresh();
        for (const QPoint point : {QPoint(0, 0), {49, 29}, {50, 30}, {199, 39}, {0, 39}}) {
            const QColor expected = box.contains(point) ? ToQt(BarBlue) : QColor(Qt::white);
            EXPECT_EQ(At(point.x(), point.y()), expected)
                << orientation << ": " << point.x() << ", " << point.y();
        }
    }
}

TEST_F(ProgressBarTest, TextFollowsTheDisplayType) {
    m_Bar.UserString("Step");
    m_Bar.MinVal(20.0F);
    m_Bar.MaxVal(70.5F);
    m_Bar.Value(40.2F); // two fifths of the range: the text reckons like the box
    int type = 0;
    for (const char* text :
         {"", "40%", "40.20", "40.20 of 70.5", "40.20 (40%)", "40.20 of 70.5 (40%)", "Step",
          "Step (40.20)", "Step 40.20 of 70.5", "Step (40%)", ""}) {
        m_Bar.DisplayType(type);
        m_Bar.Refresh();
        EXPECT_EQ(Text(), text) << type;
        ++type;
    }
}

TEST_F(ProgressBarTest, ValueIsHeldToTheLimitsAndItsPercentageRoundedDown) {
    m_Bar.DisplayType(4);
    for (const auto& [value, text] : {std::pair(150.0F, "100.00 (100%)"),
                                      {-5.0F, "0.00 (0%)"},
                                      {99.9F, "99.90 (99%)"},
                                      {29.0F, "29.00 (29%)"}}) { // 29 / 100 × 100 falls short
        m_Bar.Value(value);
        EXPECT_EQ(Text(), text);
    }
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

TEST_F(ProgressBarTest, StoredSettingsShowWithTheNextRedrawWhichNeedsAnotherValue) {
    m_Bar.Orientation(0);
    m_Bar.Value(50.1F);
    m_Bar.ForeColour(BarRed);
    m_Bar.DisplayType(6);
    m_Bar.UserString("Stored");
    m_Bar.Value(50.1F);
    EXPECT_EQ(At(0, 0), ToQt(BarBlue));
    EXPECT_EQ(Text(), "");
    m_Bar.Value(50.0F);
    EXPECT_EQ(At(0, 0), ToQt(BarRed));
    EXPECT_EQ(Text(), "Stored");
    m_Bar.BackColour(Yellow); // clears the surface
    EXPECT_EQ(At(0, 0), ToQt(Yellow));
    EXPECT_TRUE(IsBlank());
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

TEST_F(ProgressBarTest, TextIsReadableOnBothSidesOfTheEdge) {
    constexpr double readable = 4.5;
    m_Bar.setFont(QFont("Arial", 12));
    m_Bar.Orientation(0);
    m_Bar.DisplayType(6);
    m_Bar.UserString("HHHHHHHH");
    for (const Colour colour : {BarBlue, Yellow}) {
        m_Bar.ForeColour(colour);
        m_Bar.Refresh();
        EXPECT_GE(ContrastWithin(0, 100, ToQt(colour)), readable);
        EXPECT_GE(ContrastWithin(100, 200, Qt::white), readable);
    }
}

} // namespace
} // namespace ombrix
