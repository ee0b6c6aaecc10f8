#include "windows/widgets/NumberField.h"

#include "platform/text/Text.h"
#include "windows/widgets/Controls.h"

#include <QKeyEvent>

namespace ombrix {

namespace {

/// A light ground on a light palette, a deep one of the same hue on a dark palette.
QColor GroundOf(Entry entry, const QPalette& palette) {
    constexpr int redHue = 0;
    constexpr int amberHue = 45;
    constexpr int saturation = 180;
    constexpr int light = 225;
    constexpr int deep = 55;
    constexpr int middle = 128;
    const bool isLight = palette.color(QPalette::Window).lightness() >= middle;
    return QColor::fromHsl(entry == Entry::Wrong ? redHue : amberHue, saturation,
                           isLight ? light : deep);
}

} // namespace

void ColourEntry(QLineEdit& field, Entry entry) {
    QPalette palette;
    if (entry != Entry::Taken)
        palette.setColor(QPalette::Base, GroundOf(entry, palette));
    field.setPalette(entry == Entry::Taken ? QPalette() : palette);
}

void MarkEntry(QLineEdit& field, ValueLabel& note, Entry entry, const QString& text) {
    ColourEntry(field, entry);
    field.setAccessibleDescription(text);
    note.ShowValue(text);
    if (entry == Entry::Wrong)
        note.ShowInColour(WrongRed);
    else
        note.ShowInPaletteColour();
}

NumberField::NumberField(const QString& objectName, const QString& meaning, const QString& note,
                         QWidget* parent)
    : QLineEdit(parent), m_Note(new ValueLabel(note, meaning, parent)) {
    Named(this, objectName, meaning);
    setAlignment(Qt::AlignCenter);
    m_Note->setAlignment(Qt::AlignCenter);
    m_Note->CutToFit();
    m_Note->setFixedHeight(m_Note->fontMetrics().height());
    connect(this, &QLineEdit::textEdited, this, &NumberField::Judge);
    connect(this, &QLineEdit::returnPressed, this, &NumberField::Take);
}

void NumberField::ShowTaken(std::int32_t value) {
    m_Taken = QString::number(value);
    if (m_Typing)
        return;
    setText(m_Taken);
    MarkEntry(*this, *m_Note, Entry::Taken, {});
}

void NumberField::Reset(std::int32_t value) {
    m_Typing = false;
    ShowTaken(value);
}

void NumberField::Judge() {
    m_Typing = text() != m_Taken;
    if (!m_Typing)
        MarkEntry(*this, *m_Note, Entry::Taken, {});
    else if (ParseNumber(text().toStdString()))
        MarkEntry(*this, *m_Note, Entry::Pending, tr("Enter to set"));
    else
        MarkEntry(*this, *m_Note, Entry::Wrong, tr("Not a Number"));
}

void NumberField::Take() {
    const auto number = ParseNumber(text().toStdString());
    if (!number) {
        Judge();
        return;
    }
    m_Typing = false;
    MarkEntry(*this, *m_Note, Entry::Taken, {});
    emit Entered(*number);
}

void NumberField::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape || !m_Typing) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    m_Typing = false;
    setText(m_Taken);
    Judge();
}

} // namespace ombrix
