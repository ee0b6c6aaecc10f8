#pragma once

#include "board/Station.h"
#include "windows/calibration/CalibrationHistoryWindow.h"
#include "windows/calibration/UnitsWindow.h"
#include "windows/eprom/EPROMFieldsWindow.h"
#include "windows/healthcheck/ACUHealthCheckWindow.h"
#include "windows/testrig/AIBTestRigOptionsWindow.h"
#include "windows/testrig/AIBTestRigWindow.h"
#include "windows/testrig/UARTsWindow.h"
#include "windows/trend/TrendWindow.h"

#include <QObject>

#include <functional>
#include <memory>
#include <string>

namespace ombrix {

/// The windows beside the main window: the test rig, the UART console and the health check, which
/// exercise boards, the fields of the EPROM, and the trend, the history and the list of units,
/// which look on.
class ToolWindows final : public QObject {
    Q_OBJECT

  public:
    /// @param owner the main window
    ToolWindows(Station& station, const std::function<ReportTools(OpenExcelView&)>& reports,
                QWidget& owner);
    ~ToolWindows() override;

    void ShowTestRigOptions();
    void ShowUARTs();
    void ShowHealthCheck();
    void ShowTrend();
    /// Asks for a file and shows it in the trend window.
    void OpenRecording();
    /// The test rig is open, so that no other window takes input.
    bool RigIsOpen() const;
    /// Those that work with the boards that are there now.
    void CloseAll();
    /// The rest, when the program ends.
    void CloseRest();

    void ShowHistory();
    /// How the units stand; one that is chosen there shows its history.
    void ShowUnits();
    void ShowEPROMFields();
    /// The record of the current board has been read anew, or another board is current.
    void ShowBoard();
    /// Whether the current board does not answer.
    void ShowLost(bool lost);
    /// What was entered for an EPROM and not written; empty for nothing.
    QString UnwrittenText() const;

  signals:
    /// The test rig has been opened or closed.
    void RigShown(bool open);
    /// The EPROM of the current board has been written, or a part of it.
    void EpromWritten();

  private:
    /// The window, made when it is first wanted.
    template <class Window, class... Services>
    Window& Made(std::unique_ptr<Window>& window, Services&... services);
    void RigWindowClosed();
    void ShowHistoryOf(int serial);

    AIBTestRigWindow m_Rig;
    AIBTestRigOptionsWindow m_RigOptions;
    UARTsWindow m_UARTs;
    Station& m_Station;
    std::function<ReportTools(OpenExcelView&)> m_Reports;
    QWidget& m_Owner;
    std::unique_ptr<TrendWindow> m_Trend;
    std::unique_ptr<CalibrationHistoryWindow> m_History;
    std::unique_ptr<UnitsWindow> m_Units;
    std::unique_ptr<EPROMFieldsWindow> m_EPROMFields;
    std::unique_ptr<ACUHealthCheckWindow> m_HealthCheck;
};

} // namespace ombrix
