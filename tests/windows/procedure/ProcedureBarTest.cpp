// What must stay in sight and in hand whatever runs: the foot of the window, the keys that stop,
// and the notices above the tabs.
#include "windows/procedure/ProcedureBar.h"

#include "windows/WindowBench.h"

#include <QAction>
#include <QMessageBox>
#include <QProgressBar>
#include <QSlider>
#include <QTabBar>
#include <QWheelEvent>

namespace ombrix {
namespace {

constexpr int HalfWay = SliderScale::Top / 2;

void OpenTheAir(WindowBench& bench) {
    bench.Find<QSlider>("sldDACValue_0").setValue(HalfWay);
    ASSERT_EQ(bench.Bench.TheStation.CurrentAIB->DAC(0), 2 * HalfWay);
}

/// Lets the timers of the window run.
void LetTimersRun() {
    QTest::qWait(350);
}

TEST(ProcedureBar, TellsOfTheRunAndTakesItsCancel) {
    WindowBench bench("plain");
    QString what;
    QString left;
    bench.Bench.Events.At(50.0, [&] {
        bench.Find<ProcedureBar>("picProcedure").Refresh();
        what = bench.LabelText("lblProcedure");
        left = bench.LabelText("lblProcedureLeft");
        EXPECT_EQ(bench.Find<QProgressBar>("prgProcedure").value(), 333);
        QTest::keyClick(&bench.Window, Qt::Key_Escape);
    });
    bench.Find<QAction>("mnuPressureSystem").trigger();
    EXPECT_EQ(what, "Pressure System Calibration: point 2 of 5");
    EXPECT_TRUE(left.endsWith(" left")) << left.toStdString();
    bench.Find<ProcedureBar>("picProcedure").Refresh();
    EXPECT_EQ(bench.LabelText("lblProcedure"), "✗ Pressure System Calibration: cancelled");
    bench.Click("cmdShowInFolder");
    bench.Click("cmdOpenReport");
    ASSERT_EQ(bench.Bench.Documents.Opened.size(), 2U);
    EXPECT_EQ(bench.Bench.Documents.Opened[0], bench.Bench.Documents.Opened[1].parent_path());
}

TEST(ProcedureBar, SaysWhyAProcedureWasStopped) {
    WindowBench bench("acu", {"unplug@20"});
    bench.Bench.Time.Advance(19.0);
    bench.Click("cmdAirTestAll");
    bench.Find<ProcedureBar>("picProcedure").Refresh();
    const QString told = bench.LabelText("lblProcedure");
    EXPECT_TRUE(told.contains("Air test: Stopped. ")) << told.toStdString();
}

TEST(StopAir, ZeroesEveryBoardFromButtonAndKeysAlsoBehindAQuestion) {
    WindowBench bench("pair");
    auto& tabs = bench.Find<QTabBar>("tabAIBs");
    const QString idle = bench.Window.windowTitle();
    const std::function<void()> ways[] = {
        [&] { bench.Click("cmdStopAir"); },
        [&] { QTest::keyClick(&bench.Window, Qt::Key_Escape, Qt::ShiftModifier); },
        [&] {
            QMessageBox question(QMessageBox::Question, "title", "text", QMessageBox::Yes,
                                 &bench.Window);
            question.open();
            QTest::keyClick(&question, Qt::Key_Escape, Qt::ShiftModifier);
            EXPECT_TRUE(question.isVisible());
        }};
    for (const auto& stop : ways) {
        OpenTheAir(bench);
        bench.Bench.TheStation.AIBList.AIB(1)->SetDAC(2, 500);
        LetTimersRun();
        EXPECT_FALSE(tabs.tabIcon(0).isNull());
        EXPECT_FALSE(tabs.tabIcon(1).isNull());
        EXPECT_EQ(bench.Window.windowTitle(), idle + QStringLiteral(" – outputs on"));
        stop();
        EXPECT_FALSE(bench.Bench.TheStation.AIBList.AIB(0)->Drives());
        EXPECT_FALSE(bench.Bench.TheStation.AIBList.AIB(1)->Drives());
        EXPECT_EQ(bench.Find<QSlider>("sldDACValue_0").value(), 0);
        EXPECT_EQ(bench.Window.windowTitle(), idle);
        EXPECT_TRUE(tabs.tabIcon(0).isNull() && tabs.tabIcon(1).isNull());
    }
}

TEST(StopAir, EndsTheProcedureThatDrives) {
    WindowBench bench;
    bench.Bench.Events.At(5.0, [&] { bench.Click("cmdStopAir"); });
    bench.Click("cmdAirTestAll");
    EXPECT_FALSE(bench.Bench.TheStation.Procedures.Running());
    EXPECT_LT(static_cast<double>(bench.Bench.Time.Counter()) /
                  static_cast<double>(bench.Bench.Time.Frequency()),
              6.0);
}

TEST(AirCommands, WithoutAQuestionOfTheirOwnAskOnceWithTheUnit) {
    for (const char* command : {"cmdAirTestAll", "cmdAirTestHi", "Command", "cmdTestSpeed"}) {
        WindowBench bench;
        bench.Bench.Messages.Answers = {Answer::Cancel};
        bench.Click(command);
        ASSERT_EQ(bench.Bench.Messages.Shown.size(), 1U) << command;
        EXPECT_NE(bench.Bench.Messages.Shown[0].Text.find("ACU00301"), std::string::npos);
        EXPECT_FALSE(bench.Bench.TheStation.CurrentAIB->MayDrive()) << command;
    }
}

TEST(AirCommands, AWheelMovesNoSliderThatIsNotInUse) {
    WindowBench bench;
    auto& slider = bench.Find<QSlider>("sldDACValue_0");
    const auto wheel = [&slider] {
        QWheelEvent event(QPointF(5, 5), slider.mapToGlobal(QPointF(5, 5)), {}, {0, 120},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&slider, &event);
    };
    bench.Window.activateWindow();
    bench.Find<QSlider>("sldDACValue_1").setFocus();
    wheel();
    EXPECT_EQ(slider.value(), 0);
    slider.setFocus();
    wheel();
    EXPECT_GT(slider.value(), 0);
}

TEST(BoardNotices, ALostBoardIsABannerWithinASecondAlsoWhenNothingRuns) {
    WindowBench bench("acu", {"unplug@100"});
    OpenTheAir(bench);
    bench.Update();
    auto& banner = bench.Find<QLabel>("lblBoardLost");
    EXPECT_FALSE(banner.isVisible());
    bench.Bench.Time.Advance(100.0);
    bench.Update();
    bench.Bench.Time.Advance(0.9);
    bench.Update();
    ASSERT_TRUE(banner.isVisible());
    EXPECT_TRUE(banner.text().contains("Board 301 (USB) has not answered since"));
    EXPECT_TRUE(banner.text().contains("AIR MAY STILL BE FLOWING"));
    EXPECT_EQ(bench.LabelText("lblADC_0"), "--");
    EXPECT_FALSE(bench.Find<QLabel>("lblACUVel_System").isEnabled());
}

} // namespace
} // namespace ombrix
