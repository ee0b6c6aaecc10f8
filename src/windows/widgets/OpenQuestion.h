#pragma once

#include <QMessageBox>

#include <functional>

namespace ombrix {

/// Asks Yes or No beside a running procedure: the procedure goes on until Yes is chosen, so that
/// a measurement is not disturbed by a question that may be answered No.
/// @param window takes the box; asked again while it stands, it is raised
void AskWhileRunning(QWidget& window, const QString& text, std::function<void()> onYes);

/// Takes back the question that stands over a window, as if it had been answered No: what it
/// asks about is over.
void WithdrawQuestion(QWidget& window);

} // namespace ombrix
