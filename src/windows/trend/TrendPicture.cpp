#include "windows/trend/TrendPicture.h"

#include "windows/widgets/PlotAxis.h"
#include "windows/widgets/QtText.h"

#include <QObject>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ombrix {

namespace {

constexpr std::size_t Axes = 2;
/// Points of a line that are far enough apart to be marked.
constexpr double MarkSpacing = 12.0;

const TrendGroup& GroupOf(const TrendScene& scene, const TrendLine& line) {
    return scene.Data->Groups.at(line.What.Group);
}

const TrendTrace& TraceOf(const TrendScene& scene, const TrendLine& line) {
    return GroupOf(scene, line).Traces.at(line.What.Trace);
}

/// Snaps outwards to the ticks, so that the scale stays while values move a little.
ValueSpan SpanAround(double least, double largest) {
    if (least > largest)
        return {};
    const double smallest = std::max(std::abs(largest) * 1e-6, 1e-3);
    const double step = NiceStep(std::max(largest - least, smallest));
    ValueSpan span{std::floor(least / step) * step, std::ceil(largest / step) * step};
    if (span.Largest - span.Least < step)
        span = {span.Least - step, span.Largest + step};
    return span;
}

ValueSpan WholeSpan(const TrendScene& scene, std::size_t axis, int columns) {
    double least = std::numeric_limits<double>::infinity();
    double largest = -least;
    for (const TrendLine& line : scene.Lines) {
        const auto conversion = TraceOf(scene, line).In(line.What.Unit, scene.Data->Scales);
        if (scene.AxisOf(line) != axis || !conversion)
            continue;
        const auto bounds =
            ColumnBounds(GroupOf(scene, line).Times, {scene.From_s, scene.To_s, columns});
        const TrendRange range = RangeOf(TraceOf(scene, line), bounds);
        if (!range.Any())
            continue;
        least = std::min(least, (*conversion)(static_cast<double>(range.Least)));
        largest = std::max(largest, (*conversion)(static_cast<double>(range.Largest)));
    }
    return SpanAround(least, largest);
}

double TickCount(double pixels, double spacing) {
    return std::max(2.0, pixels / spacing);
}

double ValueStep(const TrendFrame& frame, const ValueSpan& span, const QPainter& painter) {
    constexpr double linesApart = 2.6;
    return NiceStep(span.Largest - span.Least,
                    TickCount(frame.Plot.height(), linesApart * painter.fontMetrics().height()));
}

/// Of the widest text on an axis.
double WidthOfTicks(const TrendFrame& frame, std::size_t axis, const QPainter& painter) {
    const ValueSpan& span = frame.Spans.at(axis);
    const double step = ValueStep(frame, span, painter);
    double width = 0.0;
    for (const double tick : TicksIn(span.Least, span.Largest, step))
        width =
            std::max<double>(width, painter.fontMetrics().horizontalAdvance(TickText(tick, step)));
    return width;
}

} // namespace

std::size_t TrendScene::AxisOf(const TrendLine& line) const {
    return Units[0] != Units[1] && IsPressure(TraceOf(*this, line).Subject) ? 1 : 0;
}

TrendFrame FrameOf(const TrendScene& scene, const QPainter& painter, const QRectF& area) {
    TrendFrame frame;
    frame.Area = area;
    frame.From_s = scene.From_s;
    frame.To_s = scene.To_s;
    const double line = painter.fontMetrics().height();
    frame.Plot = area.adjusted(0, line + 2 * PlotGap, 0, -2 * line - 2 * PlotGap);
    if (scene.Data == nullptr)
        return frame;
    for (const TrendLine& drawn : scene.Lines)
        frame.HasAxis[1] = frame.HasAxis[1] || scene.AxisOf(drawn) == 1;
    for (std::size_t axis = 0; axis < Axes; ++axis)
        frame.Spans.at(axis) = scene.Spans.at(axis).value_or(WholeSpan(scene, axis, 1));
    frame.Plot.setLeft(area.left() + WidthOfTicks(frame, 0, painter) + 2 * PlotGap);
    frame.Plot.setRight(area.right() - 2 * PlotGap -
                        (frame.HasAxis[1] ? WidthOfTicks(frame, 1, painter) : PlotGap));
    return frame;
}

namespace {

/// Draws one picture.
class TrendPainter {
  public:
    TrendPainter(QPainter& painter, const TrendScene& scene, const TrendFrame& frame,
                 const QPalette& colours)
        : m_Painter(painter), m_Scene(scene), m_Frame(frame), m_Colours(colours),
          m_Line(painter.fontMetrics().height()) {}

    void DrawAxes() {
        DrawTimes();
        DrawValues(0);
        if (m_Frame.HasAxis[1])
            DrawValues(1);
        m_Painter.setPen(Ink());
        m_Painter.drawRect(m_Frame.Plot);
    }

