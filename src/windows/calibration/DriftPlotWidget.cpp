#include "windows/calibration/DriftPlotWidget.h"

#include "platform/text/OleDate.h"
#include "platform/text/Text.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/PlotAxis.h"
#include "windows/widgets/QtText.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ombrix {

/// Where things stand and how they look.
struct DriftPlotWidget::Frame {
    QRectF Plot;
    QRectF Legend;
    QPalette Colours;
    double Least = 0.0;
    double Largest = 0.0;
    double Step = 1.0;
    std::size_t Runs = 0;

    QPointF At(std::size_t run, double deviation) const {
        const double share =
            Runs < 2 ? 0.5 : static_cast<double>(run) / static_cast<double>(Runs - 1);
        return {Plot.left() + PlotGap + share * (Plot.width() - 2 * PlotGap), Y(deviation)};
    }
    double Y(double deviation) const {
        return Plot.bottom() - (deviation - Least) / (Largest - Least) * Plot.height();
    }
    QColor Ink() const { return Colours.color(QPalette::Text); }
    QColor Faint() const { return FaintInk(Colours); }
    QPen SeriesPen(std::size_t series) const {
        constexpr double width = 1.8;
        return {SeriesColour(series, Colours.color(QPalette::Base)), width};
    }
};

namespace {

/// "Point 3: 30 %  ± 0.3"
QString LegendText(const DriftSeries& series) {
    return series.Limit
               ? QStringLiteral("%1  ± %2").arg(ToQt(series.Name)).arg(*series.Limit, 0, 'g', 3)
               : ToQt(series.Name);
}

/// The narrowest limit of all points; 0 where there is none.
double NarrowestLimit(const Drift& drift) {
    double narrowest = 0.0;
    for (const DriftSeries& series : drift.Series) {
        if (series.Limit && (narrowest == 0.0 || *series.Limit < narrowest))
            narrowest = *series.Limit;
    }
    return narrowest;
}

/// Points with one limit share its lines.
bool IsShared(const Drift& drift, double limit) {
    return std::count_if(drift.Series.begin(), drift.Series.end(),
                         [limit](const auto& series) { return series.Limit == limit; }) > 1;
}

} // namespace

DriftPlotWidget::DriftPlotWidget(QWidget* parent) : QWidget(parent) {
    Named(this, QStringLiteral("picDrift"), tr("Drift of the calibration points"));
    setToolTip(
        tr("The run that is selected stands on a bar. Runs that were cancelled or stopped are "
           "shown, and others are not compared with them."));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize DriftPlotWidget::sizeHint() const {
    return {640, 360};
}

QSize DriftPlotWidget::minimumSizeHint() const {
    return {360, 220};
}

void DriftPlotWidget::Show(Drift drift, const QString& title) {
    m_Drift = std::move(drift);
    m_Title = title;
    setAccessibleDescription(tr("%1, %2 runs").arg(title).arg(m_Drift.Runs.size()));
    update();
}

void DriftPlotWidget::MarkRun(std::optional<OleDate> when) {
    m_Marked = when;
    update();
}

std::optional<std::size_t> DriftPlotWidget::MarkedRun() const {
    const auto marked = m_Marked ? std::find(m_Drift.Runs.begin(), m_Drift.Runs.end(), *m_Marked)
                                 : m_Drift.Runs.end();
    return marked == m_Drift.Runs.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(marked - m_Drift.Runs.begin()));
}

QImage DriftPlotWidget::Picture(QSize size) const {
    QImage picture(size, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setFont(font());
    Draw(painter, QRectF({}, QSizeF(size)), PaperPalette());
    return picture;
}

void DriftPlotWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    Draw(painter, rect(), palette());
}

