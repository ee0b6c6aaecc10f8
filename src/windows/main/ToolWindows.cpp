#include "windows/main/ToolWindows.h"

#include "platform/ports/Folders.h"
#include "reports/Diagnostics.h"
#include "windows/desktop/KeepAbove.h"

#include <QtGlobal>

namespace ombrix {

ToolWindows::ToolWindows(Station& station, QWidget& owner)
    : m_Rig(station), m_RigOptions(m_Rig), m_UARTs(station), m_Station(station), m_Owner(owner) {
    for (QWidget* window : std::initializer_list<QWidget*>{&m_RigOptions, &m_Rig, &m_UARTs})
        KeepAbove(*window, owner);
    connect(&m_RigOptions, &AIBTestRigOptionsWindow::Closed, this, &ToolWindows::RigWindowClosed);
    connect(&m_Rig, &AIBTestRigWindow::Closed, this, &ToolWindows::RigWindowClosed);
}

ToolWindows::~ToolWindows() = default;

template <class Window>
Window& ToolWindows::Made(std::unique_ptr<Window>& window) {
    if (!window) {
        window = std::make_unique<Window>(m_Station);
        KeepAbove(*window, m_Owner);
    }
    return *window;
}

void ToolWindows::ShowTrend() {
    Made(m_Trend).Open();
}

void ToolWindows::OpenRecording() {
    Made(m_Trend).OpenRecording();
}

void ToolWindows::ShowHistory() {
    Made(m_History).Open();
}

void ToolWindows::ShowEPROMFields() {
    EPROMFieldsWindow& fields = Made(m_EPROMFields);
    connect(&fields, &EPROMFieldsWindow::Written, this, &ToolWindows::EpromWritten,
            Qt::UniqueConnection);
    fields.Open();
}

void ToolWindows::ShowBoard() {
    if (m_EPROMFields)
        m_EPROMFields->ShowBoard();
}

void ToolWindows::ShowLost(bool lost) {
    if (m_EPROMFields)
        m_EPROMFields->ShowLost(lost);
}

QString ToolWindows::UnwrittenText() const {
    return m_EPROMFields ? m_EPROMFields->UnwrittenText() : QString();
}

void ToolWindows::CloseRest() {
    if (m_Trend)
        m_Trend->close();
    if (m_History)
        m_History->close();
    if (m_EPROMFields)
        m_EPROMFields->GiveUp();
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

void SaveDiagnostics(Station& station, const std::string& options) {
    Platform& world = station.World;
    const std::string archive =
        MakeDiagnostics(station, {options, {std::string("Qt ") + qVersion()}});
    const std::string path = StoreUnderFreeName(world.Files, DiagnosticsPath(world), archive);
    const Answer answer = world.Messages.Ask({"The diagnostics have been saved:\r\n\r\n   " +
                                                  world.Files.RealPath(path).string() +
                                                  "\r\n\r\nDo you want to open the folder?",
                                              MessageIcon::Question, MessageButtons::YesNo});
    if (answer == Answer::Yes)
        ShellOpenFile(world.Files, world.Documents, GetFolderOfPath(path));
}

} // namespace ombrix
