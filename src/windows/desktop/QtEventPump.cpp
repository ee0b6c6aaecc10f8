#include "windows/desktop/QtEventPump.h"

#include <QCoreApplication>

namespace ombrix {

void QtEventPump::ProcessPendingEvents() {
    QCoreApplication::processEvents();
}

} // namespace ombrix
