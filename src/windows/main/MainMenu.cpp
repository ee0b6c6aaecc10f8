#include "windows/main/MainMenu.h"

#include "platform/text/Paths.h"
#include "windows/main/ACUCommands.h"

#include <QAction>
#include <QMenuBar>

namespace ombrix {

namespace {

QAction* NamedAction(QAction* action, const char* objectName) {
    action->setObjectName(QLatin1String(objectName));
    return action;
}

} // namespace

MainMenu::MainMenu(QMenuBar& bar) : QObject(&bar) {
    AddFile(bar);
    AddTools(bar);
    AddHelp(bar);
}

void MainMenu::AddFile(QMenuBar& bar) {
    QMenu* file = bar.addMenu(tr("&File"));
    m_WhenFree.push_back(NamedAction(file->addAction(tr("&Detect AIBs"), QKeySequence(Qt::Key_F5),
                                                     this, &MainMenu::DetectionWanted),
                                     "mnuDetectAIBs"));
    NamedAction(file->addAction(tr("Open Data &Folder"), this, &MainMenu::DataFolderWanted),
                "mnuOpenDataFolder");
    file->addSeparator();
    NamedAction(
        file->addAction(tr("&Quit"), QKeySequence(QKeySequence::Quit), this, &MainMenu::QuitWanted),
        "mnuQuit");
}

void MainMenu::AddTools(QMenuBar& bar) {
    QMenu* tools = bar.addMenu(tr("&Tools"));
    AddACUActions(*tools);
    tools->addSeparator();
    m_WhenFree.push_back(NamedAction(
        tools->addAction(tr("&UART Console"), this, &MainMenu::UARTsWanted), "mnuUARTs"));
    NamedAction(tools->addAction(tr("Calibration &History…"), this, &MainMenu::HistoryWanted),
                "mnuCalibrationHistory");
    NamedAction(tools->addAction(tr("U&nits…"), this, &MainMenu::UnitsWanted), "mnuUnits");
    tools->addSeparator();
    NamedAction(tools->addAction(tr("&Trend"), QKeySequence(Qt::CTRL | Qt::Key_T), this,
                                 &MainMenu::TrendWanted),
                "mnuTrend");
    NamedAction(tools->addAction(tr("&Open recording…"), this, &MainMenu::RecordingWanted),
                "mnuOpenRecording");
}

void MainMenu::AddACUActions(QMenu& tools) {
    const auto add = [&](const char* objectName, const QString& caption,
                         const std::function<void(ACUCommands&)>& command) {
        QAction* action =
            tools.addAction(caption, this, [this, command] { emit ACUCommandWanted(command); });
        m_ACUActions.push_back(NamedAction(action, objectName));
    };
    using Kind = CalibrationKind;
    add("mnuVelocitySystem", tr("&Velocity System Calibration"),
        [](ACUCommands& commands) { commands.CalibrateVelocity(Kind::System); });
    add("mnuVelocityAudit", tr("V&elocity Audit Calibration"),
        [](ACUCommands& commands) { commands.CalibrateVelocity(Kind::Audit); });
    add("mnuPressureSystem", tr("&Pressure System Calibration"),
        [](ACUCommands& commands) { commands.CalibratePressure(Kind::System); });
    add("mnuPressureAudit", tr("Pressure &Audit Calibration"),
        [](ACUCommands& commands) { commands.CalibratePressure(Kind::Audit); });
    tools.addSeparator();
    add("mnuPressureSensor", tr("Pressure &Sensor…"),
        [](ACUCommands& commands) { commands.DeclarePressureSensor(); });
    m_ACUActions.push_back(
        NamedAction(tools.addAction(tr("EPROM &Fields…"), this, &MainMenu::EPROMFieldsWanted),
                    "mnuEPROMFields"));
}

void MainMenu::AddHelp(QMenuBar& bar) {
    QMenu* help = bar.addMenu(tr("&Help"));
    const auto addGuide = [&](const char* objectName, const QString& caption, const char* file) {
        return NamedAction(
            help->addAction(caption, this, [this, file] { emit GuideWanted(QLatin1String(file)); }),
            objectName);
    };
    addGuide("mnuOperatorsGuide", tr("&Operator's Guide"), Paths::OperatorsGuide)
        ->setShortcut(QKeySequence(Qt::Key_F1));
    addGuide("mnuServiceGuide", tr("&Service Guide"), Paths::ServiceGuide);
    addGuide("mnuTerminalGuide", tr("&Terminal Commands"), Paths::TerminalGuide);
    addGuide("mnuFileFormats", tr("&File Formats"), Paths::FormatsGuide);
    help->addSeparator();
    m_WhenFree.push_back(
        NamedAction(help->addAction(tr("Save &Diagnostics…"), this, &MainMenu::DiagnosticsWanted),
                    "mnuSaveDiagnostics"));
    NamedAction(help->addAction(tr("&About"), this, &MainMenu::AboutWanted), "mnuAbout");
}

void MainMenu::TakeCommands(bool free, bool operates) {
    for (QAction* action : m_WhenFree)
        action->setEnabled(free);
    for (QAction* action : m_ACUActions)
        action->setEnabled(free && operates);
}

} // namespace ombrix
