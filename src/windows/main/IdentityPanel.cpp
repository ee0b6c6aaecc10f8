#include "windows/main/IdentityPanel.h"

#include "platform/text/Text.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QGridLayout>
#include <QPushButton>
#include <QVBoxLayout>

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

void DeviceInfoPanel::ShowBoard(const AIB& board) {
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

namespace {

struct MFCConfiguration {
    const char* Caption;
    bool Digital;
    bool Analog;
};
constexpr std::array<MFCConfiguration, 3> Configurations = {{
    {"Update: Analog Only", false, true},
    {"Update: Digital && Analog", true, true},
    {"Update: Digital Only", true, false},
}};

} // namespace

IdentityPanel::IdentityPanel(QWidget* parent) : QGroupBox(tr("Board Identity"), parent) {
    auto* layout = new QVBoxLayout(this);
    for (std::size_t index = 0; index < Configurations.size(); ++index) {
        const MFCConfiguration& mfcs = Configurations.at(index);
        auto* button = MakeButton(ElementName("cmdSetSerial", static_cast<int>(index)),
                                  tr(mfcs.Caption), this);
        button->setToolTip(tr("Writes serial number and MFC configuration to the board."));
        connect(button, &QPushButton::clicked, this,
                [this, &mfcs] { emit IdentityWanted(mfcs.Digital, mfcs.Analog); });
        m_SetSerial.at(index) = button;
        layout->addWidget(button);
    }
}

void IdentityPanel::ShowBoard(bool isUsb) {
    m_SetSerial[0]->setEnabled(isUsb);
    m_SetSerial[1]->setEnabled(isUsb);
}

} // namespace ombrix