    void DrawLines() {
        m_Painter.save();
        m_Painter.setClipRect(m_Frame.Plot);
        const int columns = std::max(1, static_cast<int>(m_Frame.Plot.width()));
        // Traces that were taken together are next to one another and share their columns.
        std::vector<std::size_t> bounds;
        std::size_t boundsOf = std::numeric_limits<std::size_t>::max();
        for (const TrendLine& line : m_Scene.Lines) {
            if (line.What.Group != boundsOf)
                bounds = ColumnBounds(GroupOf(m_Scene, line).Times,
                                      {m_Frame.From_s, m_Frame.To_s, columns});
            boundsOf = line.What.Group;
            DrawLine(line, bounds);
        }
        m_Painter.restore();
    }

  private:
    QColor Ink() const { return m_Colours.color(QPalette::Text); }

    void DrawTimes() {
        const double span_s = m_Frame.To_s - m_Frame.From_s;
        const bool counts = m_Scene.Data->CountsSteps;
        constexpr int charactersApart = 16;
        const double wanted = TickCount(
            m_Frame.Plot.width(), charactersApart * m_Painter.fontMetrics().averageCharWidth());
        const double step = counts ? NiceStep(span_s, wanted) : NiceTimeStep(span_s, wanted);
        for (const double tick : TicksIn(m_Frame.From_s, m_Frame.To_s, step)) {
            const double x = m_Frame.X(tick);
            m_Painter.setPen(FaintInk(m_Colours));
            m_Painter.drawLine(QPointF(x, m_Frame.Plot.top()), QPointF(x, m_Frame.Plot.bottom()));
            m_Painter.setPen(Ink());
            constexpr double roomForText = 60.0;
            m_Painter.drawText(QRectF(x - roomForText, m_Frame.Plot.bottom() + PlotGap / 2,
                                      2 * roomForText, m_Line),
                               Qt::AlignHCenter,
                               counts ? TickText(tick, step)
                                      : TimeTickText(tick, step, m_Frame.To_s));
        }
        m_Painter.drawText(QRectF(m_Frame.Plot.left(), m_Frame.Area.bottom() - m_Line - PlotGap / 2,
                                  m_Frame.Plot.width(), m_Line),
                           Qt::AlignHCenter, TimeTitle());
    }

    QString TimeTitle() const {
        if (m_Scene.Data->CountsSteps)
            return QObject::tr("Line of the file");
        constexpr double longestInSeconds = 120.0;
        return m_Frame.To_s < longestInSeconds ? QObject::tr("Time, s")
                                               : QObject::tr("Time, h:mm:ss");
    }

