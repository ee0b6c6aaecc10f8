#pragma once

#include "board/eprom/EpromWriter.h"
#include "board/unit/CalibrationSummary.h"
#include "calibration/MeasuredChannels.h"
#include "calibration/history/CalibrationHistory.h"
#include "windows/WindowBench.h"
#include "windows/calibration/ACUCalibrationWindow.h"
#include "windows/calibration/PressureSensorWindow.h"
#include "windows/desktop/OpenExcelWindow.h"
#include "windows/desktop/QtOperator.h"
#include "windows/eprom/ConfirmChangesWindow.h"
#include "windows/eprom/EPROMFieldsTable.h"
#include "windows/eprom/RestoreEPROMWindow.h"

#include <QAction>
#include <QTimer>

#include <functional>
#include <vector>

namespace ombrix {

using Visit = std::function<void(QWidget& window)>;

/// A window of the program, and how it comes up.
struct WindowOfProgram {
    const char* Name;
    /// Shows the window, with something to read in it, for as long as the visit takes.
    std::function<void(const Visit& visit)> Show;
};

inline auto MainWindow(const char* benchName) {
    return [benchName](const Visit& visit) {
        WindowBench bench(benchName);
        if (bench.Find<QWidget>("picACU").isVisible())
            bench.Update();
        visit(bench.Window);
    };
}

inline void ShowHealthCheck(const Visit& visit) {
    WindowBench bench;
    bench.Click("Command3");
    QWidget& window = *WindowBench::TopLevel("frmACUHealthCheck");
    WindowBench::TickIn(window, "chkShort");
    visit(window);
}

inline void ShowStages(const Visit& visit) {
    TestBench bench;
    bench.Detect();
    ReadCalibrationSummary(bench.TheStation.Calibration());
    ACUCalibrationWindow window(bench.TheStation);
    window.Stage_Add("Velocity System Calibration (1 of 2)");
    window.Stage_Add("Velocity System Calibration (2 of 2)");
    window.Stage_RunNext();
    window.Stage_Complete(End::Passed);
    window.ShowWarning("The MFCs are not ready.");
    window.Stage_RunNext();
    window.BeginPoints(
        {"channel 2, readings in ml/min",
         {"Point", "Demand", "mm/s", "Rising", "Falling", "Mean", "Deviation", "Limit"},
         std::vector<PointLine>(10)});
    window.ShowPoint(4,
                     {{"5", "750", "6.37", "764.8251", "764.7913", "764.8082",
                       "1.936229 % of reading", "1 % of reading"},
                      false,
                      "The mean flow is 1.936229 % of the reading off its demand; 1 % is allowed.",
                      1.94});
    QCoreApplication::processEvents();
    visit(window);
}

inline void ShowUarts(const Visit& visit) {
    WindowBench bench;
    bench.Find<QAction>("mnuUARTs").trigger();
    visit(*WindowBench::TopLevel("frmUARTs"));
}

inline void ShowRigOptions(const Visit& visit) {
    WindowBench bench("rig");
    bench.Click("cmdRunTests");
    visit(*WindowBench::TopLevel("frmAIBTestRigOptions"));
}

inline void ShowRig(const Visit& visit) {
    ShowRigOptions([&visit](QWidget& options) {
        QTest::mouseClick(&WindowBench::FindIn<QWidget>(options, "cmdOption_1"), Qt::LeftButton);
        QCoreApplication::processEvents();
        visit(*WindowBench::TopLevel("frmAIBTestRig"));
    });
}

inline void ShowHistory(const Visit& visit) {
    WindowBench bench;
    bench.Find<QAction>("mnuCalibrationHistory").trigger();
    visit(*WindowBench::TopLevel("frmCalibrationHistory"));
}

inline void ShowUnits(const Visit& visit) {
    WindowBench bench;
    for (const std::int32_t serial : {7, 301}) {
        HistoryEntry run;
        run.Kind = RunKind::VelocityAudit;
        run.When = OleDate(45000.0);
        run.Serial = serial;
        run.Verdict = VerdictOf(serial == 7 ? End::Failed : End::Passed);
        run.Found.MFCNumber = "M9200301A   ";
        run.Velocity = GoodRun(CalibrationKind::Audit).Measured;
        AppendToHistory(bench.Bench.World, run);
    }
    bench.Find<QAction>("mnuUnits").trigger();
    visit(*WindowBench::TopLevel("frmUnits"));
}

inline void ShowTrend(const Visit& visit) {
    WindowBench bench;
    auto& trend = bench.Find<QAction>("mnuTrend");
    trend.trigger();
    bench.Update();
    trend.trigger();
    visit(*WindowBench::TopLevel("frmTrend"));
}

inline void ShowRestore(const Visit& visit) {
    TestBench bench;
    bench.Detect();
    WriteEPROMWord(bench.TheStation, 1024, 0);
    // One of another unit, of which the window warns.
    bench.Files.ReplaceFile(R"(C:\Backups\ACU00007_20240101_010101_EPROM To All.bin)",
                            EpromImage().Bytes());
    RestoreEPROMWindow window(bench.TheStation, nullptr);
    window.show();
    QTest::keyClick(window.focusWidget(), Qt::Key_End);
    visit(window);
}

inline void ShowConfirmChanges(const Visit& visit) {
    ConfirmChangesWindow window("Write EPROM", "Write these changes to the EPROM of ACU00301?",
                                {{1024, "MFC number", "\"M9200301A\"", "\"M9200123Z\""}}, nullptr);
    window.show();
    visit(window);
}

inline void ShowEPROMFields(const Visit& visit) {
    WindowBench bench;
    bench.Click("cmdFields");
    QWidget& window = *WindowBench::TopLevel("frmEPROMFields");
    auto& table = WindowBench::FindIn<EPROMFieldsTable>(window, "tblFields");
    table.Enter(1, 3, "five litres"); // column of the values
    table.Enter(2, 3, "250");
    visit(window);
    table.Discard();
}

inline void ShowSensor(const Visit& visit) {
    PressureSensorWindow window(1000, nullptr);
    window.show();
    visit(window);
}

inline void ShowWait(const Visit& visit) {
    OpenExcelWindow window(nullptr);
    window.Show("Opening the template of the ACU health check");
    visit(window);
}

/// Visits the modal box that the question puts up, then declines it.
inline auto Box(void (*ask)(QtOperator& messages)) {
    return [ask](const Visit& visit) {
        QTimer::singleShot(0, [&visit] {
            QWidget* box = QApplication::activeModalWidget();
            visit(*box);
            box->close();
        });
        QtOperator messages;
        ask(messages);
    };
}

/// All of them: a new window joins this list, and is tested with the others.
inline std::vector<WindowOfProgram> EveryWindow() {
    return {{"MainWindow", MainWindow("acu")},
            {"MainWindowOfABlankBoard", MainWindow("fresh")},
            {"MainWindowWithoutBoards", MainWindow("none")},
            {"HealthCheck", ShowHealthCheck},
            {"Stages", ShowStages},
            {"Uarts", ShowUarts},
            {"RigOptions", ShowRigOptions},
            {"Rig", ShowRig},
            {"History", ShowHistory},
            {"Units", ShowUnits},
            {"Trend", ShowTrend},
            {"Restore", ShowRestore},
            {"ConfirmChanges", ShowConfirmChanges},
            {"EPROMFields", ShowEPROMFields},
            {"Sensor", ShowSensor},
            {"Wait", ShowWait},
            {"Message", Box([](QtOperator& messages) {
                 messages.Ask({"Not saved:\r\n\r\n   C:\\ACUs\\ACU00301_M9200301A\\report.xlsx",
                               MessageIcon::Warning, MessageButtons::YesNoCancel});
             })},
            {"Input", Box([](QtOperator& messages) {
                 messages.AskText("Enter the MFC number", "M9200301A", "MFC number");
             })}};
}

} // namespace ombrix
