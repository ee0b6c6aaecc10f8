#include "windows/live/DACChannel.h"

#include "platform/text/Rounding.h"
#include "platform/text/Text.h"
#include "windows/widgets/ADCBar.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/NumberField.h"

#include <QGridLayout>
#include <QSlider>

#include <array>

namespace ombrix {

namespace {

QString ChannelHeading(int channel) {
    // The air channels are 1 and 2 to the operator.
    constexpr int airChannels = 2;
    return channel < airChannels ? DACChannel::tr("DAC %1 (Ch %2)").arg(channel).arg(channel + 1)
                                 : DACChannel::tr("DAC %1").arg(channel);
}

/// What the input of a channel reads.
TrendSubject SubjectOf(int channel) {
    constexpr std::array subjects = {TrendSubject::Channel1, TrendSubject::Channel2,
                                     TrendSubject::Pressure};
    static_assert(ACUWiring::PressureInput == 2);
    const auto index = static_cast<std::size_t>(channel);
    return index < subjects.size() ? subjects.at(index) : TrendSubject::Other;
}

TrendConversion PercentOf() {
    return *TrendScales().Of(TrendSubject::Other, TrendUnit::Percent);
}

QString WithUnit(const TrendConversion& conversion, std::int32_t bits, const char* unit) {
    return ToQt(FixedText(conversion(bits), 1)) + QLatin1Char(' ') + QLatin1String(unit);
}

} // namespace

DACChannel::DACChannel(int channel, QWidget* parent)
    : QWidget(parent), m_Channel(channel),
      m_Slider(MakeDemandSlider(ElementName("sldDACValue", channel), tr("DAC %1").arg(channel),
                                SliderScale::Top, this)),
      m_Bar(new ADCBar(channel, tr("Bars of ADC %1 and DAC %1").arg(channel), this)),
      m_Output(new ValueLabel(ElementName("lblDACValue", channel),
                              tr("Value of DAC %1").arg(channel), this)),
      m_Share(new ValueLabel(ElementName("lblDACShare", channel),
                             tr("DAC %1 of full scale").arg(channel), this)),
      m_Input(new ValueLabel(ElementName("lblADC", channel), tr("Reading of ADC %1").arg(channel),
                             this)),
      m_Measured(new ValueLabel(ElementName("lblADCUnits", channel),
                                tr("Reading of ADC %1 in units").arg(channel), this)),
      m_Typed(new NumberField(ElementName("txtDACVal", channel),
                              tr("New value of DAC %1").arg(channel),
                              ElementName("lblDACNote", channel), this)),
      m_Conversion(PercentOf()) {
    m_Slider->setToolTip(tr("What DAC %1 is told").arg(channel));
    m_Typed->setToolTip(
        tr("A value from 0 to %1 or 0x0 to 0x%2, taken with Enter. Esc gives it up.")
            .arg(SliderScale::LargestDemand)
            .arg(ToQt(HexText(SliderScale::LargestDemand))));
    LayOut();
    connect(m_Slider, &QSlider::valueChanged, this,
            [this](int position) { emit SliderChanged(m_Channel, position); });
    connect(m_Typed, &NumberField::Entered, this,
            [this](double typed) { emit ValueTyped(m_Channel, RoundHalfEven(typed)); });
}

void DACChannel::LayOut() {
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setVerticalSpacing(RowSpacing);
    QLabel* heading = MakeCaption(ChannelHeading(m_Channel), this);
    heading->setAlignment(Qt::AlignCenter);
    constexpr int textWidth = 84;
    m_Typed->setMaximumWidth(textWidth);
    int row = 0;
    layout->addWidget(heading, row++, 0, 1, 2);
    layout->addWidget(m_Slider, row, 0, Qt::AlignRight);
    layout->addWidget(m_Bar, row++, 1, Qt::AlignLeft);
    layout->setRowStretch(1, 1);
    const int widest = fontMetrics().horizontalAdvance(QStringLiteral("-2147483648"));
    for (ValueLabel* value : {m_Output, m_Share, m_Input, m_Measured}) {
        value->setAlignment(Qt::AlignCenter);
        // Whatever a board answers, nothing around it moves.
        value->CutToFit();
        value->setMinimumWidth(widest);
        layout->addWidget(value, row++, 0, 1, 2);
    }
    layout->addWidget(m_Typed, row++, 0, 1, 2, Qt::AlignHCenter);
    layout->addWidget(m_Typed->Note(), row++, 0, 1, 2);
}

void DACChannel::ShowOutput(std::int32_t taken_bits, const BoardAnswer& answer, NumberBase base) {
    m_Slider->setValue(SliderScale::PositionOf(taken_bits));
    m_Typed->ShowTaken(taken_bits);
    if (answer.Taken()) {
        m_Output->ShowValue(NumberText(taken_bits, base));
        m_Share->ShowValue(WithUnit(PercentOf(), taken_bits, "%"));
    } else {
        m_Output->ShowFailure(ToQt(answer.Text()));
        m_Share->ShowFailure(ToQt(answer.Text()));
    }
}

QString DACChannel::InUnit(std::int32_t bits) const {
    return WithUnit(m_Conversion, bits, m_Unit == TrendUnit::Percent ? "%" : NameOf(m_Unit));
}

void DACChannel::ShowInput(std::optional<std::int32_t> reading, const QString& reason,
                           std::int32_t output_bits, NumberBase base) {
    if (reading) {
        m_Input->ShowValue(NumberText(*reading, base));
        m_Measured->ShowValue(InUnit(*reading));
    } else {
        m_Input->ShowFailure(reason);
        m_Measured->ShowFailure(reason);
    }
    m_Bar->Draw(reading, output_bits);
}

void DACChannel::TakeScales(const TrendScales& scales) {
    m_Unit = TrendUnit::Percent;
    for (const TrendUnit unit : {TrendUnit::Flow_ml_m, TrendUnit::Pressure_mBar}) {
        if (scales.Of(SubjectOf(m_Channel), unit))
            m_Unit = unit;
    }
    m_Conversion = *scales.Of(SubjectOf(m_Channel), m_Unit);
}

void DACChannel::ForgetTyped() {
    m_Typed->Reset(2 * m_Slider->value());
}

void DACChannel::TakeValues(bool take) {
    m_Slider->setEnabled(take);
    m_Typed->setEnabled(take);
}

} // namespace ombrix
