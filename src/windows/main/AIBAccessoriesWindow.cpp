#include "windows/main/AIBAccessoriesWindow.h"

#include "board/eprom/PartialWrite.h"
#include "board/procedure/SafeOutputs.h"
#include "platform/ports/Folders.h"
#include "platform/text/Paths.h"
#include "windows/desktop/QtOperator.h"
#include "windows/eprom/EPROMPanel.h"
#include "windows/live/DACPanel.h"
#include "windows/main/ACUCommands.h"
#include "windows/main/BenchTestCommands.h"
#include "windows/main/BoardPanel.h"
#include "windows/main/HelpCommands.h"
#include "windows/main/InfoPanel.h"
#include "windows/main/MainMenu.h"
#include "windows/main/NoBoardPanel.h"
#include "windows/main/ToolWindows.h"
#include "windows/main/WindowCaption.h"
#include "windows/procedure/BoardNotices.h"
#include "windows/procedure/ProcedureBar.h"
#include "windows/procedure/StopKeys.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QTabBar>
#include <QVBoxLayout>

namespace ombrix {

namespace {

QTimer* MakeTimer(const char* objectName, int interval_ms, QObject* parent) {
    auto* timer = new QTimer(parent);
    timer->setObjectName(QLatin1String(objectName));
    timer->setInterval(interval_ms);
    return timer;
}

} // namespace

AIBAccessoriesWindow::AIBAccessoriesWindow(Station& station, MainWindowServices services)
    : AskForLibrary(FileDialogOf(*this, QFileDialog::AcceptOpen, tr("Board library"),
                                 tr("Libraries (*.so *.so.*);;All files (*)"))),
      m_Station(station), m_Services(std::move(services)), m_Menu(new MainMenu(*menuBar())),
      m_Tabs(new QTabBar(this)),
      m_Notices(new BoardNotices(station, *m_Tabs, m_Services.Simulation, this)),
      m_NoBoards(new NoBoardPanel(this)), m_Info(new InfoPanel(this)),
      m_Board(new BoardPanel(station, this)), m_Foot(new ProcedureBar(station, this)),
      m_StopKeys(std::make_unique<StopKeys>(station)),
      m_UpdateInput(MakeTimer("timUpdateInput", 50, this)),
      m_Tools(std::make_unique<ToolWindows>(station, m_Services.Reports, *this)) {
    QCoreApplication::setApplicationName(tr("AIB Test Form"));
    const QString caption = ToQt(WindowCaption(m_Services.Version));
    Named(this, QStringLiteral("frmAIBAccessories"), caption);
    setWindowTitle(caption);
    ConnectMenu();
    ConnectNoBoards();
    LayOut();
    ShowPanels(false);
    connect(m_Tabs, &QTabBar::currentChanged, this, [this](int tab) {
        Guarded(m_Station.World.Messages, [this, tab] { SelectBoard(tab); });
    });
    connect(m_Board, &BoardPanel::HealthCheckWanted, m_Tools.get(), &ToolWindows::ShowHealthCheck);
    connect(m_Board, &BoardPanel::UpdateWanted, this, &AIBAccessoriesWindow::Tick);
    connect(m_UpdateInput, &QTimer::timeout, this, &AIBAccessoriesWindow::Tick);
    connect(m_Foot, &ProcedureBar::StopAirWanted, this, &AIBAccessoriesWindow::StopAllAir);
    connect(m_StopKeys.get(), &StopKeys::StopAirWanted, this, &AIBAccessoriesWindow::StopAllAir);
    constexpr int marksSpacing_ms = 200;
    QTimer* marks = MakeTimer("timMarks", marksSpacing_ms, this);
    connect(marks, &QTimer::timeout, this, &AIBAccessoriesWindow::MarkDriving);
    marks->start();
    m_ACUCommands = std::make_unique<ACUCommands>(station, *m_Board, m_Services.Reports, *this);
    m_BenchTests = std::make_unique<BenchTestCommands>(station, *m_Board, *m_Info);
    connect(m_Info, &InfoPanel::TestRigWanted, m_Tools.get(), &ToolWindows::ShowTestRigOptions);
    ConnectEPROM();
    connect(m_Tools.get(), &ToolWindows::RigShown, this, &AIBAccessoriesWindow::RigShown);
    m_Procedures = station.Procedures.Listen([this](bool running) { ProcedureRunning(running); });
}

AIBAccessoriesWindow::~AIBAccessoriesWindow() = default;

void AIBAccessoriesWindow::ConnectMenu() {
    connect(m_Menu, &MainMenu::DetectionWanted, this, &AIBAccessoriesWindow::DetectAndProgramAIBs);
    connect(m_Menu, &MainMenu::DataFolderWanted, this,
            [this] { OpenFromMenu(m_Station.World, Paths::DriveC); });
    connect(m_Menu, &MainMenu::QuitWanted, this, &QWidget::close);
    connect(m_Menu, &MainMenu::ACUCommandWanted, this,
            [this](const std::function<void(ACUCommands&)>& command) { command(*m_ACUCommands); });
    connect(m_Menu, &MainMenu::EPROMFieldsWanted, m_Tools.get(), &ToolWindows::ShowEPROMFields);
    connect(m_Menu, &MainMenu::UARTsWanted, m_Tools.get(), &ToolWindows::ShowUARTs);
    connect(m_Menu, &MainMenu::HistoryWanted, m_Tools.get(), &ToolWindows::ShowHistory);
    connect(m_Menu, &MainMenu::UnitsWanted, m_Tools.get(), &ToolWindows::ShowUnits);
    connect(m_Menu, &MainMenu::TrendWanted, m_Tools.get(), &ToolWindows::ShowTrend);
    connect(m_Menu, &MainMenu::RecordingWanted, m_Tools.get(), &ToolWindows::OpenRecording);
    connect(m_Menu, &MainMenu::GuideWanted, this, &AIBAccessoriesWindow::ShowGuide);
    connect(m_Menu, &MainMenu::DiagnosticsWanted, this, [this] {
        Guarded(m_Station.World.Messages,
                [this] { SaveDiagnostics(m_Station, m_Services.Options); });
    });
    connect(m_Menu, &MainMenu::AboutWanted, this,
            [this] { ShowAbout(m_Station.World.Messages, m_Services.Version); });
}

void AIBAccessoriesWindow::ConnectNoBoards() {
    connect(m_NoBoards, &NoBoardPanel::DetectionWanted, this,
            &AIBAccessoriesWindow::DetectAndProgramAIBs);
    connect(m_NoBoards, &NoBoardPanel::SimulationWanted, this, [this] { StartAnew({}); });
    connect(m_NoBoards, &NoBoardPanel::LibraryWanted, this, [this] {
        AskForLibrary({}, [this](const QString& file) { StartAnew(file.toStdString()); });
    });
    connect(m_NoBoards, &NoBoardPanel::GuideWanted, this,
            [this] { ShowGuide(QLatin1String(Paths::OperatorsGuide)); });
}

void AIBAccessoriesWindow::StartAnew(const std::string& library) {
    m_Services.StartAnew(library);
    close();
}

void AIBAccessoriesWindow::ShowGuide(const QString& file) {
    OpenFromMenu(m_Station.World, Paths::Guides + file.toStdString());
}

void AIBAccessoriesWindow::LayOut() {
    Named(m_Tabs, QStringLiteral("tabAIBs"), tr("Boards"));
    m_Tabs->setExpanding(false);
    m_Tabs->setDrawBase(false);
    auto* content = new QWidget(this);
    content->setAccessibleName(tr("Boards"));
    auto* panels = new QVBoxLayout(content);
    panels->setContentsMargins(0, 0, 0, 0);
    panels->addWidget(m_NoBoards, 1);
    panels->addWidget(m_Board, 1);
    panels->addWidget(m_Info);
    auto* central = new QWidget(this);
    central->setAccessibleName(tr("Boards"));
    auto* layout = new QVBoxLayout(central);
    // All panels fit on a screen of 1280 × 720 pixels, with nothing to spare.
    constexpr int margin = 8;
    constexpr int narrow = 4;
    layout->setContentsMargins(margin, narrow, margin, narrow);
    layout->setSpacing(narrow);
    layout->addWidget(m_Notices);
    // On the smallest screens the panels are scrolled; what stops things stays in sight.
    layout->addWidget(MakeScrolling(content, tr("Panels of the board"), central), 1);
    layout->addWidget(m_Foot);
    setCentralWidget(central);
    constexpr QSize comfortable(1280, 700);
    resize(ScaledToFonts(*this, comfortable));
}

bool AIBAccessoriesWindow::DetectAndProgramAIBs() {
    if (m_Station.Procedures.Running())
        return false;
    m_NoBoards->ShowDetecting(true);
    m_BoardsFound = false;
    m_Tools->CloseAll(); // they work with the boards that are there now
    m_Board->StopTimers();
    Guarded(m_Station.World.Messages, [this] {
        const RunningProcedure detection(m_Station.Procedures, "detection of the boards");
        m_BoardsFound = Detect();
    });
    ShowPanels(m_BoardsFound);
    m_NoBoards->ShowDetecting(false);
    UpdateCommands();
    OfferRestores();
    return m_BoardsFound;
}

void AIBAccessoriesWindow::OfferRestores() {
    if (!m_BoardsFound)
        return;
    Guarded(m_Station.World.Messages, [this] {
        for (const auto& [board, write] : PartlyWrittenBoards(m_Station)) {
            ShowTab(board->BoardIndex());
            m_Board->EPROM().OfferRestore(write);
        }
    });
}

void AIBAccessoriesWindow::ShowTab(int board) {
    m_Tabs->setCurrentIndex(board);
}

bool AIBAccessoriesWindow::Detect() {
    // The new board objects know nothing of what the old ones were told.
    SwitchAllOff(m_Station);
    const bool found = DetectAndProgramBoards(m_Station, *this);
    RemoveTabsFrom(found ? m_Station.AIBList.AIBCount() : 0);
    if (found)
        ResetPanels();
    return found;
}

void AIBAccessoriesWindow::RemoveTabsFrom(int count) {
    const QSignalBlocker quiet(m_Tabs);
    while (m_Tabs->count() > count)
        m_Tabs->removeTab(m_Tabs->count() - 1);
}

void AIBAccessoriesWindow::ResetPanels() {
    {
        const QSignalBlocker quiet(m_Tabs);
        m_Tabs->setCurrentIndex(0);
    }
    m_Station.CurrentAIB = m_Station.AIBList.AIB(0);
    m_Notices->Reset();
    m_Board->Reset();
}

void AIBAccessoriesWindow::SelectBoard(int tab) {
    m_Station.CurrentAIB = m_Station.AIBList.AIB(tab);
    m_Notices->Reset();
    m_Board->ShowLost(false);
    m_Board->ShowBoard();
    UpdateCommands();
}

void AIBAccessoriesWindow::ShowPanels(bool boardsFound) {
    // Hidden first: the window would grow by what shows for a moment beside the rest.
    if (boardsFound)
        m_NoBoards->hide();
    m_Board->setVisible(boardsFound);
    m_Info->setVisible(boardsFound);
    m_NoBoards->setVisible(!boardsFound);
}

void AIBAccessoriesWindow::Tick() {
    if (m_Station.Procedures.Running()) {
        m_Board->ShowFed();
        return;
    }
    Guarded(m_Station.World.Messages, [this] {
        try {
            m_Notices->NoteAnswer(m_Board->Refresh());
            m_Board->ShowLost(m_Notices->IsLost());
            m_Tools->ShowLost(m_Notices->IsLost());
        } catch (const std::exception&) {
            m_UpdateInput->stop(); // told once, not twenty times a second
            throw;
        }
    });
}

void AIBAccessoriesWindow::ProcedureRunning(bool running) {
    UpdateCommands();
    if (running || !m_Closing)
        return;
    // The procedure is still on the stack here; the window goes when it is gone.
    QTimer::singleShot(0, this, &QWidget::close);
}

void AIBAccessoriesWindow::UpdateCommands() {
    const bool free = !m_Station.Procedures.Running();
    m_Menu->TakeCommands(free, m_BoardsFound && !m_Notices->IsReadOnly());
    m_Tabs->setEnabled(free);
    m_Board->TakeCommands(free && !m_Notices->IsReadOnly());
    m_Info->TakeCommands(free);
    if (m_BoardsFound && !m_Tools->RigIsOpen())
        m_UpdateInput->start();
    else
        m_UpdateInput->stop();
}

void AIBAccessoriesWindow::StopAllAir() {
    StopAir(m_Station);
    m_Board->Sliders().ShowBoard();
    MarkDriving();
}

void AIBAccessoriesWindow::MarkDriving() {
    const bool wasReadOnly = m_Notices->IsReadOnly();
    const bool drives = m_Notices->MarkTabs();
    if (m_Notices->IsReadOnly() != wasReadOnly)
        UpdateCommands();
    const QString caption = ToQt(WindowCaption(m_Services.Version));
    setWindowTitle(drives ? tr("%1 – outputs on").arg(caption) : caption);
}

void AIBAccessoriesWindow::ConnectEPROM() {
    connect(m_Board, &BoardPanel::EPROMFieldsWanted, m_Tools.get(), &ToolWindows::ShowEPROMFields);
    connect(m_Board, &BoardPanel::RecordRead, m_Tools.get(), &ToolWindows::ShowBoard);
    connect(m_Tools.get(), &ToolWindows::EpromWritten, m_Board, &BoardPanel::ShowEPROM);
}

void AIBAccessoriesWindow::OfferUnfinishedRuns() {
    m_ACUCommands->OfferUnfinished(m_Services.Journals);
}

void AIBAccessoriesWindow::RigShown(bool open) {
    UpdateCommands();
    // The rig drives the outputs past the sliders.
    if (!open && m_BoardsFound)
        m_Board->Sliders().ShowBoard();
}

void AIBAccessoriesWindow::EndUnasked() {
    m_Closing = true;
    m_Services.EndProgram();
    close();
}

void AIBAccessoriesWindow::closeEvent(QCloseEvent* event) {
    if (m_Station.Procedures.Running()) {
        event->ignore();
        if (!m_Closing)
            AskWhileRunning(*this,
                            tr("A procedure is running.\n\nEnd it safely and close the program?"),
                            [this] { EndUnasked(); });
        return;
    }
    if (const QString unwritten = m_Tools->UnwrittenText(); !unwritten.isEmpty() && !m_Closing) {
        event->ignore();
        AskWhileRunning(*this, unwritten + tr("\n\nClose the program all the same?"),
                        [this] { EndUnasked(); });
        return;
    }
    m_Services.EndProgram();
    m_UpdateInput->stop();
    m_Board->StopTimers();
    m_BoardsFound = false;
    // Nobody is left who could switch off what the sliders have switched on.
    SwitchAllOff(m_Station);
    m_Tools->CloseAll();
    m_Tools->CloseRest();
    event->accept();
}

void AIBAccessoriesWindow::ShowOutcome(const std::string& text) {
    m_NoBoards->ShowOutcome(ToQt(text));
}

void AIBAccessoriesWindow::ShowInitState(const std::string& text) {
    m_NoBoards->ShowInitState(ToQt(text));
}

void AIBAccessoriesWindow::ShowProgramming(const std::string& first, const std::string& second) {
    m_Info->ShowProgramming(ToQt(first), ToQt(second));
}

void AIBAccessoriesWindow::SetTabCaption(std::int32_t board, const std::string& caption) {
    const QSignalBlocker quiet(m_Tabs);
    if (board < m_Tabs->count())
        m_Tabs->setTabText(board, ToQt(caption));
    else
        m_Tabs->addTab(ToQt(caption));
}

} // namespace ombrix
