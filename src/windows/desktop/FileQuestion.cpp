#include "windows/desktop/FileQuestion.h"

namespace ombrix {

FileQuestion FileDialogOf(QWidget& window, QFileDialog::AcceptMode mode, const QString& title,
                          const QString& filter) {
    return [&window, mode, title, filter](const QString& proposed,
                                          const std::function<void(const QString&)>& chosen) {
        auto* dialog = new QFileDialog(&window, title, proposed, filter);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setAcceptMode(mode);
        // The dialog would wait for the answer.
        dialog->setOption(QFileDialog::DontConfirmOverwrite);
        if (mode == QFileDialog::AcceptOpen)
            dialog->setFileMode(QFileDialog::ExistingFile);
        else
            dialog->selectFile(proposed);
        QObject::connect(dialog, &QFileDialog::fileSelected, &window, chosen);
        dialog->open();
    };
}

} // namespace ombrix