DriftPlotWidget::Frame DriftPlotWidget::FrameIn(const QPainter& painter, const QRectF& area,
                                                const QPalette& colours) const {
    const QFontMetricsF metrics = painter.fontMetrics();
    double legendWidth = 0.0;
    Frame frame{};
    frame.Colours = colours;
    frame.Runs = m_Drift.Runs.size();
    // What is near a limit shows; limits that are far from it would press the lines flat.
    frame.Largest = NarrowestLimit(m_Drift);
    frame.Least = -frame.Largest;
    for (const DriftSeries& series : m_Drift.Series) {
        legendWidth = std::max(legendWidth, metrics.horizontalAdvance(LegendText(series)));
        for (const auto& deviation : series.Deviations) {
            frame.Least = std::min(frame.Least, deviation.value_or(0.0));
            frame.Largest = std::max(frame.Largest, deviation.value_or(0.0));
        }
    }
    constexpr double smallestRange = 1e-3;
    frame.Step = NiceStep(std::max(frame.Largest - frame.Least, smallestRange));
    frame.Least = std::floor(frame.Least / frame.Step - 0.5) * frame.Step;
    frame.Largest = std::ceil(frame.Largest / frame.Step + 0.5) * frame.Step;
    constexpr double lineSample = 28.0;
    const double left = metrics.horizontalAdvance(QStringLiteral("-00.000")) + 2 * PlotGap;
    const double right = legendWidth + lineSample + 4 * PlotGap;
    const double line = metrics.height();
    frame.Plot = area.adjusted(left, 2 * line + 2 * PlotGap, -right, -2 * line - 2 * PlotGap);
    frame.Legend = QRectF(frame.Plot.right() + 2 * PlotGap, frame.Plot.top(), right - 3 * PlotGap,
                          frame.Plot.height());
    return frame;
}

void DriftPlotWidget::Draw(QPainter& painter, const QRectF& area, const QPalette& colours) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(area, colours.color(QPalette::Base));
    const Frame frame = FrameIn(painter, area, colours);
    painter.setPen(frame.Ink());
    const double line = painter.fontMetrics().height();
    QFont bold = painter.font();
    bold.setBold(true);
    painter.save();
    painter.setFont(bold);
    painter.drawText(area.adjusted(PlotGap, PlotGap, -PlotGap, 0), Qt::AlignTop | Qt::AlignLeft,
                     m_Title);
    painter.restore();
    if (m_Drift.Runs.empty()) {
        painter.drawText(area, Qt::AlignCenter, tr("No such run has been recorded for this unit."));
        return;
    }
    painter.drawText(QRectF(area.left() + PlotGap, area.top() + PlotGap + line, area.width(), line),
                     Qt::AlignLeft, tr("Deviation from the first run, %1").arg(ToQt(m_Drift.Unit)));
    DrawLevels(painter, frame);
    DrawRuns(painter, frame);
    DrawLimits(painter, frame);
    DrawMark(painter, frame);
    DrawSeries(painter, frame);
    DrawLegend(painter, frame);
}

void DriftPlotWidget::DrawLevels(QPainter& painter, const Frame& frame) const {
    const double line = painter.fontMetrics().height();
    for (double level = frame.Least; level <= frame.Largest + frame.Step / 2; level += frame.Step) {
        const double y = frame.Y(level);
        const bool isZero = std::abs(level) < frame.Step / 2;
        painter.setPen(isZero ? frame.Ink() : frame.Faint());
        painter.drawLine(QPointF(frame.Plot.left(), y), QPointF(frame.Plot.right(), y));
        painter.setPen(frame.Ink());
        painter.drawText(QRectF(0, y - line / 2, frame.Plot.left() - PlotGap, line),
                         Qt::AlignRight | Qt::AlignVCenter, TickText(level, frame.Step));
    }
}

