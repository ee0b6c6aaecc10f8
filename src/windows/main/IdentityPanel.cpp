#include "windows/main/IdentityPanel.h"

#include "windows/widgets/Controls.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace ombrix {

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
