#include "windows/testrig/RigBoardPanel.h"

#include "windows/widgets/ADCBar.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QGridLayout>

#include <utility>

namespace ombrix {

namespace {

enum Row { Serial, Heading, Bars, Inputs, Outputs };

} // namespace

RigBoardPanel::RigBoardPanel(int index, std::shared_ptr<clsAIB> board, QWidget* parent)
    : QWidget(parent), m_Board(std::move(board)) {
    auto* serial =
        new ValueLabel(ElementName("lblAIBSerial", index), tr("Board %1").arg(index + 1), this);
    serial->ShowValue(tr("Board %1: AIB_%2: %3")
                          .arg(index + 1)
                          .arg(m_Board->DevSerialNum())
                          .arg(ToQt(m_Board->BusTypeText())));
    QFont strong = serial->font();
    strong.setBold(true);
    serial->setFont(strong);
    auto* grid = new QGridLayout(this);
    grid->addWidget(serial, Serial, 0, 1, clsAIB::DACChannels + 1);
    grid->addWidget(MakeCaption(tr("A In"), this), Inputs, 0, Qt::AlignRight);
    grid->addWidget(MakeCaption(tr("D Out"), this), Outputs, 0, Qt::AlignRight);
    for (std::int32_t channel = 0; channel < clsAIB::DACChannels; ++channel)
        AddChannel(*grid, index, channel);
    grid->setRowStretch(Bars, 1);
    grid->setColumnStretch(clsAIB::DACChannels + 1, 1);
}

void RigBoardPanel::AddChannel(QGridLayout& grid, int index, std::int32_t channel) {
    const int element = index * clsAIB::DACChannels + channel;
    const QString place = tr("%1 of board %2").arg(channel).arg(index + 1);
    Channel& controls = m_Channels.at(static_cast<std::size_t>(channel));
    controls.Bar = new ADCBar(element, tr("Bars of input and output %1").arg(place), this);
    controls.Input = new ValueLabel(ElementName("lblIP", element), tr("Input %1").arg(place), this);
    controls.Output =
        new ValueLabel(ElementName("lblOP", element), tr("Output %1").arg(place), this);
    for (ValueLabel* value : {controls.Input, controls.Output}) {
        value->setAlignment(Qt::AlignCenter);
        value->ReserveFor(QStringLiteral("000000"));
    }
    const int column = channel + 1;
    grid.addWidget(MakeCaption(QString::number(channel), this), Heading, column, Qt::AlignHCenter);
    grid.addWidget(controls.Bar, Bars, column, Qt::AlignHCenter);
    grid.addWidget(controls.Input, Inputs, column, Qt::AlignHCenter);
    grid.addWidget(controls.Output, Outputs, column, Qt::AlignHCenter);
}

void RigBoardPanel::Refresh() {
    for (std::int32_t channel = 0; channel < clsAIB::DACChannels; ++channel)
        RefreshChannel(channel);
}

void RigBoardPanel::RefreshChannel(std::int32_t channel) {
    const Channel& controls = m_Channels.at(static_cast<std::size_t>(channel));
    const std::int32_t output = m_Board->DAC(channel);
    controls.Output->ShowValue(QString::number(output));
    std::int32_t input = 0;
    const AIBStatus status = m_Board->GetADC(channel, input);
    if (status != Status::NoError) {
        controls.Input->ShowFailure(ToQt(clsAIB::AIBErrorStr(status)));
        controls.Bar->Draw(std::nullopt, output);
        return;
    }
    controls.Input->ShowValue(QString::number(input));
    controls.Bar->Draw(input, output);
}

} // namespace ombrix
