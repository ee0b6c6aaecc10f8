#include "windows/testrig/RampProgress.h"

#include "platform/text/Text.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QPainter>

#include <algorithm>

namespace ombrix {

namespace {

constexpr QColor BarColour(0, 128, 222);
constexpr int BarHeight = 18;
constexpr int TickLength = 4;
constexpr int ComfortableWidth = 480;

} // namespace

RampProgress::RampProgress(QWidget* parent) : QWidget(parent) {
    Named(this, QStringLiteral("picCurrentJob"), tr("Progress of the present step"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize RampProgress::sizeHint() const {
    return {ComfortableWidth, BarHeight + TickLength + fontMetrics().height()};
}

void RampProgress::Begin(const RampStep& ramp) {
    m_Ramp = ramp;
    m_Elapsed_s = 0.0;
    setAccessibleDescription(ToQt(ramp.Name));
    update();
}

void RampProgress::Show(double elapsed_s) {
    const int before = PlaceOf(m_Elapsed_s);
    m_Elapsed_s = elapsed_s;
    if (PlaceOf(elapsed_s) != before)
        update();
}

void RampProgress::Clear() {
    Begin({});
}

QRect RampProgress::BarOnScreen() const {
    // The figures at both ends of the scale stand half beside it.
    const int margin = fontMetrics().horizontalAdvance(QStringLiteral("000 s")) / 2;
    return {margin, 0, width() - 2 * margin, BarHeight};
}

int RampProgress::PlaceOf(double time_s) const {
    const QRect bar = BarOnScreen();
    const double span_s = m_Ramp.Duration_s();
    const double share = span_s > 0.0 ? std::clamp(time_s / span_s, 0.0, 1.0) : 0.0;
    return bar.left() + static_cast<int>(share * bar.width());
}

void RampProgress::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRect bar = BarOnScreen();
    painter.fillRect(bar, palette().color(QPalette::Base));
    QRect done = bar;
    done.setRight(PlaceOf(m_Elapsed_s) - 1);
    painter.fillRect(done, BarColour);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(bar.adjusted(0, 0, -1, -1));
    painter.setPen(palette().color(QPalette::WindowText));
    const bool hasScale = m_Ramp.Levels > 0;
    for (std::int32_t level = 0; hasScale && level <= m_Ramp.Levels; ++level) {
        const double time_s = level * m_Ramp.LevelDuration_s;
        const int x = std::min(PlaceOf(time_s), bar.right());
        painter.drawLine(x, bar.bottom() + 1, x, bar.bottom() + TickLength);
        const QString figure = ToQt(GeneralText(time_s)) + QStringLiteral(" s");
        QRect place(QPoint(), fontMetrics().size(Qt::TextSingleLine, figure));
        place.moveCenter({x, 0});
        place.moveTop(bar.bottom() + TickLength + 1);
        painter.drawText(place, Qt::AlignCenter, figure);
    }
}

} // namespace ombrix
