#include "windows/trend/TrendPlotWidget.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/PlotAxis.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

constexpr double ZoomStep = 1.25;
/// Share of the picture that an arrow key pans.
constexpr double PanShare = 0.1;
constexpr double ShortestSpan_s = 1e-3;

} // namespace

TrendPlotWidget::TrendPlotWidget(QWidget* parent) : QWidget(parent) {
    Named(this, QStringLiteral("picTrend"), tr("Traces over the time"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusPolicy(Qt::StrongFocus);
}

QSize TrendPlotWidget::sizeHint() const {
    return {800, 480};
}

QSize TrendPlotWidget::minimumSizeHint() const {
    return {240, 160};
}

void TrendPlotWidget::Changed() {
    m_Picture = {};
    update();
}

void TrendPlotWidget::ShowLines(const TrendData* data, std::vector<TrendLine> lines,
                                std::array<TrendUnit, 2> units) {
    if (data != m_Scene.Data || units != m_Scene.Units)
        m_Scene.Spans = {};
    m_Scene.Data = data;
    m_Scene.Lines = std::move(lines);
    m_Scene.Units = units;
    setAccessibleDescription(tr("%1 traces").arg(m_Scene.Lines.size()));
    Changed();
}

void TrendPlotWidget::ShowAll() {
    m_Scene.Spans = {};
    if (m_Scene.Data == nullptr)
        return;
    const double begin_s = m_Scene.Data->Begin_s();
    ShowTimes(begin_s, std::max({m_Scene.Data->End_s(), m_Scene.End_s, begin_s + ShortestSpan_s}));
}

void TrendPlotWidget::ShowTimes(double from_s, double to_s) {
    m_Scene.From_s = from_s;
    m_Scene.To_s = std::max(to_s, from_s + ShortestSpan_s);
    Changed();
}

void TrendPlotWidget::Refresh(double now_s) {
    m_Scene.End_s = now_s;
    Changed();
}

void TrendPlotWidget::ShowCursors(bool shown) {
    constexpr double third = 1.0 / 3.0;
    const double span_s = m_Scene.To_s - m_Scene.From_s;
    m_Cursors.reset();
    if (shown)
        m_Cursors = {m_Scene.From_s + span_s * third, m_Scene.To_s - span_s * third};
    update();
    emit CursorsMoved();
}

QImage TrendPlotWidget::Picture(QSize size) const {
    QImage picture(size, QImage::Format_RGB32);
    const QPalette paper = PaperPalette();
    picture.fill(paper.color(QPalette::Base));
    QPainter painter(&picture);
    painter.setFont(font());
    if (m_Scene.Data == nullptr)
        return picture;
    const QRectF area{{}, QSizeF(size)};
    const double legend =
        DrawTrendLegend(painter, m_Scene, area.adjusted(PlotGap, PlotGap / 2, -PlotGap, 0), paper);
    const QRectF rest = area.adjusted(0, legend + PlotGap / 2, 0, 0);
    DrawTrend(painter, m_Scene, FrameOf(m_Scene, painter, rest), paper);
    return picture;
}

void TrendPlotWidget::RenewPicture() {
    m_Picture = QPixmap(size() * devicePixelRatioF());
    m_Picture.setDevicePixelRatio(devicePixelRatioF());
    QPainter painter(&m_Picture);
    painter.setFont(font());
    m_Frame = FrameOf(m_Scene, painter, rect());
    DrawTrend(painter, m_Scene, m_Frame, palette());
}

void TrendPlotWidget::paintEvent(QPaintEvent* /*event*/) {
    if (m_Picture.isNull())
        RenewPicture();
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_Picture);
    DrawCursors(painter);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 0.0));
    if (m_Drag == Drag::Box)
        painter.drawRect(QRectF(m_DragFrom, m_DragTo).normalized());
    if (hasFocus())
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void TrendPlotWidget::DrawCursors(QPainter& painter) const {
    if (!m_Cursors)
        return;
    const double line = painter.fontMetrics().height();
    QPen pen(palette().color(QPalette::Text), 0.0, Qt::DashLine);
    painter.setPen(pen);
    for (std::size_t cursor = 0; cursor < m_Cursors->size(); ++cursor) {
        const double x = m_Frame.X(m_Cursors->at(cursor));
        if (x < m_Frame.Plot.left() || x > m_Frame.Plot.right())
            continue;
        painter.drawLine(QPointF(x, m_Frame.Plot.top()), QPointF(x, m_Frame.Plot.bottom()));
        painter.drawText(QRectF(x - line, m_Frame.Plot.top() - line - 1, 2 * line, line),
                         Qt::AlignCenter, cursor == 0 ? QStringLiteral("A") : QStringLiteral("B"));
    }
}

void TrendPlotWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Changed();
}

void TrendPlotWidget::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange)
        Changed();
}

// What the operator does with it.

void TrendPlotWidget::ZoomTimes(double factor, double around_s) {
    if (m_Scene.Data == nullptr)
        return;
    const double whole_s = m_Scene.Data->End_s() - m_Scene.Data->Begin_s();
    const double span_s = m_Scene.To_s - m_Scene.From_s;
    constexpr double mostOfWhole = 4.0;
    const double wanted_s =
        std::clamp(span_s * factor, ShortestSpan_s, std::max(mostOfWhole * whole_s, 1.0));
    const double share = (around_s - m_Scene.From_s) / span_s;
    ShowTimes(around_s - share * wanted_s, around_s + (1.0 - share) * wanted_s);
    emit ViewChanged(true);
}

