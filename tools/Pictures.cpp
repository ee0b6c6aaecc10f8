// Makes the pictures of the documentation: the windows at work on the simulated bench, in
// virtual time, so that every run gives the same pictures.
#include "app/Assembly.h"
#include "calibration/history/CalibrationHistory.h"
#include "platform/text/Paths.h"
#include "windows/desktop/QtPorts.h"
#include "windows/eprom/EPROMFieldsTable.h"
#include "windows/eprom/EPROMFieldsWindow.h"
#include "windows/main/AIBAccessoriesWindow.h"
#include "windows/procedure/ProcedureBar.h"
#include "windows/trend/TrendWindow.h"
#include "windows/widgets/ProgressBar.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QSlider>
#include <QStyleFactory>
#include <QTimer>
#include <QTreeWidget>
#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <functional>

namespace {

using namespace ombrix;

constexpr QSize Screen(1366, 728);
constexpr QSize Stages(1000, 680);
/// After which no air flows any more.
constexpr double Settled_s = 5.0;

/// Nobody sits before the pictures: gauges count as placed, questions are all answered alike.
class AbsentOperator final : public Operator {
  public:
    /// @param toQuestions No declines what is offered, Yes starts what was clicked
    explicit AbsentOperator(Answer toQuestions) : m_ToQuestions(toQuestions) {}

    Answer Ask(const Message& message) override {
        switch (message.Buttons) {
        case MessageButtons::YesNoCancel: return Answer::Yes;
        case MessageButtons::YesNo: return m_ToQuestions;
        default: return Answer::Ok;
        }
    }
    std::optional<std::string> AskText(const std::string& /*prompt*/,
                                       const std::string& /*proposed*/,
                                       const std::string& /*title*/) override {
        return std::nullopt;
    }

  private:
    Answer m_ToQuestions;
};

QPalette DarkPalette() {
    const QColor window(42, 45, 50);
    const QColor base(30, 32, 36);
    const QColor text(225, 228, 232);
    const QColor faint(124, 128, 134);
    QPalette palette(text, window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(56, 60, 66));
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Highlight, QColor(38, 110, 180));
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

template <class Control>
Control& Find(QWidget& window, const QString& name) {
    auto* control = window.findChild<Control*>(name);
    if (control == nullptr)
        throw std::runtime_error("no control " + name.toStdString());
    return *control;
}

class Photographer {
  public:
    Photographer(Assembly& assembly, AIBAccessoriesWindow& window, std::filesystem::path folder)
        : m_Assembly(assembly), m_Window(window), m_Folder(std::move(folder)) {
        m_Window.resize(Screen);
        m_Window.show();
        m_Window.DetectAndProgramAIBs();
    }

    void MainWindow(const char* file) {
        Refresh();
        Take(m_Window, file);
    }

    void LivePanel(const char* file) {
        const std::array<int, 4> positions = {19660, 9830, 16384, 26214};
        for (int channel = 0; channel < 4; ++channel)
            Find<QSlider>(m_Window, QStringLiteral("sldDACValue_%1").arg(channel))
                .setValue(positions.at(static_cast<std::size_t>(channel)));
        for (const char* ticked : {"optHexBin_1", "chkGIO_3", "chkGIOOn_3", "chkExtGPIO_0"})
            Find<QAbstractButton>(m_Window, QLatin1String(ticked)).setChecked(true);
        constexpr double onTheWay_s = 0.2; // the flows are still rising
        LetTimePass(onTheWay_s);
        Refresh();
        Take(m_Window, file);
    }

    /// One whose steps are judged, and one for the trend window, which shows the later one.
    void HealthCheck(const char* file) {
        for (int channel = 0; channel < 4; ++channel)
            Find<QSlider>(m_Window, QStringLiteral("sldDACValue_%1").arg(channel)).setValue(0);
        LetTimePass(Settled_s);
        Find<QAbstractButton>(m_Window, QStringLiteral("Command3")).click();
        QWidget& window = TopLevel("frmACUHealthCheck");
        window.resize(Screen);
        CheckUntil(window, "chkLowCh2", 800, [&] { Take(window, file); });
        CheckUntil(window, "chkPressureCheck", 400, [] {});
        window.close();
    }

    /// The initial calibrations from the first run to the last.
    void Calibrated(const char* file) {
        InitialiseVelocity();
        LetTimePass(Settled_s);
        MainWindow(file);
    }

