#pragma once

#include "calibration/run/ACUSetUp.h"
#include "windows/calibration/ACUCalibrationWindow.h"
#include "windows/desktop/OpenExcelWindow.h"

#include <QObject>

#include <functional>
#include <memory>
#include <string>

namespace ombrix {

class BoardPanel;

/// Carries out the commands of the board's panel that prepare the ACU, with the windows that
/// show them at work.
class ACUCommands final : public QObject {
    Q_OBJECT

  public:
    /// @param board the panel whose buttons are served
    ACUCommands(Station& station, BoardPanel& board, SpreadsheetLauncher launcher,
                std::string templates);

    void CalibratePressure(CalibrationKind kind);
    /// Asks what to do with calibrations that an earlier program did not finish.
    void OfferUnfinished();

  private:
    void Initialise(const QString& mfcNumber, bool velocity, bool pressure);
    void ClearPressure();
    void CreateInfoWorkbook();
    void SetIdentity(bool digital, bool analog);
    void Run(const std::function<void(ACUSetUp&)>& command);
    CalibrationServices Services();

    Station& m_Station;
    BoardPanel& m_Board;
    SpreadsheetLauncher m_Launcher;
    std::string m_Templates;
    /// Made on first use.
    std::unique_ptr<frmACUCalibration> m_Stages;
    frmOpenExcel m_Wait;
};

} // namespace ombrix
