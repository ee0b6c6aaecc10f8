#include "windows/calibration/DeviationPlotWidget.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/PlotAxis.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

constexpr double Percent = 100.0;
constexpr Colour FailedRed{192, 0, 0};
constexpr double MarkRadius = 4.0;

void DrawCross(QPainter& painter, const QPointF& at) {
    for (const double slope : {1.0, -1.0})
        painter.drawLine(at + QPointF(-MarkRadius, -slope * MarkRadius),
                         at + QPointF(MarkRadius, slope * MarkRadius));
}

} // namespace

struct DeviationPlotWidget::Frame {
    QRectF Plot;
    /// The scale reaches as far down as up.
    double Largest_percent;
    std::size_t Points;

    double X(std::size_t point) const {
        return Plot.left() +
               (static_cast<double>(point) + 0.5) * Plot.width() / static_cast<double>(Points);
    }
    double Y(double percent) const {
        return Plot.center().y() - percent / Largest_percent * Plot.height() / 2;
    }
};

DeviationPlotWidget::DeviationPlotWidget(QWidget* parent) : QWidget(parent) {
    Named(this, QStringLiteral("picDeviations"), tr("Deviations of the points"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize DeviationPlotWidget::sizeHint() const {
    return {420, 200};
}

QSize DeviationPlotWidget::minimumSizeHint() const {
    return {240, 150};
}

void DeviationPlotWidget::Show(const QString& title, const std::vector<PointLine>& points) {
    m_Title = title;
    m_Points = points;
    const auto count = [&points](bool passed) {
        return std::count_if(points.begin(), points.end(),
                             [passed](const PointLine& line) { return line.Passed == passed; });
    };
    setAccessibleDescription(
        tr("%1: %2 points passed, %3 failed").arg(title).arg(count(true)).arg(count(false)));
    update();
}

DeviationPlotWidget::Frame DeviationPlotWidget::FrameIn(const QPainter& painter) const {
    constexpr double roomBeyondLimit = 1.4;
    constexpr double roomBeyondPoint = 1.1;
    double largest = roomBeyondLimit;
    for (const PointLine& line : m_Points)
        largest = std::max(largest, roomBeyondPoint * std::abs(line.OfLimit.value_or(0.0)));
    const QFontMetricsF metrics = painter.fontMetrics();
    const double line = metrics.height();
    const double left = metrics.horizontalAdvance(QStringLiteral("-00000")) + PlotGap;
    return {QRectF(rect()).adjusted(left, 2 * line + PlotGap, -PlotGap, -2 * line - PlotGap),
            largest * Percent, std::max<std::size_t>(1, m_Points.size())};
}

void DeviationPlotWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    const Frame frame = FrameIn(painter);
    const double line = painter.fontMetrics().height();
    const QColor ink = palette().color(QPalette::Text);
    painter.setPen(ink);
    const QRectF heads = QRectF(rect()).adjusted(PlotGap, PlotGap / 2, -PlotGap, 0);
    painter.drawText(heads, Qt::AlignLeft | Qt::AlignTop,
                     painter.fontMetrics().elidedText(m_Title, Qt::ElideMiddle,
                                                      static_cast<int>(heads.width())));
    painter.drawText(heads.adjusted(0, line, 0, 0), Qt::AlignLeft | Qt::AlignTop,
                     tr("Deviation, % of the limit"));
    DrawLevels(painter, frame);
    DrawNumbers(painter, frame);
    DrawPoints(painter, frame);
    painter.setPen(ink);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(frame.Plot);
}

void DeviationPlotWidget::DrawLevels(QPainter& painter, const Frame& frame) const {
    constexpr double linesApart = 2.0;
    const double line = painter.fontMetrics().height();
    const double step = NiceStep(2 * frame.Largest_percent,
                                 std::max(2.0, frame.Plot.height() / (linesApart * line)));
    for (const double tick : TicksIn(-frame.Largest_percent, frame.Largest_percent, step)) {
        const double y = frame.Y(tick);
        const bool isZero = std::abs(tick) < step / 2;
        painter.setPen(isZero ? palette().color(QPalette::Text) : FaintInk(palette()));
        painter.drawLine(QPointF(frame.Plot.left(), y), QPointF(frame.Plot.right(), y));
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(QRectF(0, y - line / 2, frame.Plot.left() - PlotGap / 2, line),
                         Qt::AlignRight | Qt::AlignVCenter, TickText(tick, step));
    }
    const QColor red = ReadableColour(FailedRed, palette().color(QPalette::Base));
    for (const double limit : {Percent, -Percent}) {
        const double y = frame.Y(limit);
        painter.setPen(QPen(red, 1.5, Qt::DashLine));
        painter.drawLine(QPointF(frame.Plot.left(), y), QPointF(frame.Plot.right(), y));
        painter.drawText(QRectF(frame.Plot.left(), limit > 0 ? y - line : y,
                                frame.Plot.width() - PlotGap / 2, line),
                         Qt::AlignRight, tr("limit"));
    }
}

void DeviationPlotWidget::DrawNumbers(QPainter& painter, const Frame& frame) const {
    const double line = painter.fontMetrics().height();
    const double width = frame.Plot.width() / static_cast<double>(frame.Points);
    painter.setPen(palette().color(QPalette::Text));
    for (std::size_t point = 0; point < m_Points.size(); ++point)
        painter.drawText(
            QRectF(frame.X(point) - width / 2, frame.Plot.bottom() + PlotGap / 4, width, line),
            Qt::AlignHCenter, QString::number(point + 1));
    painter.drawText(
        QRectF(frame.Plot.left(), frame.Plot.bottom() + line, frame.Plot.width(), line),
        Qt::AlignHCenter, tr("Point    ● passed    ✗ failed"));
}

void DeviationPlotWidget::DrawPoints(QPainter& painter, const Frame& frame) const {
    const QColor base = palette().color(QPalette::Base);
    bool any = false;
    for (std::size_t point = 0; point < m_Points.size(); ++point) {
        const PointLine& line = m_Points.at(point);
        if (!line.OfLimit)
            continue;
        any = true;
        const QPointF at(frame.X(point), frame.Y(*line.OfLimit * Percent));
        const bool failed = line.Passed == false;
        const QColor colour = failed ? ReadableColour(FailedRed, base) : SeriesColour(0, base);
        painter.setPen(QPen(colour, 1.0));
        painter.drawLine(QPointF(at.x(), frame.Y(0.0)), at);
        painter.setPen(QPen(colour, failed ? 2.5 : 1.0));
        painter.setBrush(colour);
        if (failed)
            DrawCross(painter, at);
        else
            painter.drawEllipse(at, MarkRadius, MarkRadius);
    }
    painter.setPen(palette().color(QPalette::Text));
    if (!any)
        painter.drawText(frame.Plot.adjusted(0, 0, 0, -frame.Plot.height() / 2), Qt::AlignCenter,
                         tr("No point has been judged yet."));
}

} // namespace ombrix
