#pragma once

#include "board/Outputs.h"
#include "trend/TrendData.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QWidget>

#include <cstdint>
#include <optional>

class QSlider;

namespace ombrix {

class ADCBar;
class NumberField;

/// The controls of one analog output and the input of the same number: slider, bars, values and
/// the field for a typed value.
class DACChannel final : public QWidget {
    Q_OBJECT

  public:
    static constexpr int RowSpacing = 2;

    DACChannel(int channel, QWidget* parent);

    /// What the board has taken, and how it took the last demand.
    void ShowOutput(std::int32_t taken_bits, const BoardAnswer& answer, NumberBase base);
    /// Shows what the input has read, beside what the output was told.
    /// @param reading nothing when there is none, for the reason given
    void ShowInput(std::optional<std::int32_t> reading, const QString& reason,
                   std::int32_t output_bits, NumberBase base);
    /// What the unit's record says of the bits, for the readings from now on.
    void TakeScales(const TrendScales& scales);
    /// Another board is shown: what is being typed was not meant for it.
    void ForgetTyped();
    void TakeValues(bool take);

  signals:
    /// The slider has another position, whoever moved it.
    void SliderChanged(int channel, int position);
    /// The operator typed a number and pressed Enter.
    void ValueTyped(int channel, int value);

  private:
    void LayOut();
    QString InUnit(std::int32_t bits) const;

    int m_Channel;
    QSlider* m_Slider;
    ADCBar* m_Bar;
    ValueLabel* m_Output;
    ValueLabel* m_Share;
    ValueLabel* m_Input;
    ValueLabel* m_Measured;
    NumberField* m_Typed;
    TrendUnit m_Unit = TrendUnit::Percent;
    TrendConversion m_Conversion{};
};

} // namespace ombrix