void DriftPlotWidget::DrawRuns(QPainter& painter, const Frame& frame) const {
    const double width =
        painter.fontMetrics().horizontalAdvance(QStringLiteral("0000-00-00")) + PlotGap;
    const double line = painter.fontMetrics().height();
    const auto fit = std::max<std::size_t>(1, static_cast<std::size_t>(frame.Plot.width() / width));
    const std::size_t every = (frame.Runs + fit - 1) / fit;
    for (std::size_t run = 0; run < frame.Runs; run += every) {
        const double x = frame.At(run, 0.0).x();
        painter.setPen(frame.Faint());
        painter.drawLine(QPointF(x, frame.Plot.top()), QPointF(x, frame.Plot.bottom()));
        painter.setPen(frame.Ink());
        painter.drawText(QRectF(x - width / 2, frame.Plot.bottom() + PlotGap / 2, width, 2 * line),
                         Qt::AlignHCenter | Qt::AlignTop,
                         ToQt(IsoText(m_Drift.Runs.at(run))).replace(' ', '\n'));
    }
}

void DriftPlotWidget::DrawLimits(QPainter& painter, const Frame& frame) const {
    for (std::size_t index = 0; index < m_Drift.Series.size(); ++index) {
        const auto& limit = m_Drift.Series[index].Limit;
        if (!limit || *limit > frame.Largest || -*limit < frame.Least)
            continue;
        QPen pen(IsShared(m_Drift, *limit) ? frame.Ink() : frame.SeriesPen(index).color());
        pen.setStyle(Qt::DashLine);
        painter.setPen(pen);
        for (const double level : {*limit, -*limit})
            painter.drawLine(QPointF(frame.Plot.left(), frame.Y(level)),
                             QPointF(frame.Plot.right(), frame.Y(level)));
    }
}

void DriftPlotWidget::DrawMark(QPainter& painter, const Frame& frame) const {
    const auto run = MarkedRun();
    if (!run)
        return;
    constexpr double halfWidth = 5.0;
    constexpr int alpha = 90;
    const double x = frame.At(*run, 0.0).x();
    QColor colour = frame.Colours.color(QPalette::Highlight);
    colour.setAlpha(alpha);
    painter.fillRect(QRectF(x - halfWidth, frame.Plot.top(), 2 * halfWidth, frame.Plot.height()),
                     colour);
}

void DriftPlotWidget::DrawSeries(QPainter& painter, const Frame& frame) const {
    constexpr double radius = 3.0;
    for (std::size_t index = 0; index < m_Drift.Series.size(); ++index) {
        const QPen pen = frame.SeriesPen(index);
        painter.setPen(pen);
        painter.setBrush(pen.color());
        QPolygonF points;
        const auto& deviations = m_Drift.Series[index].Deviations;
        for (std::size_t run = 0; run < deviations.size(); ++run) {
            if (deviations[run])
                points << frame.At(run, *deviations[run]);
        }
        painter.drawPolyline(points);
        for (const QPointF& point : points)
            painter.drawEllipse(point, radius, radius);
    }
}

void DriftPlotWidget::DrawLegend(QPainter& painter, const Frame& frame) const {
    constexpr double sample = 28.0;
    const bool hasLimits = NarrowestLimit(m_Drift) > 0.0;
    const std::size_t entries = m_Drift.Series.size() + (hasLimits ? 1 : 0);
    const double line = std::min(painter.fontMetrics().height() + PlotGap / 2,
                                 frame.Legend.height() / static_cast<double>(entries));
    double y = frame.Legend.top() + line / 2;
    const auto draw = [&](const QPen& pen, const QString& text) {
        painter.setPen(pen);
        painter.drawLine(QPointF(frame.Legend.left(), y), QPointF(frame.Legend.left() + sample, y));
        painter.setPen(frame.Ink());
        painter.drawText(QRectF(frame.Legend.left() + sample + PlotGap, y - line / 2,
                                frame.Legend.width(), line),
                         Qt::AlignLeft | Qt::AlignVCenter, text);
        y += line;
    };
    for (std::size_t index = 0; index < m_Drift.Series.size(); ++index)
        draw(frame.SeriesPen(index), LegendText(m_Drift.Series[index]));
    if (hasLimits)
        draw(QPen(frame.Ink(), 1.0, Qt::DashLine), tr("limits, ±"));
}

} // namespace ombrix
