#pragma once

#include "healthcheck/HealthCheckViews.h"

#include <QPalette>
#include <QPen>
#include <QPixmap>
#include <QRect>
#include <QRectF>
#include <QString>
#include <QWidget>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

class QPainter;

namespace ombrix {

/// Corners of a graph in its own units.
struct GraphScale {
    double Left = 0.0;
    double Top = 1.0;
    double Right = 1.0;
    double Bottom = 0.0;
};

/// From the units of a graph to pixels.
class GraphMapping {
  public:
    /// @param plot where the corners lie
    GraphMapping(const GraphScale& scale, const QRectF& plot);

    QPointF ToPixels(double x, double y) const {
        return {m_Origin.x() + (x - m_Left) * m_PixelsPerX,
                m_Origin.y() + (y - m_Top) * m_PixelsPerY};
    }
    /// Length of a number of pixels in y units; positive whichever way y runs.
    double PixelsToY(double pixels) const;

  private:
    QPointF m_Origin;
    double m_Left;
    double m_Top;
    double m_PixelsPerX;
    double m_PixelsPerY;
};

/// What has been drawn on a graph, in its own units, and how much of it stands on the picture.
class GraphContent {
  public:
    GraphContent();

    void Clear();
    void SetPenWidth(int pixels);
    void SetPenStyle(GraphSurface::Style style);

    void AddText(double x, double y, QString text);
    /// The pixels that the segment touches.
    QRect AddSegment(QPointF from, QPointF to, Colour colour, const GraphMapping& mapping);

    /// Draws what is not on the picture yet. @param colours of what it stands on
    void DrawNew(QPainter& painter, const GraphMapping& mapping, const QPalette& colours);
    /// The picture is empty: everything must be drawn.
    void Forget();

  private:
    struct Pen {
        Colour PenColour;
        std::uint8_t Width = 1;
        GraphSurface::Style Style = GraphSurface::Style::Solid;

        bool operator==(const Pen&) const = default;
    };
    struct Segment {
        float X1;
        float Y1;
        float X2;
        float Y2;
        std::uint32_t PenIndex;
    };
    struct Text {
        double X;
        double Y;
        QString Characters;
    };

    std::uint32_t PenIndexOf(Colour colour);
    static QPen ToQt(const Pen& pen, const QColor& ground);
    void DrawTexts(QPainter& painter, const GraphMapping& mapping) const;

    std::vector<Pen> m_Pens;
    std::vector<Segment> m_Segments;
    std::vector<Text> m_Texts;
    std::size_t m_DrawnSegments = 0;
    bool m_TextsDrawn = false;
    Pen m_Pen;
};

/// What stands beside a graph.
struct GraphAxes {
    /// Of its levels ("%"); the other axis is the time.
    QString Unit;
    /// A unit in the graph's own.
    double UnitSize = 1.0;
};

/// A graph surface on the screen. What is drawn goes once onto a kept picture and only its
/// neighbourhood is shown anew, so that a sample costs the same at any length of run; a list of
/// it redraws the picture when size or resolution change.
class GraphWidget final : public QWidget, public GraphSurface {
    Q_OBJECT

  public:
    GraphWidget(const QString& objectName, const QString& accessibleName, QWidget* parent);

    /// Gives it axes at its left and its lower edge, which it has not from the beginning.
    void SetAxes(const GraphAxes& axes);

    void Scale(double left, double top, double right, double bottom) override;
    void Cls() override;
    void DrawWidth(int pixels) override { m_Content.SetPenWidth(pixels); }
    void DrawStyle(Style style) override { m_Content.SetPenStyle(style); }
    double TextHeight(std::string_view text) const override;
    void Print(double x, double y, std::string_view text) override;
    void Line(double x1, double y1, double x2, double y2, Colour colour) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    /// Where the corners of the scale lie changes: everything must be drawn anew.
    void PlacePlot();
    GraphMapping Mapping() const { return {m_Scale, m_Plot}; }
    void RenewPicture();
    void DrawAxes(QPainter& painter) const;
    void DrawTimes(QPainter& painter) const;
    void DrawLevels(QPainter& painter) const;

    std::optional<GraphAxes> m_Axes;
    QRectF m_Plot;
    GraphScale m_Scale;
    GraphContent m_Content;
    QPixmap m_Picture;
};

class ValueLabel;

/// The five graphs of the health check, each with its live values beside it.
class GraphColumn final : public QWidget, public ValueLabels {
    Q_OBJECT

  public:
    explicit GraphColumn(QWidget* parent);

    GraphSurfaces Surfaces() const;
    void SetCaption(std::size_t label, std::string_view text) override;

  private:
    std::array<GraphWidget*, 5> m_Graphs{};
    std::array<ValueLabel*, 5> m_Values{};
};

} // namespace ombrix
