#pragma once

#include "board/AIB.h"
#include "windows/widgets/NumberBase.h"
#include "windows/widgets/ValueLabel.h"

#include <QWidget>

#include <cstdint>

class QLineEdit;
class QSlider;

namespace ombrix {

class ADCBar;

/// The controls of one analog output and the input of the same number: slider, bars, values and
/// the field for a typed value.
class DACChannel final : public QWidget {
    Q_OBJECT

  public:
    DACChannel(int channel, QWidget* parent);

    /// What the board was told, or the status with which it refused.
    void ShowOutput(std::int32_t value, AIBStatus status, NumberBase base);
    /// Reads the input and shows it.
    void ShowInput(clsAIB& board, NumberBase base);
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

} // namespace ombrix
