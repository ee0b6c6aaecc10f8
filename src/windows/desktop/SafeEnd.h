#pragma once

#include "platform/os/ProgramStop.h"

#include <QApplication>
#include <QObject>
#include <QSocketNotifier>

#include <exception>
#include <functional>
#include <string>

namespace ombrix {

/// An application in which an exception that no event handler has caught is reported, instead
/// of taking the program down with its outputs driven.
class SafeApplication final : public QApplication {
  public:
    using QApplication::QApplication;

    /// Told what has gone wrong; until it is set, exceptions go their way.
    std::function<void(const std::exception& error)> OnUnexpectedError;

    bool notify(QObject* receiver, QEvent* event) override {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::exception& error) {
            if (!OnUnexpectedError)
                throw;
            OnUnexpectedError(error);
            return true;
        }
    }
};

class QtOperator;
class AIBAccessoriesWindow;
struct Station;

/// Ends the desktop program when nobody is there to be asked: at a signal, at the end of the
/// session, after an error that nobody has handled. All of them take the way of the window that
/// is closed: a procedure ends at its next pass, the outputs are switched off.
class SafeEnd final : public QObject {
    Q_OBJECT

  public:
    /// @param endProgram tells running procedures that the program ends
    SafeEnd(Station& station, AIBAccessoriesWindow& window, QtOperator& messages,
            StopSignals& stopSignals, std::function<void()> endProgram);

    /// Open dialogs are closed as refused.
    void End();
    /// Switches the outputs off at once and tells the operator what has happened; the first
    /// error only, since others may follow from it. @param reason the whole sentence
    void EndAfterError(const std::string& reason);

  private:
    Station& m_Station;
    AIBAccessoriesWindow& m_Window;
    QtOperator& m_Messages;
    std::function<void()> m_EndProgram;
    QSocketNotifier m_Arrived;
    bool m_AfterError = false;
};

} // namespace ombrix
