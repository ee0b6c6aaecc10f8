#pragma once

#include "board/Station.h"

#include <QWidget>

class QLayout;

namespace ombrix {

class AirTestPanel;
class CalibrationPanel;
class DACPanel;
class DeviceInfoPanel;
class EPROMPanel;
class GIOPanel;
class IdentityPanel;
class TestsPanel;

/// Everything that shows and drives the current board (`picACU`).
class BoardPanel final : public QWidget {
    Q_OBJECT

  public:
    BoardPanel(Station& station, QWidget* parent);

    DACPanel& Sliders() { return *m_DAC; }
    CalibrationPanel& Calibration() { return *m_Calibration; }
    IdentityPanel& Identity() { return *m_Identity; }
    TestsPanel& Tests() { return *m_Tests; }
    EPROMPanel& EPROM() { return *m_EPROM; }
    AirTestPanel& AirTests() { return *m_AirTests; }
    /// Fills every panel for the current board.
    void ShowBoard();
    /// Reads the ACU's record anew and shows its state.
    void ShowSummary();
    /// The same, and what the EPROM editor shows.
    void ShowEPROM();
    /// Brings outputs and pins of the current board to the state after the start, and shows it.
    void Reset();
    /// Ends the recording and what else the timers of the panels do.
    void StopTimers();
    /// Reads and shows the live values of the current board. False when it has answered nothing.
    bool Refresh();
    /// Shows what the procedure that runs reads.
    void ShowFed();
    /// What was known of the unit is of no use while its board does not answer.
    void ShowLost(bool lost);
    /// While a procedure runs nothing here can be operated: it would disturb the measurement.
    void TakeCommands(bool take);

  signals:
    void HealthCheckWanted();
    void UpdateWanted();
    void EPROMFieldsWanted();
    /// The record has been read: the EPROM may hold something else, or belong to another board.
    void RecordRead();

  private:
    QLayout* MakeIdentityColumn();
    QLayout* MakeLiveColumn();
    QLayout* MakeCommandColumn();

    Station& m_Station;
    DeviceInfoPanel* m_DeviceInfo;
    CalibrationPanel* m_Calibration;
    DACPanel* m_DAC;
    GIOPanel* m_GIO;
    TestsPanel* m_Tests;
    IdentityPanel* m_Identity;
    EPROMPanel* m_EPROM;
    AirTestPanel* m_AirTests;
};

} // namespace ombrix
