#include "windows/desktop/FileQuestion.h"

#include "windows/desktop/QtOperator.h"
#include "windows/widgets/QtText.h"

#include <QFileInfo>

#include <exception>
#include <utility>

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

void AskAndWrite(QWidget& window, const FileQuestion& ask, const QString& proposed,
                 std::function<void(const QString& file)> write,
                 std::function<void(const QString& error)> failed) {
    ask(proposed,
        [&window, write = std::move(write), failed = std::move(failed)](const QString& file) {
            if (file.isEmpty())
                return;
            const auto writeNow = [write, failed, file] {
                try {
                    write(file);
                } catch (const std::exception& error) {
                    failed(ToQt(error.what()));
                }
            };
            if (QFileInfo::exists(file))
                AskWhileRunning(
                    window, QObject::tr("%1 is there already.\n\nReplace it?").arg(file), writeNow);
            else
                writeNow();
        });
}

} // namespace ombrix
