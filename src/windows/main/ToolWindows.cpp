#include "windows/main/ToolWindows.h"

namespace ombrix {

ToolWindows::ToolWindows(Station& station) : m_Rig(station), m_RigOptions(m_Rig), m_UARTs(station) {
    connect(&m_RigOptions, &frmAIBTestRigOptions::Closed, this, &ToolWindows::RigWindowClosed);
    connect(&m_Rig, &frmAIBTestRig::Closed, this, &ToolWindows::RigWindowClosed);
}

void ToolWindows::ShowTestRigOptions() {
    m_RigOptions.show();
    m_RigOptions.raise();
    m_RigOptions.activateWindow();
    emit RigShown(true);
}

void ToolWindows::ShowUARTs() {
    m_UARTs.Open();
}

bool ToolWindows::RigIsOpen() const {
    return m_RigOptions.isVisible() || m_Rig.isVisible();
}

void ToolWindows::RigWindowClosed() {
    // The choice of a job closes its window when the rig has already opened.
    if (!RigIsOpen())
        emit RigShown(false);
}

void ToolWindows::CloseAll() {
    for (QWidget* window : std::initializer_list<QWidget*>{&m_RigOptions, &m_Rig, &m_UARTs})
        window->close();
}

} // namespace ombrix
