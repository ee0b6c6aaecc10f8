#pragma once

#include <QFileDialog>
#include <QString>

#include <functional>

namespace ombrix {

/// Asks for a file beside whatever runs, and tells which was chosen, if any. A dialog that is
/// waited for would hold up a procedure, with its air flowing.
using FileQuestion =
    std::function<void(const QString& proposed, std::function<void(const QString& file)> chosen)>;

/// The question by the desktop's dialog. Whether a file is to be replaced is left to the asker.
/// @param window takes the dialog, and outlives the question
FileQuestion FileDialogOf(QWidget& window, QFileDialog::AcceptMode mode, const QString& title,
                          const QString& filter = {});

/// Asks for a file and has it written, after a question where it would replace one.
/// @param write stores it @param failed told what was wrong
void AskAndWrite(QWidget& window, const FileQuestion& ask, const QString& proposed,
                 std::function<void(const QString& file)> write,
                 std::function<void(const QString& error)> failed);

} // namespace ombrix
