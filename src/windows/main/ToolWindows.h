#pragma once

#include "board/Station.h"
#include "windows/testrig/AIBTestRigOptionsWindow.h"
#include "windows/testrig/AIBTestRigWindow.h"
#include "windows/testrig/UARTsWindow.h"
#include "windows/trend/TrendWindow.h"

#include <QObject>

#include <memory>
#include <string>

class QSettings;

namespace ombrix {

class WindowPlace;

/// The windows beside the main window: the test rig and the UART console, which exercise boards,
/// and the trend, which looks on.
class ToolWindows final : public QObject {
    Q_OBJECT

  public:
    /// @param owner the main window @param settings remember where windows stood; may be none
    ToolWindows(Station& station, QWidget& owner, QSettings* settings);
    ~ToolWindows() override;

    void ShowTestRigOptions();
    void ShowUARTs();
    void ShowTrend();
    /// Asks for a file and shows it in the trend window.
    void OpenRecording();
    /// The test rig is open, so that no other window takes input.
    bool RigIsOpen() const;
    /// Those that work with the boards that are there now.
    void CloseAll();
    void CloseTrend();

  signals:
    /// The test rig has been opened or closed.
    void RigShown(bool open);

  private:
    void RigWindowClosed();
    TrendWindow& Trend();

    AIBTestRigWindow m_Rig;
    AIBTestRigOptionsWindow m_RigOptions;
    UARTsWindow m_UARTs;
    Station& m_Station;
    QWidget& m_Owner;
    QSettings* m_Settings;
    std::unique_ptr<TrendWindow> m_Trend;
    std::unique_ptr<WindowPlace> m_TrendPlace;
};

/// Stores the archive of diagnostics in the data folder, tells where it lies and offers to open
/// that folder. @param options the program's options in use @throws DriveError
void SaveDiagnostics(Station& station, const std::string& options);

} // namespace ombrix
