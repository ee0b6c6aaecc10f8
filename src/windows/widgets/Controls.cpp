#include "windows/widgets/Controls.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

namespace ombrix {

namespace {

/// A caption as it is read out: "&&" stands for one "&".
QString Spoken(QString caption) {
    return caption.replace(QStringLiteral("&&"), QStringLiteral("&"));
}

} // namespace

QString ElementName(const char* array, int index) {
    return QStringLiteral("%1_%2").arg(QLatin1String(array)).arg(index);
}

QPushButton* MakeButton(const QString& objectName, const QString& caption, QWidget* parent) {
    auto* button = Named(new QPushButton(caption, parent), objectName, Spoken(caption));
    button->setAutoDefault(false);
    return button;
}

QCheckBox* MakeCheckBox(const QString& objectName, const QString& caption, QWidget* parent) {
    return Named(new QCheckBox(caption, parent), objectName, Spoken(caption));
}

QSlider* MakeDemandSlider(const QString& objectName, const QString& accessibleName, int highest,
                          QWidget* parent) {
    constexpr int pageShare = 20;
    constexpr int fineShare = 1000;
    constexpr int tickShare = 10;
    auto* slider = Named(new QSlider(Qt::Vertical, parent), objectName, accessibleName);
    slider->setRange(0, highest);
    slider->setPageStep(highest / pageShare);
    slider->setSingleStep(highest / fineShare);
    slider->setTickPosition(QSlider::TicksLeft);
    slider->setTickInterval(highest / tickShare);
    return slider;
}

QSize ScaledToFonts(const QWidget& widget, QSize usual) {
    constexpr int usualResolution = 96;
    return usual * widget.logicalDpiX() / usualResolution;
}

QLabel* MakeCaption(const QString& caption, QWidget* parent) {
    auto* label = new QLabel(caption, parent);
    label->setTextFormat(Qt::PlainText);
    label->setAccessibleName(caption);
    return label;
}

} // namespace ombrix
