#include "windows/main/BenchTestCommands.h"

#include "benchtests/AirFlowTest.h"
#include "benchtests/DigitalMFCTest.h"
#include "benchtests/SpeedTest.h"
#include "windows/main/BoardPanel.h"
#include "windows/main/DACPanel.h"
#include "windows/main/InfoPanel.h"
#include "windows/main/TestPanels.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"

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

void BenchTestCommands::Cancel() {
    if (m_Running)
        m_Station.Procedures.Cancel();
}

void BenchTestCommands::TestDigitalMFCs() {
    TestsPanel& panel = m_Board.Tests();
    DigitalMFCTest test(m_Station);
    const BenchTestView view{
        .Caption = [&panel](const std::string& text) { panel.ShowCaption(ToQt(text)); },
        .Stage = [&panel](const std::string& text) { panel.ShowStage(ToQt(text)); }};
    Run([&] { test.Run(view); },
        [&](bool running) {
            panel.ShowRunning(running);
            m_Board.Sliders().HoldRecording(running);
        });
}

void BenchTestCommands::TestSpeed() {
    TestsPanel& panel = m_Board.Tests();
    DACPanel& sliders = m_Board.Sliders();
    SpeedTest test(m_Station, [&sliders] { sliders.ShowDigitalSetup(); });
    const BenchTestView view{
        .Stage = [&panel](const std::string& text) { panel.ShowStage(ToQt(text)); }};
    Run([&] { test.Run(view); }, [&panel](bool running) { panel.ShowRunning(running); });
}

void BenchTestCommands::SweepOutputs(AirTestPanel::Command command) {
    AirTestPanel& panel = m_Board.AirTests();
    const bool all = command == AirTestPanel::Command::All;
    const SweepPlan plan = all ? panel.SteppedSweep() : SweepPlan::UpperHalf();
    OutputSweep test(m_Station);
    const BenchTestView view{.Caption = [&panel, command](const std::string& text) {
        panel.ShowCaption(command, ToQt(text));
    }};
    Run([&] { test.Run(plan, view); },
        [&panel, command](bool running) { panel.ShowRunning(command, running); });
}

void BenchTestCommands::TestAirFlow() {
    AirFlowTest test(m_Station);
    const BenchTestView view{
        .Caption = [this](const std::string& text) { m_Info.ShowAirFlowCaption(ToQt(text)); }};
    Run([&] { test.TestAirFlow(view); }, [this](bool running) { m_Info.ShowAirFlowTest(running); });
}

} // namespace ombrix
