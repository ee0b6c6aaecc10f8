#include "windows/procedure/StopKeys.h"

#include <QApplication>
#include <QKeyEvent>

namespace ombrix {

StopKeys::StopKeys(Station& station) : m_Station(station) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool StopKeys::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.key() != Qt::Key_Escape)
        return false;
    if ((key.modifiers() & Qt::ShiftModifier) != 0) {
        emit StopAirWanted();
        return true;
    }
    if (!m_Station.Procedures.Running() || QApplication::activeModalWidget() != nullptr ||
        QApplication::activePopupWidget() != nullptr)
        return false;
    m_Station.Procedures.Cancel();
    return true;
}

} // namespace ombrix
