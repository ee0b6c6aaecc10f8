#pragma once

#include "platform/text/Colour.h"
#include "windows/widgets/ValueLabel.h"

#include <QColor>
#include <QWidget>

#include <initializer_list>

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QScrollArea;
class QSlider;
class QAbstractItemView;

namespace ombrix {

inline QColor ToQt(Colour colour) {
    return {colour.Red, colour.Green, colour.Blue};
}

/// The colour as given on a light background; on a dark one the same hue, lightened as far as
/// it takes to read it.
QColor ReadableColour(Colour colour, const QColor& background);

/// Contrast of two colours from 1 to 21, as accessibility guidelines reckon it.
double Contrast(const QColor& first, const QColor& second);

/// A value that can be clicked, or chosen with the keyboard, to be looked at more closely.
class ClickableLabel final : public ValueLabel {
    Q_OBJECT

  public:
    ClickableLabel(const QString& objectName, QString meaning, QWidget* parent);

  signals:
    void Clicked();

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

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
/// A list to choose from, with its caption before it. @param row takes both
QComboBox* MakeChooser(const char* objectName, const QString& caption, QHBoxLayout& row,
                       QWidget* parent);
/// The tab key goes through these controls in their order.
void SetTabOrder(std::initializer_list<QWidget*> controls);
/// Of what was entered and cannot be taken.
inline constexpr Colour WrongRed{176, 0, 32};
/// A size that suits fonts of 96 dots to the inch, for the dots of the desktop's fonts.
QSize ScaledToFonts(const QWidget& widget, QSize usual);
/// The same for a window's first size, which is no larger than the screen: one of 1280 × 720 pixels
/// that are shown at 150 % has room for little more than half of that.
QSize ScaledToScreen(const QWidget& window, QSize usual);
/// What a widget shows in a frame that is scrolled where the window is too small for it. The
/// widget's own ground shows through. @param name for those who cannot see it
QScrollArea* MakeScrolling(QWidget* content, const QString& name, QWidget* parent);
/// A text that never changes.
QLabel* MakeCaption(const QString& caption, QWidget* parent);

/// Shows a text of any length in lines of a comfortable width at least, with room for all of them.
void ShowWrapped(QLabel& label, const QString& text);

/// Fits every column to the wider of its heading and its widest entry. A view that has no
/// columns to fit, such as a list of icons, is left untouched.
void AutoSizeColumns(QAbstractItemView& list);

} // namespace ombrix
