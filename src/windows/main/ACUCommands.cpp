#include "windows/main/ACUCommands.h"

#include "journal/UnfinishedRuns.h"
#include "windows/calibration/PressureSensorWindow.h"
#include "windows/desktop/KeepAbove.h"
#include "windows/main/BoardPanel.h"
#include "windows/main/CalibrationPanel.h"
#include "windows/main/IdentityPanel.h"
#include "windows/widgets/Guarded.h"

namespace ombrix {

ACUCommands::ACUCommands(Station& station, BoardPanel& board,
                         const std::function<ReportTools(OpenExcelView&)>& tools, QWidget& owner)
    : m_Station(station), m_Board(board), m_Owner(owner), m_Wait(nullptr),
      m_Reports(tools(m_Wait)) {
    KeepAbove(m_Wait, owner);
    CalibrationPanel& panel = board.Calibration();
    connect(&panel, &CalibrationPanel::InitialisationWanted, this, &ACUCommands::Initialise);
    connect(&panel, &CalibrationPanel::ClearPressureWanted, this, &ACUCommands::ClearPressure);
    connect(&panel, &CalibrationPanel::InfoWorkbookWanted, this, &ACUCommands::CreateInfoWorkbook);
    connect(&board.Identity(), &IdentityPanel::IdentityWanted, this, &ACUCommands::SetIdentity);
}

CalibrationView& ACUCommands::Stages() {
    if (!m_Stages) {
        m_Stages = std::make_unique<ACUCalibrationWindow>(m_Station);
        KeepAbove(*m_Stages, m_Owner);
        MarkAsProcedureWindow(*m_Stages);
    }
    return *m_Stages;
}

void ACUCommands::Run(const std::function<void(ACUSetUp&)>& command) {
    if (m_Station.Procedures.Running())
        return;
    Platform& world = m_Station.World;
    ACUSetUp setUp(m_Reports, Stages());
    Guarded(world.Messages, [&] { command(setUp); });
    // A command that was ended by an error may have left its windows.
    m_Stages->Close();
    m_Wait.Close();
    if (!world.Events.ProgramEnding())
        Guarded(world.Messages, [this] { m_Board.ShowSummary(); });
}

void ACUCommands::Initialise(const QString& mfcNumber, bool velocity, bool pressure) {
    Run([&](ACUSetUp& setUp) {
        std::string number = mfcNumber.toStdString();
        setUp.RunACUInitialisation(number, velocity, pressure);
    });
}

void ACUCommands::CalibrateVelocity(CalibrationKind kind) {
    Run([kind](ACUSetUp& setUp) { setUp.RunVelocity(kind); });
}

void ACUCommands::CalibratePressure(CalibrationKind kind) {
    Run([kind](ACUSetUp& setUp) { setUp.RunPressure(kind); });
}

void ACUCommands::DeclarePressureSensor() {
    PressureSensorWindow form(m_Station.Calibration().Record().PressureSensor(), &m_Board);
    if (form.exec() == QDialog::Accepted)
        Run([&form](ACUSetUp& setUp) { setUp.DeclarePressureSensor(form.FullScale_mBar()); });
}

void ACUCommands::OfferUnfinished(
    const std::function<JournalReaders(const ReportTools&)>& readers) {
    if (m_Station.Procedures.Running())
        return;
    Guarded(m_Station.World.Messages, [&] {
        const RunningProcedure offering(m_Station.Procedures, "unfinished runs");
        OfferUnfinishedRuns(m_Station.World, readers(m_Reports));
    });
    m_Wait.Close();
}

void ACUCommands::ClearPressure() {
    CalibrationPanel& panel = m_Board.Calibration();
    Run([&panel](ACUSetUp& setUp) {
        setUp.ClearPressure([&panel](std::int32_t address) { panel.ShowClearProgress(address); });
    });
    panel.HideClearProgress();
}

void ACUCommands::CreateInfoWorkbook() {
    Run([this](ACUSetUp& setUp) {
        m_Board.ShowSummary(); // the workbook tells what the EPROM holds now
        setUp.CreateACUInfoDoc();
    });
}

void ACUCommands::SetIdentity(bool digital, bool analog) {
    Run([this, digital, analog](ACUSetUp& setUp) {
        std::int32_t serial = 0;
        if (setUp.SetAIBSerialNumber(serial, digital, analog))
            m_Station.World.Messages.Ask(
                {"The AIB has been programmed - restart application to check.",
                 MessageIcon::Information, MessageButtons::Ok});
    });
}

} // namespace ombrix