    /// The stage window in the middle of the second stage. @param channel that is measured, from 1
    void Calibration(const char* file, int channel) {
        QTimer moment;
        QObject::connect(&moment, &QTimer::timeout, &m_Window, [&] {
            QWidget& window = TopLevel("frmACUCalibration");
            const QString phase = QStringLiteral("Phase %1 of 2").arg(channel);
            if (!IsMidwayInStage(window, 1) ||
                !Find<QLabel>(window, QStringLiteral("lblAccessoryCal1")).text().endsWith(phase))
                return;
            moment.stop();
            window.resize(Stages);
            QCoreApplication::processEvents();
            Take(window, file);
            Find<QAbstractButton>(window, QStringLiteral("cmdCancel")).click();
        });
        moment.start(0);
        InitialiseVelocity();
    }

    /// The history of the unit, several months after its last calibration.
    void History(const char* file) {
        LetMonthsPass();
        Find<QAction>(m_Window, QStringLiteral("mnuCalibrationHistory")).trigger();
        QWidget& window = TopLevel("frmCalibrationHistory");
        window.resize(Screen);
        QCoreApplication::processEvents();
        Take(window, file);
        window.close();
    }

    /// Fields of the EPROM, with changes and a wrong entry.
    void EPROMFields(const char* file) {
        Find<QAction>(m_Window, QStringLiteral("mnuEPROMFields")).trigger();
        auto& window = dynamic_cast<EPROMFieldsWindow&>(TopLevel("frmEPROMFields"));
        auto& table = Find<EPROMFieldsTable>(window, QStringLiteral("tblFields"));
        constexpr int value = 3;
        table.Enter(1, value, QStringLiteral("4000"));
        table.Enter(2, value, QStringLiteral("20O"));
        QCoreApplication::processEvents();
        Take(window, file);
        window.GiveUp();
    }

    /// The journal of the health check before, between two cursors.
    void Trend(const char* file) {
        Find<QAction>(m_Window, QStringLiteral("mnuTrend")).trigger();
        auto& window = dynamic_cast<TrendWindow&>(TopLevel("frmTrend"));
        window.resize(Screen);
        const Drive& files = m_Assembly.TheStation().World.Files;
        std::string last;
        for (const std::string& journal : files.FilesIn(Paths::Journals))
            last =
                journal.find("health-check") != std::string::npos ? std::max(last, journal) : last;
        window.ShowFile(QString::fromStdString(files.RealPath(Paths::Journals + last).string()));
        while (Find<QProgressBar>(window, QStringLiteral("prgTrend")).isVisible())
            QCoreApplication::processEvents();
        for (const char* chooser : {"cboAirUnit", "cboPressureUnit"})
            Find<QComboBox>(window, QLatin1String(chooser)).setCurrentIndex(2);
        Find<QAbstractButton>(window, QStringLiteral("chkCursors")).setChecked(true);
        QCoreApplication::processEvents();
        Take(window, file);
        window.close();
    }

  private:
    /// Runs a health check up to so many thousandths, does something, and cancels it.
    static void CheckUntil(QWidget& window, const char* option, int progress,
                           const std::function<void()>& then) {
        auto& box = Find<QAbstractButton>(window, QLatin1String(option));
        const auto& bar = Find<QProgressBar>(window, QStringLiteral("prgRun"));
        box.click();
        QTimer moment;
        QObject::connect(&moment, &QTimer::timeout, &window, [&] {
            if (bar.value() < progress)
                return;
            moment.stop();
            then();
            Find<QAbstractButton>(window, QStringLiteral("cmdCancel")).click();
        });
        moment.start(0);
        Find<QAbstractButton>(window, QStringLiteral("cmdStart")).click();
        box.click();
    }

    /// Repeats the first run of the unit every month, with readings that drift apart.
    void LetMonthsPass() {
        constexpr int months = 9;
        constexpr double month_days = 30.0;
        constexpr int drift_bits = 9;
        Station& station = m_Assembly.TheStation();
        HistoryEntry run =
            ReadHistory(station.World.Files, station.CurrentAIB->SerialNumber()).Runs.front();
        for (int month = 1; month < months; ++month) {
            run.When = OleDate(run.When.Days() + month_days);
            for (ChannelMeasurement& channel : run.Velocity.Channels) {
                for (std::size_t point = 0; point < channel.Demand.size(); ++point) {
                    const int moved = (static_cast<int>(point) - 2) * drift_bits + month % 3 * 4;
                    channel.Rising.at(point).Reading_bits += moved;
                    channel.Falling.at(point).Reading_bits += moved;
                }
            }
            AppendToHistory(station.World, run);
        }
    }

