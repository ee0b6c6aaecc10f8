#include "windows/widgets/ValueLabel.h"

#include "windows/widgets/Controls.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

#include <utility>

namespace ombrix {

ValueLabel::ValueLabel(const QString& objectName, QString meaning, QWidget* parent)
    : QLabel(parent), m_Meaning(std::move(meaning)) {
    if (!m_Meaning.endsWith(QLatin1Char(':')))
        m_Meaning += QLatin1Char(':');
    setObjectName(objectName);
    setAccessibleName(m_Meaning);
    // Texts come from boards and their EPROMs, which may hold anything.
    setTextFormat(Qt::PlainText);
}

void ValueLabel::SetText(const QString& text) {
    if (text == this->text())
        return;
    setText(text);
    setAccessibleName(m_Meaning + QLatin1Char(' ') + text);
    if (m_CutToFit)
        setToolTip(text);
}

void ValueLabel::ShowValue(const QString& text) {
    if (!m_CutToFit && !toolTip().isEmpty())
        setToolTip({});
    SetText(text);
}

void ValueLabel::ShowFailure(const QString& reason) {
    SetText(QStringLiteral("--"));
    setToolTip(reason);
}

void ValueLabel::ShowInColour(Colour colour) {
    m_Colour = colour;
    ApplyColour();
}

void ValueLabel::ShowInPaletteColour() {
    m_Colour.reset();
    setPalette({});
}

void ValueLabel::ApplyColour() {
    QPalette own;
    own.setColor(QPalette::WindowText,
                 ReadableColour(*m_Colour, parentWidget()->palette().color(QPalette::Window)));
    if (own.color(QPalette::WindowText) != palette().color(QPalette::WindowText))
        setPalette(own);
}

void ValueLabel::ReserveFor(const QString& longest) {
    const int margins = 2 * margin() + 2 * frameWidth();
    setFixedSize(fontMetrics().horizontalAdvance(longest) + margins,
                 fontMetrics().height() + margins);
}

void ValueLabel::CutToFit() {
    m_CutToFit = true;
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void ValueLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_Colour)
        ApplyColour();
}

void ValueLabel::paintEvent(QPaintEvent* event) {
    if (!m_CutToFit || fontMetrics().horizontalAdvance(text()) <= contentsRect().width()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    style()->drawItemText(
        &painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(),
        fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()), foregroundRole());
}

} // namespace ombrix
