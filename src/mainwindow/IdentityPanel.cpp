#include "mainwindow/IdentityPanel.h"

#include "support/Controls.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace ombrix {

IdentityPanel::IdentityPanel(QWidget* parent) : QGroupBox(tr("Board Identity"), parent) {
    const std::array<QString, 3> captions = {
        tr("Update: Analog Only"), tr("Update: Digital && Analog"), tr("Update: Digital Only")};
    auto* layout = new QVBoxLayout(this);
    for (std::size_t index = 0; index < captions.size(); ++index) {
        m_SetSerial.at(index) = MakeButton(ElementName("cmdSetSerial", static_cast<int>(index)),
                                           captions.at(index), this);
        layout->addWidget(m_SetSerial.at(index));
    }
    ComesLater(this, tr("writes serial number and MFC configuration to the board."));
}

void IdentityPanel::ShowBoard(bool isUsb) {
    m_SetSerial[0]->setEnabled(isUsb);
    m_SetSerial[1]->setEnabled(isUsb);
}

} // namespace ombrix