    static bool IsMidwayInStage(QWidget& window, int stage) {
        constexpr int resultColumn = 2;
        // In the falling sweep, which judges the points of the rising one; the last measurement of
        // the stage before stands at its end.
        constexpr float from = 0.7F;
        constexpr float to = 0.8F;
        const auto& progress = Find<ProgressBar>(window, QStringLiteral("ctrlProgressBar"));
        const auto* line =
            Find<QTreeWidget>(window, QStringLiteral("lvwStage")).topLevelItem(stage);
        return line != nullptr && line->text(resultColumn) == QLatin1String("Running...") &&
               progress.Value() > from * progress.MaxVal() &&
               progress.Value() < to * progress.MaxVal();
    }

    static QWidget& TopLevel(const char* name) {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->objectName() == QLatin1String(name))
                return *window;
        }
        throw std::runtime_error(std::string("no window ") + name);
    }

    void InitialiseVelocity() {
        Find<QLineEdit>(m_Window, QStringLiteral("txtMFCNumber"))
            .setText(QStringLiteral("M9200302C"));
        Find<QAbstractButton>(m_Window, QStringLiteral("cmdVelocity_Init")).click();
    }

    void LetTimePass(double seconds) {
        const Clock& clock = m_Assembly.Time();
        const auto until = clock.Counter() + static_cast<std::int64_t>(
                                                 seconds * static_cast<double>(clock.Frequency()));
        while (clock.Counter() < until)
            m_Assembly.Time().Rest(seconds);
    }

    void Refresh() {
        Find<QAbstractButton>(m_Window, QStringLiteral("cmdUpdate")).click();
        Find<ProcedureBar>(m_Window, QStringLiteral("picProcedure")).Refresh();
        QCoreApplication::processEvents();
    }

    void Take(QWidget& window, const char* file) {
        const std::string path = m_Folder / file;
        if (!window.grab().save(QString::fromStdString(path)))
            throw std::runtime_error(path + " cannot be written");
    }

    Assembly& m_Assembly;
    AIBAccessoriesWindow& m_Window;
    std::filesystem::path m_Folder;
};

/// A simulated bench with the main window before it.
class Studio {
  public:
    Studio(const StationOptions& options, Answer toQuestions, const std::filesystem::path& folder)
        : m_Messages(toQuestions),
          m_Assembly(options, {m_Events, m_Messages, m_Documents, m_End}, "ombrix"),
          m_Window(m_Assembly.TheStation(),
                   {[this] { m_Events.EndProgram(); },
                    [this](OpenExcelView& wait) { return m_Assembly.Reports(wait); },
                    ReadersOfJournals,
                    OMBRIX_VERSION,
                    {},
                    options.Bench}),
          m_Photographer(m_Assembly, m_Window, folder) {}

    Photographer* operator->() { return &m_Photographer; }

  private:
    QtEventPump m_Events;
    AbsentOperator m_Messages;
    QtDocumentOpener m_Documents;
    QtProgramEnd m_End;
    Assembly m_Assembly;
    AIBAccessoriesWindow m_Window;
    Photographer m_Photographer;
};

StationOptions InVirtualTime(const char* bench, const std::filesystem::path& dataRoot) {
    StationOptions options;
    options.Bench = bench;
    options.TimeScale = 0.0;
    options.DataRoot = dataRoot;
    return options;
}

void MakePictures(const std::filesystem::path& folder, const std::filesystem::path& dataRoot) {
    Studio(InVirtualTime("none", dataRoot), Answer::No, folder)->MainWindow("first-start.png");
    Studio newUnit(InVirtualTime("fresh", dataRoot / "new"), Answer::Yes, folder);
    newUnit->MainWindow("new-unit.png");
    newUnit->Calibrated("calibrated.png");
    const StationOptions fresh = InVirtualTime("fresh", dataRoot);
    Studio(fresh, Answer::Yes, folder)->Calibration("calibration.png", 1);
    Studio(fresh, Answer::No, folder)->History("history.png");
    StationOptions faulty = fresh;
    faulty.FaultTexts = {"hysteresis:1,4000"};
    Studio(faulty, Answer::Yes, folder)->Calibration("calibration-failed.png", 2);

    Studio studio(InVirtualTime("acu", dataRoot), Answer::No, folder);
    studio->MainWindow("main-window.png");
    studio->LivePanel("live-panel.png");
    studio->EPROMFields("eprom-fields.png");
    studio->HealthCheck("health-check.png");
    studio->Trend("trend.png");
    QApplication::setPalette(DarkPalette());
    studio->LivePanel("dark-main-window.png");
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (argc != 3) {
        fmt::print(stderr, "usage: ombrix_pictures FOLDER DATA-FOLDER\n");
        return 2;
    }
    try {
        MakePictures(argv[1], argv[2]);
        return 0;
    } catch (const std::exception& error) {
        fmt::print(stderr, "ombrix_pictures: {}\n", error.what());
        return 1;
    }
}
