#include "windows/main/DACChannel.h"

#include "board/DACSliders.h"
#include "platform/text/Text.h"
#include "windows/widgets/ADCBar.h"
#include "windows/widgets/Controls.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QSlider>

namespace ombrix {

namespace {

QString ChannelHeading(int channel) {
    // The air channels are 1 and 2 to the operator.
    constexpr int airChannels = 2;
    return channel < airChannels ? DACChannel::tr("DAC %1 (Ch %2)").arg(channel).arg(channel + 1)
                                 : DACChannel::tr("DAC %1").arg(channel);
}

} // namespace

DACChannel::DACChannel(int channel, QWidget* parent)
    : QWidget(parent), m_Channel(channel),
      m_Slider(MakeDemandSlider(ElementName("sldDACValue", channel), tr("DAC %1").arg(channel),
                                DACSliders::Max, this)),
      m_Bar(new ADCBar(channel, tr("Bars of ADC %1 and DAC %1").arg(channel), this)),
      m_Output(new ValueLabel(ElementName("lblDACValue", channel),
                              tr("Value of DAC %1").arg(channel), this)),
      m_Input(new ValueLabel(ElementName("lblADC", channel), tr("Reading of ADC %1").arg(channel),
                             this)),
      m_Text(Named(new QLineEdit(this), ElementName("txtDACVal", channel),
                   tr("New value of DAC %1").arg(channel))) {
    m_Text->setToolTip(tr("A value from 0 to %1, taken with Enter").arg(DACSliders::LargestDAC));
    LayOut();
    connect(m_Slider, &QSlider::valueChanged, this,
            [this](int position) { emit SliderChanged(m_Channel, position); });
    connect(m_Text, &QLineEdit::returnPressed, this, &DACChannel::TakeText);
}

void DACChannel::LayOut() {
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    QLabel* heading = MakeCaption(ChannelHeading(m_Channel), this);
    for (QLabel* label : {heading, static_cast<QLabel*>(m_Output), static_cast<QLabel*>(m_Input)})
        label->setAlignment(Qt::AlignCenter);
    m_Text->setAlignment(Qt::AlignCenter);
    constexpr int textWidth = 84;
    m_Text->setMaximumWidth(textWidth);
    int row = 0;
    layout->addWidget(heading, row++, 0, 1, 2);
    layout->addWidget(m_Slider, row, 0, Qt::AlignRight);
    layout->addWidget(m_Bar, row++, 1, Qt::AlignLeft);
    layout->setRowStretch(1, 1);
    layout->addWidget(m_Output, row++, 0, 1, 2);
    layout->addWidget(m_Input, row++, 0, 1, 2);
    layout->addWidget(m_Text, row++, 0, 1, 2, Qt::AlignHCenter);
}

void DACChannel::ShowOutput(std::int32_t value, AIBStatus status, NumberBase base) {
    m_Slider->setValue(DACSliders::PositionOf(value));
    m_Text->setText(QString::number(value));
    if (status == Status::NoError)
        m_Output->ShowValue(NumberText(value, base));
    else
        m_Output->ShowFailure(ToQt(clsAIB::AIBErrorStr(status)));
}

void DACChannel::ShowInput(clsAIB& board, NumberBase base) {
    std::int32_t reading = 0;
    const AIBStatus status = board.GetADC(m_Channel, reading);
    if (status != Status::NoError) {
        m_Input->ShowFailure(ToQt(clsAIB::AIBErrorStr(status)));
        m_Bar->Draw(std::nullopt, board.DAC(m_Channel));
        return;
    }
    m_Input->ShowValue(NumberText(reading, base));
    m_Bar->Draw(reading, board.DAC(m_Channel));
}

void DACChannel::TakeValues(bool ready) {
    m_Slider->setEnabled(ready);
    m_Text->setEnabled(ready);
}

void DACChannel::TakeText() {
    if (const auto number = ParseNumber(m_Text->text().toStdString()))
        emit ValueTyped(m_Channel, RoundHalfEven(*number));
}

} // namespace ombrix
