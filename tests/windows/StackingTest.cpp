// What lies above what on a desktop with a window manager. Offscreen windows lie nowhere, so these
// run on a display of their own.
#include "windows/WindowBench.h"

#include <QMessageBox>
#include <QProcess>
#include <QRegularExpression>

namespace ombrix {
namespace {

/// The windows of this program from the lowest to the topmost, as the window manager has them.
std::vector<WId> Stacked() {
    QProcess xprop;
    xprop.start("xprop", {"-root", "_NET_CLIENT_LIST_STACKING"});
    xprop.waitForFinished();
    std::vector<WId> windows;
    static const QRegularExpression number("0x([0-9a-f]+)");
    for (auto found = number.globalMatch(xprop.readAllStandardOutput()); found.hasNext();)
        windows.push_back(found.next().captured(1).toULongLong(nullptr, 16));
    return windows;
}

/// Whether a window lies above another one, now or soon.
bool LiesAbove(QWidget& upper, QWidget& lower) {
    return QTest::qWaitFor([&] {
        const std::vector<WId> stacked = Stacked();
        const auto at = [&](QWidget& window) {
            return std::find(stacked.begin(), stacked.end(), window.winId());
        };
        return at(upper) != stacked.end() && at(lower) != stacked.end() && at(upper) > at(lower);
    });
}

/// As a click on the frame of a window behind does.
void ClickOnFrame(QWidget& window) {
    window.raise();
    window.activateWindow();
    QTest::qWait(100);
}

TEST(Stacking, TheStageWindowStaysAboveTheMainWindowThroughARunAndItsQuestions) {
    WindowBench bench("fresh");
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&bench.Window));
    bench.Bench.Messages.Texts = {"M9200302A"};
    int looked = 0;
    const auto look = [&] {
        QWidget* stages = WindowBench::TopLevel("frmACUCalibration");
        ASSERT_NE(stages, nullptr);
        ClickOnFrame(bench.Window);
        EXPECT_TRUE(LiesAbove(*stages, bench.Window));
        EXPECT_TRUE(bench.Window.frameGeometry().contains(stages->geometry().center()));
        ++looked;
    };
    bench.Bench.Messages.WhileAsked = [&](const Message& message) {
        if (message.Text.starts_with("Are you sure you want to run"))
            look();
    };
    bench.Bench.Events.At(60.0, [&] {
        look();
        bench.Click("cmdCancelProcedure");
    });
    bench.Click("cmdVelocity_Init");
    EXPECT_EQ(looked, 2);
}

TEST(Stacking, EveryWindowOfTheMainWindowLiesAboveIt) {
    WindowBench bench;
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&bench.Window));
    const std::pair<std::function<void()>, const char*> windows[] = {
        {[&] { bench.Click("Command3"); }, "frmACUHealthCheck"},
        {[&] { bench.Find<QAction>("mnuCalibrationHistory").trigger(); }, "frmCalibrationHistory"},
        {[&] { bench.Click("cmdFields"); }, "frmEPROMFields"},
        {[&] { bench.Find<QAction>("mnuUARTs").trigger(); }, "frmUARTs"}};
    for (const auto& [open, name] : windows) {
        open();
        QWidget* window = WindowBench::TopLevel(name);
        ASSERT_NE(window, nullptr) << name;
        ClickOnFrame(bench.Window);
        EXPECT_TRUE(LiesAbove(*window, bench.Window)) << name;
        window->close();
    }
}

} // namespace
} // namespace ombrix
