#pragma once

#include "board/Station.h"
#include "windows/live/DACChannel.h"

#include <QGroupBox>
#include <QWidget>

#include <array>
#include <cstdint>

class QPushButton;
class QCheckBox;
class QRadioButton;

namespace ombrix {

class PressurePanel;
class RecordingPanel;

/// Frame "DAC Sliders": the analog outputs and inputs of the current board and the readiness of
/// its MFCs. It shows what the outputs are told, whoever tells them.
class DACPanel final : public QGroupBox {
    Q_OBJECT

  public:
    DACPanel(Station& station, QWidget* parent);

    /// Sends a value to the board, held to what the panel may send, and shows it.
    void SetDAC(std::int32_t channel, std::int32_t value);
    /// Puts every slider to 0.
    void Zero();
    /// Shows what the current board was last told.
    void ShowBoard();
    /// What the unit's record says of the bits.
    void TakeScales(const TrendScales& scales);
    void StopRecording();
    /// Makes no lines meanwhile.
    void HoldRecording(bool hold);
    /// Shows whether the current board's MFCs are driven digitally.
    void ShowDigitalSetup();
    /// Reads and shows what the current board measures. False when it has answered nothing.
    bool Refresh();
    /// Shows what the procedure that runs has read in the last second, and that alone.
    void ShowFed();
    /// While a procedure runs, and on a board that is read only, nothing here can be operated, but
    /// the values stay live.
    void TakeCommands(bool take);

  signals:
    void SpeedTestWanted();

  private:
    void ShowChange(const OutputChange& change);
    void ShowOutputs();
    void SetDigitalSetup(bool digital);
    QWidget* MakeCaptionColumn();
    QWidget* MakeSideColumn();
    QWidget* MakeBaseChoice();
    void ShowReadiness(bool ready);
    NumberBase Base() const;
    AIB& Board() const { return *m_Station.CurrentAIB; }

    /// What a procedure has read last.
    struct Fed {
        std::optional<std::int32_t> Value_bits;
        double Time_s = -1.0;
    };
    void Note(const BoardNote& note);
    std::optional<std::int32_t> Recent(const Fed& fed) const;

    Station& m_Station;
    std::array<DACChannel*, AIB::DACChannels> m_Channels{};
    std::array<Fed, AIB::DACChannels> m_FedInputs{};
    Fed m_FedPressure;
    RecordingPanel* m_Record = nullptr;
    QCheckBox* m_IsDigitalSetup;
    QRadioButton* m_Hexadecimal = nullptr;
    ValueLabel* m_MFCsReady;
    QPushButton* m_Speed = nullptr;
    PressurePanel* m_Pressure;
    /// A slider that moves because its value was set does not send it again.
    bool m_SettingDAC = false;
    bool m_TakesCommands = true;
    Subscription m_Changes;
    Subscription m_Notes;
};

} // namespace ombrix
