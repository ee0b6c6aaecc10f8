#pragma once

#include "benchtests/BenchTest.h"
#include "board/Station.h"
#include "windows/main/TestPanels.h"

#include <QObject>

#include <functional>

namespace ombrix {

class BoardPanel;
class InfoPanel;

/// Carries out the bench tests that the main window's buttons start.
class BenchTestCommands final : public QObject {
    Q_OBJECT

  public:
    /// @param board, info the panels whose buttons are served
    BenchTestCommands(Station& station, BoardPanel& board, InfoPanel& info);

  private:
    void TestDigitalMFCs();
    void TestSpeed();
    void SweepOutputs(AirTestPanel::Command command);
    void TestAirFlow();
    void Cancel();
    /// Asks before air is driven by a command that has no question of its own.
    bool MayDrive(const QString& command);
    /// The view, whose progress the foot of the main window shows as well.
    BenchTestView Telling(const BenchTestView& view);
    /// @param showRunning told when the test begins and when it is over
    void Run(const std::function<void()>& test,
             const std::function<void(bool running)>& showRunning);

    Station& m_Station;
    BoardPanel& m_Board;
    InfoPanel& m_Info;
    /// The procedure that runs is one of these tests.
    bool m_Running = false;
};

} // namespace ombrix
