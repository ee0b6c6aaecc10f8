#include "windows/main/BenchTestCommands.h"

#include "benchtests/AirFlowTest.h"
#include "benchtests/DigitalMFCTest.h"
#include "benchtests/SpeedTest.h"
#include "windows/live/DACPanel.h"
#include "windows/main/BoardPanel.h"
#include "windows/main/InfoPanel.h"
#include "windows/main/TestPanels.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"

#include <fmt/format.h>

namespace ombrix {

BenchTestCommands::BenchTestCommands(Station& station, BoardPanel& board, InfoPanel& info)
    : m_Station(station), m_Board(board), m_Info(info) {
    connect(&board.Tests(), &TestsPanel::DigitalMFCTestWanted, this,
            &BenchTestCommands::TestDigitalMFCs);
    connect(&board.Sliders(), &DACPanel::SpeedTestWanted, this, &BenchTestCommands::TestSpeed);
    connect(&board.AirTests(), &AirTestPanel::SweepWanted, this, &BenchTestCommands::SweepOutputs);
    connect(&info, &InfoPanel::AirFlowTestWanted, this, &BenchTestCommands::TestAirFlow);
    connect(&board.Tests(), &TestsPanel::CancelWanted, this, &BenchTestCommands::Cancel);
    connect(&board.AirTests(), &AirTestPanel::CancelWanted, this, &BenchTestCommands::Cancel);
    connect(&info, &InfoPanel::CancelWanted, this, &BenchTestCommands::Cancel);
}

void BenchTestCommands::Run(const std::function<void()>& test,
                            const std::function<void(bool running)>& showRunning) {
    if (m_Station.Procedures.Running())
        return;
    m_Running = true;
    showRunning(true);
    Guarded(m_Station.World.Messages, test);
    m_Running = false;
    showRunning(false);
}

bool BenchTestCommands::MayDrive(const QString& command) {
    if (m_Station.Procedures.Running())
        return false;
    const ACU unit = m_Station.Calibration().Unit();
    const std::string text = fmt::format("{} drives the air of {}.\r\n\r\nIs its air supply ready, "
                                         "and may the air flow?",
                                         command.toStdString(), unit.SerialNumberStr());
    return m_Station.World.Messages.Ask({text, MessageIcon::Question, MessageButtons::OkCancel}) ==
           Answer::Ok;
}

BenchTestView BenchTestCommands::Telling(const BenchTestView& view) {
    ProcedureGate& gate = m_Station.Procedures;
    const auto tellStep = [&gate](const std::string& text) {
        gate.Tell({text, gate.Progress().Share, std::nullopt});
    };
    return {.Caption =
                [=](const std::string& text) {
                    tellStep(text);
                    view.Caption(text);
                },
            .Stage =
                [=](const std::string& text) {
                    tellStep(text);
                    view.Stage(text);
                },
            .Progress =
                [&gate, view](double share) {
                    gate.Tell({gate.Progress().Step, share, std::nullopt});
                    view.Progress(share);
                }};
}

void BenchTestCommands::Cancel() {
    if (m_Running)
        m_Station.Procedures.Cancel();
}

void BenchTestCommands::TestDigitalMFCs() {
    TestsPanel& panel = m_Board.Tests();
    DigitalMFCTest test(m_Station);
    const BenchTestView view =
        Telling({.Caption = [&panel](const std::string& text) { panel.ShowCaption(ToQt(text)); },
                 .Stage = [&panel](const std::string& text) { panel.ShowStage(ToQt(text)); }});
    Run([&] { test.Run(view); },
        [&](bool running) {
            panel.ShowRunning(running);
            m_Board.Sliders().HoldRecording(running);
        });
}

void BenchTestCommands::TestSpeed() {
    TestsPanel& panel = m_Board.Tests();
    DACPanel& sliders = m_Board.Sliders();
    if (!MayDrive(tr("\"Speed\"")))
        return;
    SpeedTest test(m_Station, [&sliders] { sliders.ShowDigitalSetup(); });
    const BenchTestView view =
        Telling({.Stage = [&panel](const std::string& text) { panel.ShowStage(ToQt(text)); }});
    Run([&] { test.Run(view); }, [&panel](bool running) { panel.ShowRunning(running); });
}

void BenchTestCommands::SweepOutputs(AirTestPanel::Command command) {
    AirTestPanel& panel = m_Board.AirTests();
    const bool all = command == AirTestPanel::Command::All;
    if (!MayDrive(all ? tr("\"Run Air Test All\"") : tr("\"Run Air Test Hi\"")))
        return;
    const SweepPlan plan = all ? panel.SteppedSweep() : SweepPlan::UpperHalf();
    OutputSweep test(m_Station);
    const BenchTestView view = Telling({.Caption = [&panel, command](const std::string& text) {
        panel.ShowCaption(command, ToQt(text));
    }});
    Run([&] { test.Run(plan, view); },
        [&panel, command](bool running) { panel.ShowRunning(command, running); });
}

void BenchTestCommands::TestAirFlow() {
    if (!MayDrive(tr("\"Test Air Flow\"")))
        return;
    AirFlowTest test(m_Station);
    const BenchTestView view = Telling(
        {.Caption = [this](const std::string& text) { m_Info.ShowAirFlowCaption(ToQt(text)); }});
    Run([&] { test.TestAirFlow(view); }, [this](bool running) { m_Info.ShowAirFlowTest(running); });
}

} // namespace ombrix
