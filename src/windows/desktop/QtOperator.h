#pragma once

#include "windows/desktop/QtPorts.h"

#include <QMessageBox>

#include <functional>

namespace ombrix {

/// The operator before a desktop: message boxes and input boxes over the window in use. A box
/// without a title of its own carries the application's.
class QtOperator final : public Operator {
  public:
    Answer Ask(const Message& message) override;
    std::optional<std::string> AskText(const std::string& prompt, const std::string& proposed,
                                       const std::string& title) override;
    /// Nobody is there any more: open dialogs are refused, and so is everything asked from now
    /// on; what is told goes to standard error.
    void StopAsking();
    /// The same where even the windows cannot be touched any more, because their display is gone.
    void DisplayIsGone() { m_NobodyIsThere = true; }

    /// What shows a folder that a message tells of; the desktop's file manager at first.
    std::function<void(const std::filesystem::path& folder)> ShowFolder =
        [](const std::filesystem::path& folder) { QtDocumentOpener().OpenDocument(folder); };

  private:
    bool m_NobodyIsThere = false;
};

/// Asks Yes or No beside a running procedure: the procedure goes on until Yes is chosen, so that
/// a measurement is not disturbed by a question that may be answered No.
/// @param window takes the box; asked again while it stands, it is raised
void AskWhileRunning(QWidget& window, const QString& text, std::function<void()> onYes);

/// Takes back the question that stands over a window, as if it had been answered No: what it
/// asks about is over.
void WithdrawQuestion(QWidget& window);

} // namespace ombrix