    void DrawValues(std::size_t axis) {
        const ValueSpan& span = m_Frame.Spans.at(axis);
        const double step = ValueStep(m_Frame, span, m_Painter);
        const bool left = axis == 0;
        for (const double tick : TicksIn(span.Least, span.Largest, step)) {
            const double y = m_Frame.Y(axis, tick);
            if (left) {
                m_Painter.setPen(FaintInk(m_Colours));
                m_Painter.drawLine(QPointF(m_Frame.Plot.left(), y),
                                   QPointF(m_Frame.Plot.right(), y));
            }
            m_Painter.setPen(Ink());
            m_Painter.drawText(
                left ? QRectF(m_Frame.Area.left(), y - m_Line / 2,
                              m_Frame.Plot.left() - m_Frame.Area.left() - PlotGap, m_Line)
                     : QRectF(m_Frame.Plot.right() + PlotGap, y - m_Line / 2,
                              m_Frame.Area.right() - m_Frame.Plot.right(), m_Line),
                (left ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter, TickText(tick, step));
        }
        m_Painter.drawText(QRectF(m_Frame.Area.left() + PlotGap, m_Frame.Area.top() + PlotGap / 2,
                                  m_Frame.Area.width() - 2 * PlotGap, m_Line),
                           left ? Qt::AlignLeft : Qt::AlignRight,
                           QLatin1String(NameOf(m_Scene.Units.at(axis))));
    }

    void DrawLine(const TrendLine& line, const std::vector<std::size_t>& bounds) {
        const auto conversion = TraceOf(m_Scene, line).In(line.What.Unit, m_Scene.Data->Scales);
        if (!conversion)
            return;
        const std::vector<CurvePoint> curve =
            CurveOf(GroupOf(m_Scene, line), TraceOf(m_Scene, line), bounds, m_Scene.End_s);
        const QColor colour = SeriesColour(line.Colour, m_Colours.color(QPalette::Base));
        const std::size_t axis = m_Scene.AxisOf(line);
        // A smooth line costs a hundred times what a plain one does, and one along the points still
        // goes over most of its pixels twice; where there are many, nobody sees the difference.
        constexpr std::size_t fewPoints = 300;
        const bool isSparse = curve.size() < fewPoints;
        constexpr double width = 1.6;
        m_Painter.setRenderHint(QPainter::Antialiasing, isSparse);
        m_Painter.setPen(QPen(colour, isSparse ? width : 0.0));
        m_Painter.setBrush(colour);
        const bool marks = static_cast<double>(curve.size()) * MarkSpacing < m_Frame.Plot.width();
        const auto drawPart = [&](const QPolygonF& part) {
            if (isSparse || part.size() == 1)
                DrawPart(part, marks);
            else
                DrawColumns(part, colour);
        };
        QPolygonF points;
        points.reserve(static_cast<qsizetype>(curve.size()));
        for (const CurvePoint& point : curve) {
            if (std::isnan(point.Value)) {
                drawPart(points);
                points.clear();
            } else {
                points << At(axis, point, *conversion);
            }
        }
        drawPart(points);
    }

    QPointF At(std::size_t axis, const CurvePoint& point, const TrendConversion& conversion) const {
        // Far outside of the picture the painter's arithmetic ends.
        constexpr double far = 1e5;
        return {
            std::clamp(m_Frame.X(point.Time_s), -far, far),
            std::clamp(m_Frame.Y(axis, conversion(static_cast<double>(point.Value))), -far, far)};
    }

    void DrawPart(const QPolygonF& points, bool marks) {
        constexpr double radius = 2.5;
        // Segment by segment: a thick line as a whole is filled as one shape, which takes seconds
        // where it crosses itself often.
        for (qsizetype index = 1; index < points.size(); ++index)
            DrawSegment(points[index - 1], points[index]);
        // One reading between two gaps must show as well.
        if (marks || points.size() == 1) {
            for (const QPointF& point : points)
                m_Painter.drawEllipse(point, radius, radius);
        }
    }

    /// The toolkit smooths a long line by several threads and waits for them, which takes ten times
    /// what a rectangle does; upright and level lines, those of steps, need no smoothing.
    void DrawSegment(const QPointF& from, const QPointF& to) {
        constexpr double straight = 0.5;
        constexpr double thickness = 2.0;
        const QRectF covered = QRectF(from, to).normalized();
        if (std::min(covered.width(), covered.height()) >= straight) {
            m_Painter.drawLine(from, to);
            return;
        }
        m_Painter.fillRect(QRectF(std::floor(covered.left()), std::floor(covered.top()),
                                  std::max(std::ceil(covered.width()), thickness),
                                  std::max(std::ceil(covered.height()), thickness)),
                           m_Painter.brush());
    }

    /// Fills each column of pixels once, from where the line came in to its lowest and highest.
    void DrawColumns(const QPolygonF& points, const QColor& colour) {
        for (qsizetype index = 0; index < points.size();) {
            const double column = std::floor(points[index].x());
            const QPointF before = points[std::max<qsizetype>(index - 1, 0)];
            const bool isNext = column - std::floor(before.x()) <= 1.0;
            if (!isNext)
                m_Painter.drawLine(before, points[index]);
            const double from = isNext ? before.y() : points[index].y();
            double top = from;
            double bottom = from;
            for (; index < points.size() && std::floor(points[index].x()) == column; ++index) {
                top = std::min(top, points[index].y());
                bottom = std::max(bottom, points[index].y());
            }
            m_Painter.fillRect(QRectF(column, top, 1.0, std::max(bottom - top, 1.0)), colour);
        }
    }

    QPainter& m_Painter;
    const TrendScene& m_Scene;
    const TrendFrame& m_Frame;
    const QPalette& m_Colours;
    double m_Line;
};

} // namespace

void DrawTrend(QPainter& painter, const TrendScene& scene, const TrendFrame& frame,
               const QPalette& colours) {
    painter.fillRect(frame.Area, colours.color(QPalette::Base));
    painter.setPen(colours.color(QPalette::Text));
    if (scene.Data == nullptr || scene.Data->Empty()) {
        painter.drawText(frame.Area, Qt::AlignCenter,
                         QObject::tr("Nothing has been read yet. Open a file, or wait for a board "
                                     "to be read."));
        return;
    }
    TrendPainter picture(painter, scene, frame, colours);
    picture.DrawAxes();
    picture.DrawLines();
}

double DrawTrendLegend(QPainter& painter, const TrendScene& scene, const QRectF& area,
                       const QPalette& colours) {
    constexpr double sample = 24.0;
    const double line = painter.fontMetrics().height() + PlotGap / 2;
    double x = area.left();
    double y = area.top();
    for (const TrendLine& drawn : scene.Lines) {
        const QString text = QStringLiteral("%1 (%2)").arg(ToQt(TraceOf(scene, drawn).Name),
                                                           QLatin1String(NameOf(drawn.What.Unit)));
        const double width = sample + 3 * PlotGap + painter.fontMetrics().horizontalAdvance(text);
        if (x + width > area.right() && x > area.left()) {
            x = area.left();
            y += line;
        }
        constexpr double thick = 3.0;
        painter.setPen(QPen(SeriesColour(drawn.Colour, colours.color(QPalette::Base)), thick));
        painter.drawLine(QPointF(x, y + line / 2), QPointF(x + sample, y + line / 2));
        painter.setPen(colours.color(QPalette::Text));
        painter.drawText(QRectF(x + sample + PlotGap, y, width, line), Qt::AlignVCenter, text);
        x += width;
    }
    return y + line - area.top();
}

} // namespace ombrix
