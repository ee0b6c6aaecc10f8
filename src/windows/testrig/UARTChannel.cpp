#include "windows/testrig/UARTChannel.h"

#include "board/AIB.h"
#include "windows/widgets/ADCBar.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/ValueLabel.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

namespace ombrix {

namespace {

QSlider* MakeSlider(int channel, QWidget* parent) {
    auto* slider = MakeDemandSlider(ElementName("sldDACValue", channel),
                                    UARTChannel::tr("Demand of channel %1").arg(channel),
                                    clsAIB::DACFullScale, parent);
    constexpr int leastLines = 8; // a handle needs a way to go
    slider->setMinimumHeight(leastLines * parent->fontMetrics().height());
    return slider;
}

ValueLabel* MakeValue(const char* array, int channel, const QString& meaning, QWidget* parent) {
    auto* value = new ValueLabel(ElementName(array, channel), meaning, parent);
    value->setAlignment(Qt::AlignCenter);
    value->ReserveFor(QStringLiteral("000000"));
    return value;
}

} // namespace

UARTChannel::UARTChannel(int channel, QWidget* parent)
    // The air channels are 1 and 2 to the operator.
    : QGroupBox(tr("MFC %1 (Ch %2)").arg(channel).arg(channel + 1), parent), m_Channel(channel),
      m_Demand(MakeSlider(channel, this)),
      m_Bar(new ADCBar(channel, tr("Bars of reading and demand of channel %1").arg(channel), this)),
      m_Sent(MakeValue("lblDACValue", channel, tr("Sent to channel %1").arg(channel), this)),
      m_Read(MakeValue("lblADC", channel, tr("Read from channel %1").arg(channel), this)),
      m_OnTimer(MakeCheckBox(ElementName("chkGet", channel), tr("On Timer"), this)) {
    m_OnTimer->setToolTip(tr("Reads the channel ten times a second."));
    auto* layout = new QHBoxLayout(this);
    layout->addLayout(MakeDemandColumn());
    layout->addLayout(MakeReadingColumn());
    Reset();
}

QLayout* UARTChannel::MakeDemandColumn() {
    auto* set = MakeButton(ElementName("cmdSet", m_Channel), tr("Set"), this);
    auto* wanted =
        MakeValue("lblDemand", m_Channel, tr("Demand to send to channel %1").arg(m_Channel), this);
    wanted->ShowValue(QString::number(0));
    connect(m_Demand, &QSlider::valueChanged, wanted,
            [wanted](int value) { wanted->ShowValue(QString::number(value)); });
    connect(set, &QPushButton::clicked, this,
            [this] { emit SetWanted(m_Channel, m_Demand->value()); });
    auto* column = new QVBoxLayout;
    column->addWidget(MakeCaption(tr("Demand"), this), 0, Qt::AlignHCenter);
    column->addWidget(m_Demand, 1, Qt::AlignHCenter);
    column->addWidget(wanted, 0, Qt::AlignHCenter);
    column->addWidget(set);
    column->addWidget(MakeCaption(tr("Last sent"), this), 0, Qt::AlignHCenter);
    column->addWidget(m_Sent, 0, Qt::AlignHCenter);
    return column;
}

QLayout* UARTChannel::MakeReadingColumn() {
    auto* get = MakeButton(ElementName("cmdGet", m_Channel), tr("Get"), this);
    connect(get, &QPushButton::clicked, this, [this] { emit GetWanted(m_Channel); });
    auto* column = new QVBoxLayout;
    column->addWidget(MakeCaption(tr("Reading"), this), 0, Qt::AlignHCenter);
    column->addWidget(m_Bar, 1, Qt::AlignHCenter);
    column->addWidget(m_OnTimer);
    column->addWidget(get);
    column->addWidget(MakeCaption(tr("Last read"), this), 0, Qt::AlignHCenter);
    column->addWidget(m_Read, 0, Qt::AlignHCenter);
    return column;
}

void UARTChannel::ShowSent(std::int32_t value) {
    m_Sent_bits = value;
    m_Sent->ShowValue(QString::number(value));
    m_Bar->Draw(m_Read_bits, m_Sent_bits);
}

void UARTChannel::ShowRead(std::int32_t value) {
    m_Read_bits = value;
    m_Read->ShowValue(QString::number(value));
    m_Bar->Draw(m_Read_bits, m_Sent_bits);
}

bool UARTChannel::OnTimer() const {
    return m_OnTimer->isChecked();
}

void UARTChannel::Reset() {
    m_OnTimer->setChecked(false);
    m_Demand->setValue(0);
    m_Sent_bits = 0;
    m_Read_bits.reset();
    m_Sent->ShowValue(QStringLiteral("-"));
    m_Read->ShowValue(QStringLiteral("-"));
    m_Bar->Draw(m_Read_bits, m_Sent_bits);
}

} // namespace ombrix
