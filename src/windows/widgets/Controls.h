#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class QSlider;

namespace ombrix {

/// Control arrays carry their index in the name: "chkGIO_0" … "chkGIO_19".
QString ElementName(const char* array, int index);

/// Gives a control its name in the program and its name for those who cannot see it.
template <class Control>
Control* Named(Control* control, const QString& objectName, const QString& accessibleName) {
    control->setObjectName(objectName);
    control->setAccessibleName(accessibleName);
    return control;
}

QPushButton* MakeButton(const QString& objectName, const QString& caption, QWidget* parent);
QCheckBox* MakeCheckBox(const QString& objectName, const QString& caption, QWidget* parent);
/// An upright slider of demands from 0 on. @param highest value at its upper end
QSlider* MakeDemandSlider(const QString& objectName, const QString& accessibleName, int highest,
                          QWidget* parent);
/// A size that suits fonts of 96 dots to the inch, for the dots of the desktop's fonts.
QSize ScaledToFonts(const QWidget& widget, QSize usual);
/// A text that never changes.
QLabel* MakeCaption(const QString& caption, QWidget* parent);

} // namespace ombrix
