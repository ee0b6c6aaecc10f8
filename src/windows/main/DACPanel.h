#pragma once

#include "board/Station.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QGroupBox>
#include <QWidget>

#include <array>
#include <cstdint>

class QLineEdit;
class QPushButton;
class QSlider;
class QCheckBox;
class QRadioButton;

namespace ombrix {

class ADCBar;

/// The controls of one analog output and the input of the same number: slider, bars, values and
/// the field for a typed value.
class DACChannel final : public QWidget {
    Q_OBJECT

  public:
    DACChannel(int channel, QWidget* parent);

    /// What the board has taken, and how it took the last demand.
    void ShowOutput(std::int32_t taken_bits, const BoardAnswer& answer, NumberBase base);
    /// Shows what the input has read, beside what the output was told.
    /// @param reading nothing when there is none, for the reason given
    void ShowInput(std::optional<std::int32_t> reading, const QString& reason,
                   std::int32_t output_bits, NumberBase base);
    /// Air channels take values only while the MFCs are ready.
    void TakeValues(bool ready);

  signals:
    /// The slider has another position, whoever moved it.
    void SliderChanged(int channel, int position);
    /// The operator typed a number and pressed Enter.
    void ValueTyped(int channel, int value);

  private:
    void LayOut();
    void TakeText();

    int m_Channel;
    QSlider* m_Slider;
    ADCBar* m_Bar;
    ValueLabel* m_Output;
    ValueLabel* m_Input;
    QLineEdit* m_Text;
};

class PressurePanel;
class RecordingBox;

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
    void StopRecording();
    /// Makes no lines meanwhile.
    void HoldRecording(bool hold);
    /// Shows whether the current board's MFCs are driven digitally.
    void ShowDigitalSetup();
    /// Reads and shows what the current board measures. False when it has answered nothing.
    bool Refresh();
    /// Shows what the procedure that runs has read in the last second, and that alone.
    void ShowFed();
    /// While a procedure runs nothing here can be operated, but the values stay live.
    void TakeCommands(bool take);

  signals:
    void SpeedTestWanted();

  private:
    void ShowChange(const OutputChange& change);
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
    RecordingBox* m_Record = nullptr;
    QCheckBox* m_IsDigitalSetup;
    QRadioButton* m_Hexadecimal = nullptr;
    ValueLabel* m_MFCsReady;
    ValueLabel* m_Recorded = nullptr;
    QPushButton* m_Speed = nullptr;
    PressurePanel* m_Pressure;
    /// A slider that moves because its value was set does not send it again.
    bool m_SettingDAC = false;
    Subscription m_Changes;
    Subscription m_Notes;
};

} // namespace ombrix
