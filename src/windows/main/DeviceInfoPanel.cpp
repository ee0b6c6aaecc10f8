#include "windows/main/DeviceInfoPanel.h"

#include "platform/text/Text.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QGridLayout>

namespace ombrix {

DeviceInfoPanel::DeviceInfoPanel(QWidget* parent) : QGroupBox(tr("Device Information"), parent) {
    const std::array<QString, 7> captions = {tr("Bus Type:"),   tr("HW Version:"), tr("DEV Type:"),
                                             tr("DEV Serial:"), tr("Vendor:"),     tr("Module:"),
                                             tr("Build Date:")};
    auto* grid = new QGridLayout(this);
    constexpr int rowSpacing = 3;
    grid->setVerticalSpacing(rowSpacing);
    for (std::size_t row = 0; row < captions.size(); ++row) {
        const int gridRow = static_cast<int>(row);
        grid->addWidget(MakeCaption(captions.at(row), this), gridRow, 0);
        auto* info = new ValueLabel(ElementName("lblDeviceInfo", gridRow), captions.at(row), this);
        m_Info.at(row) = info;
        if (row >= m_Info2.size()) { // a text, with no second form beside it
            info->CutToFit();
            grid->addWidget(info, gridRow, 1, 1, 2);
            continue;
        }
        m_Info2.at(row) =
            new ValueLabel(ElementName("lblDeviceInfo2", gridRow), captions.at(row), this);
        grid->addWidget(info, gridRow, 1);
        grid->addWidget(m_Info2.at(row), gridRow, 2);
    }
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 1);
}

void DeviceInfoPanel::ShowBoard(const clsAIB& board) {
    const std::array<QString, 7> info = {
        QString::number(board.BusType()), QString::number(board.HWVersion()),
        QString::number(board.DevType()), QString::number(board.DevSerialNum()),
        ToQt(Trimmed(board.Vendor())),    ToQt(Trimmed(board.Module())),
        ToQt(Trimmed(board.BuildDate())),
    };
    const std::array<QString, 4> info2 = {
        ToQt(board.BusTypeText()), ToQt(HexText(board.HWVersion())), ToQt(HexText(board.DevType())),
        ToQt(HexText(board.DevSerialNum()))};
    for (std::size_t row = 0; row < info.size(); ++row)
        m_Info.at(row)->ShowValue(info.at(row));
    for (std::size_t row = 0; row < info2.size(); ++row)
        m_Info2.at(row)->ShowValue(info2.at(row));
}

} // namespace ombrix
