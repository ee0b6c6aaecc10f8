#include "windows/healthcheck/GraphWidget.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>

namespace ombrix {

namespace {

/// Traces and reference lines have colours for light paper, whatever the desktop's palette.
const QColor Paper(255, 255, 255);
constexpr QSize HintSize(640, 120);
constexpr QSize LeastSize(240, 64);

} // namespace

GraphWidget::GraphWidget(const QString& objectName, const QString& accessibleName, QWidget* parent)
    : QWidget(parent) {
    Named(this, objectName, accessibleName);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize GraphWidget::sizeHint() const {
    return HintSize;
}

QSize GraphWidget::minimumSizeHint() const {
    return LeastSize;
}

void GraphWidget::Scale(double left, double top, double right, double bottom) {
    m_Scale = {left, top, right, bottom};
    m_Picture = {};
    update();
}

void GraphWidget::Cls() {
    m_Content.Clear();
    m_Picture = {};
    update();
}

double GraphWidget::TextHeight(std::string_view /*text*/) const {
    return Mapping().PixelsToY(fontMetrics().height());
}

void GraphWidget::Print(double x, double y, std::string_view text) {
    m_Content.AddText(x, y, ToQt(text));
    update();
}

void GraphWidget::Line(double x1, double y1, double x2, double y2, Colour colour) {
    update(m_Content.AddSegment({x1, y1}, {x2, y2}, colour, Mapping()));
}

void GraphWidget::RenewPicture() {
    m_Picture = QPixmap(size() * devicePixelRatioF());
    m_Picture.setDevicePixelRatio(devicePixelRatioF());
    m_Picture.fill(Paper);
    m_Content.Forget();
}

void GraphWidget::paintEvent(QPaintEvent* event) {
    if (m_Picture.size() != size() * devicePixelRatioF())
        RenewPicture();
    {
        QPainter onto(&m_Picture);
        onto.setFont(font());
        onto.setRenderHint(QPainter::Antialiasing);
        m_Content.DrawNew(onto, Mapping());
    }
    QPainter painter(this);
    const QRectF shown = event->rect();
    painter.drawPixmap(
        shown, m_Picture,
        QRectF(shown.topLeft() * devicePixelRatioF(), shown.size() * devicePixelRatioF()));
}

void GraphWidget::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        m_Picture = {};
        update();
    }
}

} // namespace ombrix
