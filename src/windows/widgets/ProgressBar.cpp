#include "windows/widgets/ProgressBar.h"

#include "platform/text/Text.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ombrix {

namespace {

constexpr double Whole_percent = 100.0;

QColor TextColourOn(const QColor& background) {
    return Contrast(Qt::black, background) >= Contrast(Qt::white, background) ? Qt::black
                                                                              : Qt::white;
}

} // namespace

ProgressBar::ProgressBar(QWidget* parent) : QFrame(parent) {
    constexpr int smallPrint = 7;
    setFont(QFont(QStringLiteral("Arial"), smallPrint));
    Appearance(0);
    Rescale();
}

void ProgressBar::Orientation(std::int32_t orientation) {
    m_Orientation = orientation;
    Rescale();
}

void ProgressBar::MaxVal(float highest) {
    if (highest == m_MaxVal)
        return;
    m_MaxVal = highest;
    Rescale();
}

void ProgressBar::Value(float value) {
    if (value == m_Value)
        return;
    m_Value = HeldToLimits(value);
    Redraw();
}

void ProgressBar::BackColour(Colour colour) {
    m_BackColour = colour;
    Clear();
}

std::int32_t ProgressBar::Appearance() const {
    return frameShadow() == Sunken ? 1 : 0;
}

void ProgressBar::Appearance(std::int32_t appearance) {
    setFrameStyle(appearance == 0 ? static_cast<int>(Box) | static_cast<int>(Plain)
                                  : static_cast<int>(Panel) | static_cast<int>(Sunken));
}

void ProgressBar::Refresh() {
    Rescale();
    Redraw();
}

void ProgressBar::Clear() {
    Show({});
}

QSize ProgressBar::sizeHint() const {
    constexpr int charactersWide = 30;
    constexpr int roomAroundText = 8;
    return {fontMetrics().averageCharWidth() * charactersWide,
            fontMetrics().height() + roomAroundText};
}

void ProgressBar::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    Rescale();
}

void ProgressBar::Rescale() {
    m_Range = m_MaxVal - m_MinVal;
}

void ProgressBar::Redraw() {
    Show({DisplayText(), FilledPart(), m_ForeColour});
}

void ProgressBar::Show(Picture picture) {
    m_Picture = std::move(picture);
    if (m_Picture.Text != accessibleDescription())
        setAccessibleDescription(m_Picture.Text);
    update();
}

float ProgressBar::HeldToLimits(float value) const {
    if (value > m_MaxVal)
        return m_MaxVal;
    return value < m_MinVal ? m_MinVal : value;
}

std::optional<float> ProgressBar::Percent() const {
    if (m_Range == 0.0F)
        return std::nullopt;
    // Multiplied first: whole percentages come out whole.
    return (HeldToLimits(m_Value) - m_MinVal) * static_cast<float>(Whole_percent) / m_Range;
}

QString ProgressBar::DisplayText() const {
    const auto percent = Percent();
    QString share = percent ? ToQt(FixedText(std::floor(*percent), 0) + "%") : QString();
    const QString shareBehind = percent ? QStringLiteral(" (") + share + QLatin1Char(')') : share;
    QString value = ToQt(FixedText(m_Value, 2));
    const QString ofMaximum = QStringLiteral(" of ") + ToQt(GeneralText(m_MaxVal));
    switch (m_DisplayType) {
    case 1: return share;
    case 2: return value;
    case 3: return value + ofMaximum;
    case 4: return value + shareBehind;
    case 5: return value + ofMaximum + shareBehind;
    case 6: return m_UserString;
    case 7: return m_UserString + QStringLiteral(" (") + value + QLatin1Char(')');
    case 8: return m_UserString + QLatin1Char(' ') + value + ofMaximum;
    case 9: return m_UserString + shareBehind;
    default: return {};
    }
}

QRectF ProgressBar::FilledPart() const {
    const auto percent = Percent();
    if (!percent)
        return {};
    // A range set by hand may put the value beyond the surface.
    const double filled = std::clamp(static_cast<double>(*percent), 0.0, Whole_percent);
    const double rest = Whole_percent - filled;
    switch (m_Orientation) {
    case 0: return {0.0, 0.0, filled, Whole_percent};
    case 1: return {filled, 0.0, rest, Whole_percent};
    case 2: return {0.0, 0.0, Whole_percent, rest};
    case 3: return {0.0, rest, Whole_percent, filled};
    default: return {};
    }
}

QRect ProgressBar::BoxOnScreen() const {
    const QRect surface = contentsRect();
    const QRectF& box = m_Picture.Box;
    const auto across = [&surface](double x) {
        return surface.left() + qRound(x * surface.width() / Whole_percent);
    };
    const auto down = [&surface](double y) {
        return surface.top() + qRound(y * surface.height() / Whole_percent);
    };
    return {QPoint(across(box.left()), down(box.top())),
            QPoint(across(box.right()) - 1, down(box.bottom()) - 1)};
}

QRect ProgressBar::TextOnScreen() const {
    QRect place(QPoint(), fontMetrics().size(Qt::TextSingleLine, m_Picture.Text));
    place.moveCenter(contentsRect().center());
    return place;
}

void ProgressBar::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QColor background = ToQt(m_BackColour);
    const QColor filled = ToQt(m_Picture.BoxColour);
    const QRect box = BoxOnScreen();
    painter.fillRect(contentsRect(), background);
    painter.fillRect(box, filled);
    // The text is readable on either side of the edge that runs through it.
    const auto print = [&](const QRegion& side, const QColor& ground) {
        painter.setClipRegion(side);
        painter.setPen(TextColourOn(ground));
        painter.drawText(TextOnScreen(), Qt::AlignCenter | Qt::TextSingleLine, m_Picture.Text);
    };
    print(QRegion(contentsRect()).subtracted(box), background);
    print(box, filled);
    painter.end();
    QFrame::paintEvent(event);
}

} // namespace ombrix