void TrendPlotWidget::ZoomValues(double factor, double y) {
    for (std::size_t axis = 0; axis < m_Scene.Spans.size(); ++axis) {
        const ValueSpan& span = m_Frame.Spans.at(axis);
        const double around = m_Frame.ValueAt(axis, y);
        const double least = around - (around - span.Least) * factor;
        const double largest = around + (span.Largest - around) * factor;
        // Beyond the digits of what is kept there is nothing to see.
        if (largest - least > std::abs(around) * 1e-6)
            m_Scene.Spans.at(axis) = {least, largest};
    }
    Changed();
    emit ViewChanged(false);
}

void TrendPlotWidget::Pan(double pixels) {
    const double shift_s =
        pixels * (m_Scene.To_s - m_Scene.From_s) / std::max(m_Frame.Plot.width(), 1.0);
    ShowTimes(m_Scene.From_s + shift_s, m_Scene.To_s + shift_s);
    emit ViewChanged(true);
}

void TrendPlotWidget::PanValues(double pixels) {
    for (std::size_t axis = 0; axis < m_Scene.Spans.size(); ++axis) {
        const ValueSpan& span = m_Frame.Spans.at(axis);
        const double shift =
            pixels * (span.Largest - span.Least) / std::max(m_Frame.Plot.height(), 1.0);
        m_Scene.Spans.at(axis) = {span.Least + shift, span.Largest + shift};
    }
    Changed();
    emit ViewChanged(false);
}

void TrendPlotWidget::ZoomIntoBox() {
    const QRectF box = QRectF(m_DragFrom, m_DragTo).normalized() & m_Frame.Plot;
    constexpr double smallest = 4.0;
    if (box.width() < smallest || box.height() < smallest)
        return;
    for (std::size_t axis = 0; axis < m_Scene.Spans.size(); ++axis)
        m_Scene.Spans.at(axis) = {m_Frame.ValueAt(axis, box.bottom()),
                                  m_Frame.ValueAt(axis, box.top())};
    ShowTimes(m_Frame.TimeAt(box.left()), m_Frame.TimeAt(box.right()));
    emit ViewChanged(true);
}

void TrendPlotWidget::MoveCursor(std::size_t cursor, double to_s) {
    if (!m_Cursors)
        return;
    m_Cursors->at(cursor) = std::clamp(to_s, m_Scene.From_s, m_Scene.To_s);
    update();
    emit CursorsMoved();
}

void TrendPlotWidget::wheelEvent(QWheelEvent* event) {
    constexpr double notch = 120.0;
    const double factor = std::pow(ZoomStep, -event->angleDelta().y() / notch);
    if (event->modifiers().testFlag(Qt::ControlModifier))
        ZoomValues(factor, event->position().y());
    else
        ZoomTimes(factor, m_Frame.TimeAt(event->position().x()));
    event->accept();
}

TrendPlotWidget::Drag TrendPlotWidget::DragAt(const QMouseEvent& event) const {
    constexpr double near = 6.0;
    if (event.button() == Qt::RightButton || event.modifiers().testFlag(Qt::ShiftModifier))
        return Drag::Box;
    if (event.button() != Qt::LeftButton)
        return Drag::None;
    for (const std::size_t cursor : {std::size_t{1}, std::size_t{0}}) {
        if (m_Cursors && std::abs(m_Frame.X(m_Cursors->at(cursor)) - event.position().x()) <= near)
            return cursor == 0 ? Drag::CursorA : Drag::CursorB;
    }
    return Drag::Pan;
}

void TrendPlotWidget::mousePressEvent(QMouseEvent* event) {
    m_Drag = DragAt(*event);
    m_DragFrom = m_DragTo = event->position();
}

void TrendPlotWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPointF moved = event->position() - m_DragTo;
    m_DragTo = event->position();
    switch (m_Drag) {
    case Drag::None: return;
    case Drag::Box: update(); return;
    case Drag::Pan:
        Pan(-moved.x());
        // Axes that show all there is have nothing above or below it.
        if (m_Scene.Spans[0])
            PanValues(moved.y());
        return;
    case Drag::CursorA:
    case Drag::CursorB:
        MoveCursor(m_Drag == Drag::CursorA ? 0 : 1, m_Frame.TimeAt(event->position().x()));
        return;
    }
}

void TrendPlotWidget::mouseReleaseEvent(QMouseEvent* event) {
    m_DragTo = event->position();
    if (m_Drag == Drag::Box)
        ZoomIntoBox();
    m_Drag = Drag::None;
    update();
}

void TrendPlotWidget::keyPressEvent(QKeyEvent* event) {
    const double middle_s = (m_Scene.From_s + m_Scene.To_s) / 2;
    const bool ahead = event->key() == Qt::Key_Right || event->key() == Qt::Key_Up;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (event->modifiers().testFlag(Qt::ControlModifier)) {
            const std::size_t cursor = event->modifiers().testFlag(Qt::ShiftModifier) ? 1 : 0;
            if (m_Cursors)
                MoveCursor(cursor,
                           m_Frame.TimeAt(m_Frame.X(m_Cursors->at(cursor)) + (ahead ? 1.0 : -1.0)));
        } else {
            Pan((ahead ? 1.0 : -1.0) * PanShare * m_Frame.Plot.width());
        }
        return;
    case Qt::Key_Up:
    case Qt::Key_Down: PanValues((ahead ? 1.0 : -1.0) * PanShare * m_Frame.Plot.height()); return;
    case Qt::Key_Plus:
    case Qt::Key_Equal: ZoomTimes(1.0 / ZoomStep, middle_s); return;
    case Qt::Key_Minus: ZoomTimes(ZoomStep, middle_s); return;
    case Qt::Key_Home:
        ShowAll();
        emit ViewChanged(true);
        return;
    case Qt::Key_Space: emit PauseWanted(); return;
    default: QWidget::keyPressEvent(event);
    }
}

} // namespace ombrix
