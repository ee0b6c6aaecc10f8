#pragma once

#include "platform/os/StopSignals.h"

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <string>

namespace ombrix {

class QtOperator;
class frmAIBAccessories;
struct Station;

/// Ends the desktop program when nobody is there to be asked: at a signal, at the end of the
/// session, after an error that nobody has handled. All of them take the way of the window that
/// is closed: a procedure ends at its next pass, the outputs are switched off.
class SafeEnd final : public QObject {
    Q_OBJECT

  public:
    /// @param endProgram tells running procedures that the program ends
    SafeEnd(Station& station, frmAIBAccessories& window, QtOperator& messages,
            StopSignals& stopSignals, std::function<void()> endProgram);

    /// Open dialogs are closed as refused.
    void End();
    /// Switches the outputs off at once and tells the operator what has happened; the first
    /// error only, since others may follow from it. @param reason the whole sentence
    void EndAfterError(const std::string& reason);

  private:
    Station& m_Station;
    frmAIBAccessories& m_Window;
    QtOperator& m_Messages;
    std::function<void()> m_EndProgram;
    QSocketNotifier m_Arrived;
    bool m_AfterError = false;
};

} // namespace ombrix
