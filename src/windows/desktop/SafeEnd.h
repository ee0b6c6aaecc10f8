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
struct Station;

/// Ends the desktop program when nobody is there to be asked: at a signal, at the end of the
/// session, after an error that nobody has handled. All of them take the way of the window that
/// is closed: a procedure ends at its next pass, the outputs are switched off.
class SafeEnd final : public QObject {
    Q_OBJECT

  public:
    /// What ends with the program.
    struct Ending {
        /// Tells running procedures that the program ends.
        std::function<void()> EndProgram;
        /// Closes the main window without asking.
        std::function<void()> CloseWindow;
    };

    SafeEnd(Station& station, QtOperator& messages, StopSignals& stopSignals, Ending ending);

    /// Open dialogs are closed as refused.
    void End();
    /// Switches the outputs off at once and tells the operator what has happened; the first
    /// error only, since others may follow from it. @param reason the whole sentence
    void EndAfterError(const std::string& reason);

  private:
    Station& m_Station;
    QtOperator& m_Messages;
    Ending m_Ending;
    QSocketNotifier m_Arrived;
    bool m_AfterError = false;
};

} // namespace ombrix
