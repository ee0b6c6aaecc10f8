#include "windows/widgets/ClickableLabel.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

namespace ombrix {

ClickableLabel::ClickableLabel(const QString& objectName, QString meaning, QWidget* parent)
    : ValueLabel(objectName, std::move(meaning), parent) {
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
}

void ClickableLabel::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()))
        emit Clicked();
}

void ClickableLabel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
        event->key() == Qt::Key_Enter)
        emit Clicked();
    else
        ValueLabel::keyPressEvent(event);
}

} // namespace ombrix
