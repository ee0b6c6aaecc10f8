#pragma once

#include "calibration/run/ACUSetUp.h"
#include "journal/UnfinishedRuns.h"
#include "windows/calibration/ACUCalibrationWindow.h"
#include "windows/desktop/OpenExcelWindow.h"

#include <QObject>

#include <functional>
#include <memory>

namespace ombrix {

class BoardPanel;

/// Carries out the commands of the board's panel that prepare the ACU, with the windows that
/// show them at work.
class ACUCommands final : public QObject {
    Q_OBJECT

  public:
    /// @param board the panel whose buttons are served
    /// @param tools has report files made, with the wait window of these commands
    /// @param owner of the windows that the commands open
    ACUCommands(Station& station, BoardPanel& board,
                const std::function<ReportTools(OpenExcelView&)>& tools, QWidget& owner);

    void CalibrateVelocity(CalibrationKind kind);
    void CalibratePressure(CalibrationKind kind);
    /// Asks which pressure sensor the unit has, and declares it.
    void DeclarePressureSensor();
    /// Asks what to do with runs that an earlier program did not finish.
    void OfferUnfinished(const std::function<JournalReaders(const ReportTools&)>& readers);

  private:
    void Initialise(const QString& mfcNumber, bool velocity, bool pressure);
    void ClearPressure();
    void CreateInfoWorkbook();
    void SetIdentity(bool digital, bool analog);
    void Run(const std::function<void(ACUSetUp&)>& command);
    CalibrationView& Stages();

    Station& m_Station;
    BoardPanel& m_Board;
    QWidget& m_Owner;
    /// Made on first use.
    std::unique_ptr<ACUCalibrationWindow> m_Stages;
    OpenExcelWindow m_Wait;
    ReportTools m_Reports;
};

} // namespace ombrix
