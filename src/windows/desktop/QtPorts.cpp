#include "windows/desktop/QtPorts.h"

#include "windows/widgets/QtText.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

#include <cstdlib>

namespace ombrix {

void QtEventPump::ProcessPendingEvents() {
    QCoreApplication::processEvents();
}

bool QtDocumentOpener::OpenDocument(const std::filesystem::path& path) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(ToQt(path.string())));
}

void QtProgramEnd::EndProgram(ExitStatus status) {
    BeforeEnd();
    std::_Exit(static_cast<int>(status));
}

} // namespace ombrix
