#include "windows/main/ToolWindows.h"

#include "platform/ports/Folders.h"
#include "reports/Diagnostics.h"
#include "windows/desktop/KeepAbove.h"

#include <QtGlobal>

namespace ombrix {

ToolWindows::ToolWindows(Station& station, QWidget& owner, QSettings* settings)
    : m_Rig(station), m_RigOptions(m_Rig), m_UARTs(station), m_Station(station), m_Owner(owner),
      m_Settings(settings) {
    for (QWidget* window : std::initializer_list<QWidget*>{&m_RigOptions, &m_Rig, &m_UARTs})
        KeepAbove(*window, owner);
    connect(&m_RigOptions, &AIBTestRigOptionsWindow::Closed, this, &ToolWindows::RigWindowClosed);
    connect(&m_Rig, &AIBTestRigWindow::Closed, this, &ToolWindows::RigWindowClosed);
}

ToolWindows::~ToolWindows() = default;

template <class Window>
Window& ToolWindows::Made(Placed<Window>& window) {
    if (!window.It) {
        window.It = std::make_unique<Window>(m_Station);
        KeepAbove(*window.It, m_Owner);
        if (m_Settings != nullptr)
            window.Place = std::make_unique<WindowPlace>(*window.It, *m_Settings);
    }
    return *window.It;
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
    if (m_EPROMFields.It)
        m_EPROMFields.It->ShowBoard();
}

void ToolWindows::ShowLost(bool lost) {
    if (m_EPROMFields.It)
        m_EPROMFields.It->ShowLost(lost);
}

QString ToolWindows::UnwrittenText() const {
    return m_EPROMFields.It ? m_EPROMFields.It->UnwrittenText() : QString();
}

void ToolWindows::CloseRest() {
    if (m_Trend.It)
        m_Trend.It->close();
    if (m_History.It)
        m_History.It->close();
    if (m_EPROMFields.It)
        m_EPROMFields.It->GiveUp();
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
