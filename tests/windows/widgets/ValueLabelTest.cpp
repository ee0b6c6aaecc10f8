#include "windows/widgets/ValueLabel.h"

#include "windows/widgets/Controls.h"

#include <QApplication>
#include <QHBoxLayout>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

const QColor DarkGrey(42, 45, 50);
constexpr Colour Blue{0, 0, 255};
constexpr Colour Red{255, 0, 0};
constexpr Colour Orange{192, 64, 0};

TEST(ReadableColour, IsExactOnLightBackgrounds) {
    EXPECT_EQ(ReadableColour(Blue, QColor(239, 239, 239)), QColor(0, 0, 255));
    EXPECT_EQ(ReadableColour(Orange, QColor(Qt::white)), QColor(192, 64, 0));
}

TEST(ReadableColour, KeepsItsHueAndCanBeReadOnDarkOnes) {
    for (const Colour colour : {Blue, Red, Orange, Colour{128, 128, 128}}) {
        const QColor readable = ReadableColour(colour, DarkGrey);
        EXPECT_GE(Contrast(readable, DarkGrey), 4.5);
        EXPECT_NEAR(readable.hslHue(), ToQt(colour).hslHue(), 2);
        EXPECT_NE(readable, QColor(Qt::white));
    }
}

TEST(ReadableColour, ContrastIsThatOfTheGuidelines) {
    EXPECT_NEAR(Contrast(Qt::black, Qt::white), 21.0, 0.01);
    EXPECT_NEAR(Contrast(Qt::red, Qt::red), 1.0, 0.01);
}

TEST(ValueLabel, ColourFollowsAChangeToADarkPalette) {
    QWidget window;
    ValueLabel label("lblState", "State", &window);
    label.ShowInColour(Blue);
    window.setPalette(QPalette(Qt::white, DarkGrey));
    const QColor shown = label.palette().color(QPalette::WindowText);
    EXPECT_GE(Contrast(shown, DarkGrey), 4.5);
    label.ShowInPaletteColour();
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(Qt::white));
}

TEST(ValueLabel, TextOfABoardIsNeverTakenForMarkup) {
    QWidget window;
    ValueLabel label("lblVendor", "Vendor", &window);
    label.ShowValue("<img src='x'>");
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST(ValueLabel, LongTextIsShownWholeInTheToolTip) {
    QWidget window;
    ValueLabel label("lblVendor", "Vendor", &window);
    label.CutToFit();
    const QString longText(200, QLatin1Char('W'));
    label.ShowValue(longText);
    EXPECT_EQ(label.toolTip(), longText);
    QHBoxLayout layout(&window);
    layout.addWidget(&label);
    EXPECT_LT(layout.minimumSize().width(), 100);
}

} // namespace
} // namespace ombrix
