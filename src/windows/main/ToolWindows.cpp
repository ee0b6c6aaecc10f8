#include "windows/main/ToolWindows.h"

#include "windows/desktop/KeepAbove.h"

namespace ombrix {

ToolWindows::ToolWindows(Station& station,
                         const std::function<ReportTools(OpenExcelView&)>& reports, QWidget& owner)
    : m_Rig(station), m_RigOptions(m_Rig), m_UARTs(station), m_Station(station), m_Reports(reports),
      m_Owner(owner) {
    for (QWidget* window : std::initializer_list<QWidget*>{&m_RigOptions, &m_Rig, &m_UARTs})
        KeepAbove(*window, owner);
    connect(&m_RigOptions, &AIBTestRigOptionsWindow::Closed, this, &ToolWindows::RigWindowClosed);
    connect(&m_Rig, &AIBTestRigWindow::Closed, this, &ToolWindows::RigWindowClosed);
}

ToolWindows::~ToolWindows() = default;

template <class Window, class... Services>
Window& ToolWindows::Made(std::unique_ptr<Window>& window, Services&... services) {
    if (!window) {
        window = std::make_unique<Window>(m_Station, services...);
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

void ToolWindows::ShowUnits() {
    UnitsWindow& units = Made(m_Units);
    connect(&units, &UnitsWindow::HistoryWanted, this, &ToolWindows::ShowHistoryOf,
            Qt::UniqueConnection);
    units.Open();
}

void ToolWindows::ShowHistoryOf(int serial) {
    Made(m_History).OpenUnit(serial);
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
    if (m_Units)
        m_Units->close();
    if (m_EPROMFields)
        m_EPROMFields->GiveUp();
    if (m_HealthCheck)
        m_HealthCheck->close();
}

void ToolWindows::ShowHealthCheck() {
    BringUp(Made(m_HealthCheck, m_Reports));
}

void ToolWindows::ShowTestRigOptions() {
    BringUp(m_RigOptions);
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
