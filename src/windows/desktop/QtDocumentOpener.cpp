#include "windows/desktop/QtDocumentOpener.h"

#include "windows/widgets/QtText.h"

#include <QDesktopServices>
#include <QUrl>

namespace ombrix {

bool QtDocumentOpener::OpenDocument(const std::filesystem::path& path) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(ToQt(path.string())));
}

} // namespace ombrix
