#include "windows/widgets/ADCBar.h"

#include "windows/widgets/Controls.h"

#include <QPainter>

#include <algorithm>

namespace ombrix {

namespace {

constexpr double Scale = 65536.0;
constexpr QColor ReadingColour(0, 128, 222);
constexpr QColor OutputColour(0, 188, 255);
constexpr QColor OutlineColour(212, 212, 212);
constexpr QColor MarkerColour(0, 64, 212);
constexpr int HintWidth = 44;
constexpr int HintHeight = 180;

} // namespace

ADCBar::ADCBar(int index, const QString& meaning, QWidget* parent) : QWidget(parent) {
    Named(this, ElementName("picADC", index), meaning);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    setToolTip(tr("Wide bar: ADC reading. Narrow bar: DAC value. The dark line joins them."));
}

QSize ADCBar::sizeHint() const {
    return {HintWidth, HintHeight};
}

void ADCBar::Draw(std::optional<std::int32_t> reading, std::int32_t dacValue) {
    if (reading == m_Reading && dacValue == m_DACValue)
        return;
    m_Reading = reading;
    m_DACValue = dacValue;
    update();
}

double ADCBar::HeightOf(std::int32_t value) const {
    return value / Scale * (height() - 2);
}

void ADCBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const double bottom = height() - 1.0;
    const double inner = width() - 2.0;
    const auto bar = [&](double share, double barHeight, const QColor& colour) {
        const double barWidth = inner * share;
        painter.fillRect(
            QRectF(1.0 + (inner - barWidth) / 2.0, bottom - barHeight, barWidth, barHeight),
            colour);
    };
    constexpr double narrow = 0.45;
    const double output = HeightOf(m_DACValue);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    if (m_Reading)
        bar(1.0, HeightOf(*m_Reading), ReadingColour);
    bar(narrow, output, OutputColour);
    if (m_Reading) {
        const double reading = HeightOf(*m_Reading);
        constexpr double markerWidth = 4.0;
        constexpr double leastHeight = 2.0;
        const double length = std::max(std::abs(reading - output), leastHeight);
        painter.fillRect(QRectF((width() - markerWidth) / 2.0,
                                std::max(bottom - std::max(reading, output), 0.0), markerWidth,
                                length),
                         MarkerColour);
    }
    painter.setPen(OutlineColour);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace ombrix
