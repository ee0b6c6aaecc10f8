#include "windows/healthcheck/GraphWidget.h"

#include <QApplication>
#include <QImage>
#include <QPaintEvent>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

constexpr Colour LineColour{0, 0, 255};

class GraphWidgetTest : public ::testing::Test {
  protected:
    GraphWidgetTest() {
        m_Graph.resize(400, 200);
        m_Graph.show();
        m_Graph.Scale(0.0, 100.0, 10.0, -100.0);
        m_Graph.Cls();
        QCoreApplication::processEvents();
    }

    QImage Picture() { return m_Graph.grab().toImage(); }
    static bool IsBlue(const QColor& colour) {
        return colour.blue() > 200 && colour.red() < 100 && colour.green() < 100;
    }
    /// Rows that hold a dark pixel.
    int InkedRows() {
        const QImage picture = Picture();
        int rows = 0;
        for (int y = 0; y < picture.height(); ++y) {
            bool inked = false;
            for (int x = 0; x < picture.width(); ++x)
                inked = inked || picture.pixelColor(x, y).lightness() < 200;
            rows += inked ? 1 : 0;
        }
        return rows;
    }

    GraphWidget m_Graph{"picGraph_0", "Graph", nullptr};
};

/// Remembers the area of the last repaint.
class PaintWatch final : public QObject {
  public:
    QRect LastRect;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            LastRect = static_cast<QPaintEvent*>(event)->rect();
        return false;
    }
};

TEST_F(GraphWidgetTest, LineStandsWhereItsUnitsSay) {
    m_Graph.DrawWidth(2);
    m_Graph.Line(0.0, 50.0, 10.0, 50.0, LineColour);
    const QImage picture = Picture();
    EXPECT_TRUE(IsBlue(picture.pixelColor(200, 50)));
    EXPECT_EQ(picture.pixelColor(200, 150), QColor(Qt::white));
}

TEST_F(GraphWidgetTest, TracesSurviveAResize) {
    m_Graph.DrawWidth(2);
    m_Graph.Line(0.0, 50.0, 5.0, 50.0, LineColour);
    Picture();
    m_Graph.resize(800, 400);
    m_Graph.Line(5.0, 50.0, 10.0, 50.0, LineColour);
    const QImage picture = Picture();
    EXPECT_TRUE(IsBlue(picture.pixelColor(200, 100)));
    EXPECT_TRUE(IsBlue(picture.pixelColor(600, 100)));
}

TEST_F(GraphWidgetTest, PenOfEachLineIsKeptForARedraw) {
    m_Graph.DrawWidth(6);
    m_Graph.Line(0.0, 50.0, 10.0, 50.0, LineColour);
    m_Graph.DrawWidth(2);
    m_Graph.Line(0.0, -50.0, 10.0, -50.0, {255, 0, 0});
    Picture();
    m_Graph.resize(401, 201);
    const QImage picture = Picture();
    EXPECT_TRUE(IsBlue(picture.pixelColor(200, 52)));
    EXPECT_EQ(picture.pixelColor(200, 155), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(200, 150).red(), 255);
    EXPECT_LT(picture.pixelColor(200, 150).blue(), 255);
}

TEST_F(GraphWidgetTest, ClsForgetsEverything) {
    m_Graph.DrawWidth(2);
    m_Graph.Print(0.0, 100.0, "Title");
    m_Graph.Line(0.0, 0.0, 10.0, 0.0, LineColour);
    Picture();
    m_Graph.Cls();
    EXPECT_EQ(InkedRows(), 0);
    m_Graph.resize(500, 300);
    EXPECT_EQ(InkedRows(), 0);
}

TEST_F(GraphWidgetTest, NewSegmentRepaintsItsNeighbourhoodOnly) {
    PaintWatch watch;
    m_Graph.installEventFilter(&watch);
    m_Graph.DrawWidth(2);
    m_Graph.Line(5.0, 0.0, 5.1, 10.0, LineColour);
    QCoreApplication::processEvents();
    EXPECT_LE(watch.LastRect.width(), 16);
    EXPECT_LE(watch.LastRect.height(), 24);
    EXPECT_TRUE(watch.LastRect.contains(200, 100));
}

TEST_F(GraphWidgetTest, TextHeightIsInUnitsAndPositiveWhicheverWayYRuns) {
    const double expected = m_Graph.fontMetrics().height(); // one unit is one pixel
    EXPECT_DOUBLE_EQ(m_Graph.TextHeight("100%"), expected);
    m_Graph.Scale(0.0, -100.0, 10.0, 100.0);
    EXPECT_DOUBLE_EQ(m_Graph.TextHeight("100%"), expected);
}

TEST_F(GraphWidgetTest, LabelGivesWayToTheTitle) {
    m_Graph.Print(0.0, 100.0, "HHHH");
    const int oneLine = InkedRows();
    ASSERT_GT(oneLine, 4);
    m_Graph.Print(0.0, 98.0, "HHHH");
    EXPECT_EQ(InkedRows(), 2 * oneLine);
}

TEST_F(GraphWidgetTest, DottedLineHasGaps) {
    m_Graph.DrawStyle(GraphSurface::Style::Dotted);
    m_Graph.Line(0.0, 0.0, 10.0, 0.0, {0, 0, 0});
    const QImage picture = Picture();
    int dark = 0;
    for (int x = 0; x < picture.width(); ++x)
        dark += picture.pixelColor(x, 100).lightness() < 200 ? 1 : 0;
    EXPECT_GT(dark, 40);
    EXPECT_LT(dark, 360);
}

} // namespace
} // namespace ombrix
