#pragma once

#include "board/Detection.h"
#include "journal/UnfinishedRuns.h"
#include "reports/ReportFile.h"
#include "windows/desktop/AccessKeys.h"
#include "windows/desktop/FileQuestion.h"

#include <QMainWindow>
#include <QTimer>

#include <functional>
#include <memory>
#include <string>

class QTabBar;

namespace ombrix {

class ACUCommands;
class BenchTestCommands;
class BoardNotices;
class BoardPanel;
class InfoPanel;
class MainMenu;
class NoBoardPanel;
class ProcedureBar;
class StopKeys;
class ToolWindows;

/// What main hands to the main window beside the station.
struct MainWindowServices {
    /// Tells running procedures that the window is closing and the program ends.
    std::function<void()> EndProgram;
    /// What report files are made with. @param wait shows that one is being opened
    std::function<ReportTools(OpenExcelView& wait)> Reports;
    /// The readers of the journals of every kind of run.
    std::function<JournalReaders(const ReportTools& tools)> Journals;
    /// "major.minor.revision"
    std::string Version;
    /// The program's options in use, a line each.
    std::string Options{};
    /// What is simulated, in a line; empty for real boards.
    std::string Simulation{};
    /// Has the program begin anew once this window is closed. @param library path of the board
    /// library, for this time and the next ones; empty for the simulated bench, this time alone
    std::function<void(const std::string& library)> StartAnew = [](const std::string&) {};
};

/// The main window: one tab for each board, and the panels that show and drive the board of the
/// selected tab.
class AIBAccessoriesWindow final : public QMainWindow, private DetectionView {
    Q_OBJECT

  public:
    AIBAccessoriesWindow(Station& station, MainWindowServices services);
    ~AIBAccessoriesWindow() override;

    /// Finds the boards and programs them. True when there is at least one.
    bool DetectAndProgramAIBs();
    /// Selects the tab of a board, from 0; there may be none.
    void ShowTab(int board);
    /// Closes without a question, once a procedure that runs has ended.
    void EndUnasked();
    /// Asks what to do with calibrations that an earlier program did not finish.
    void OfferUnfinishedRuns();

    /// How it asks for a board library; the dialog of the desktop at first.
    FileQuestion AskForLibrary;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void ConnectMenu();
    void ConnectNoBoards();
    void LayOut();
    bool Detect();
    /// Of what an EPROM held before it was written in part.
    void OfferRestores();
    void ResetPanels();
    void RemoveTabsFrom(int count);
    void SelectBoard(int tab);
    void ShowPanels(bool boardsFound);
    void Tick();
    void ProcedureRunning(bool running);
    void UpdateCommands();
    void ConnectEPROM();
    void RigShown(bool open);
    void StopAllAir();
    void MarkDriving();
    /// @param library path of a board library; empty for the simulated bench
    void StartAnew(const std::string& library);
    void ShowGuide(const QString& file);
    /// A file or folder of the program's drives.

    void ShowOutcome(const std::string& text) override;
    void ShowInitState(const std::string& text) override;
    void ShowProgramming(const std::string& first, const std::string& second) override;
    void SetTabCaption(std::int32_t board, const std::string& caption) override;

    Station& m_Station;
    MainWindowServices m_Services;
    MainMenu* m_Menu;
    QTabBar* m_Tabs;
    BoardNotices* m_Notices;
    NoBoardPanel* m_NoBoards;
    InfoPanel* m_Info;
    BoardPanel* m_Board;
    ProcedureBar* m_Foot;
    std::unique_ptr<StopKeys> m_StopKeys;
    AccessKeys m_AccessKeys;
    QTimer* m_UpdateInput;
    std::unique_ptr<ACUCommands> m_ACUCommands;
    std::unique_ptr<BenchTestCommands> m_BenchTests;
    std::unique_ptr<ToolWindows> m_Tools;
    Subscription m_Procedures;
    bool m_BoardsFound = false;
    bool m_Closing = false;
};

} // namespace ombrix
