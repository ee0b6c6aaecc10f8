#pragma once

#include "board/Station.h"
#include "windows/testrig/AIBTestRigOptionsWindow.h"
#include "windows/testrig/AIBTestRigWindow.h"
#include "windows/testrig/UARTsWindow.h"

#include <QObject>

#include <string>

namespace ombrix {

/// The windows that exercise boards beside the main window: the test rig and the UART console.
class ToolWindows final : public QObject {
    Q_OBJECT

  public:
    ToolWindows(Station& station, QWidget& owner);

    void ShowTestRigOptions();
    void ShowUARTs();
    /// The test rig is open, so that no other window takes input.
    bool RigIsOpen() const;
    void CloseAll();

  signals:
    /// The test rig has been opened or closed.
    void RigShown(bool open);

  private:
    void RigWindowClosed();

    AIBTestRigWindow m_Rig;
    AIBTestRigOptionsWindow m_RigOptions;
    UARTsWindow m_UARTs;
};

/// Stores the archive of diagnostics in the data folder, tells where it lies and offers to open
/// that folder. @param options the program's options in use @throws DriveError
void SaveDiagnostics(Station& station, const std::string& options);

} // namespace ombrix
