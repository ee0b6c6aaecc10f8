#include "windows/WindowBench.h"

#include <QMessageBox>
#include <QSlider>
#include <QTimer>

namespace ombrix {
namespace {

QMessageBox* Question(QWidget& window) {
    return window.findChild<QMessageBox*>("boxWhileRunning");
}

void AnswerQuestion(QWidget& window, QMessageBox::StandardButton button) {
    QMessageBox* box = Question(window);
    ASSERT_NE(box, nullptr);
    ASSERT_TRUE(box->isVisible());
    QTest::mouseClick(box->button(button), Qt::LeftButton);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST(Closing, IdleWindowClosesAtOnceAndEndsTheProgram) {
    WindowBench bench;
    bench.Click("Command3");
    EXPECT_TRUE(bench.Window.close());
    EXPECT_TRUE(bench.Bench.Events.ProgramEnding());
    EXPECT_FALSE(bench.Find<QTimer>("timUpdateInput").isActive());
    EXPECT_EQ(WindowBench::TopLevel("frmACUHealthCheck"), nullptr);
}

TEST(Closing, AirThatTheSlidersSwitchedOnIsSwitchedOff) {
    WindowBench bench;
    bench.Find<QSlider>("sldDACValue_0").setValue(20000);
    ASSERT_GT(bench.Bench.FlowLater_bits(), 1000);
    bench.Window.close();
    EXPECT_LT(bench.Bench.FlowLater_bits(), TestBench::NoFlow_bits);
}

TEST(Closing, ProcedureThatRunsIsAskedAboutAndGoesOnAfterNo) {
    WindowBench bench;
    const RunningProcedure procedure(bench.Bench.TheStation.Procedures, "test");
    EXPECT_FALSE(bench.Window.close());
    AnswerQuestion(bench.Window, QMessageBox::No);
    EXPECT_TRUE(bench.Window.isVisible());
    EXPECT_FALSE(bench.Bench.Events.ProgramEnding());
    EXPECT_EQ(Question(bench.Window), nullptr);
}

TEST(Closing, WindowGoesOnceTheProcedureHasEnded) {
    WindowBench bench;
    {
        const RunningProcedure procedure(bench.Bench.TheStation.Procedures, "test");
        bench.Window.close();
        bench.Window.close(); // asked again while the question stands: no second box
        EXPECT_EQ(bench.Window.findChildren<QMessageBox*>().size(), 1);
        AnswerQuestion(bench.Window, QMessageBox::Yes);
        EXPECT_TRUE(bench.Bench.Events.ProgramEnding());
        EXPECT_TRUE(bench.Window.isVisible());
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(bench.Window.isVisible());
}

TEST(Closing, HealthCheckInMidRunEndsSafely) {
    WindowBench bench;
    bench.Click("Command3");
    QWidget& window = *WindowBench::TopLevel("frmACUHealthCheck");
    WindowBench::TickIn(window, "chkShort");
    bench.Bench.Events.At(3.0, [&bench] { bench.Window.close(); });
    bench.Bench.Events.At(3.5, [&bench] {
        EXPECT_EQ(bench.Bench.TheStation.CurrentAIB->DAC(0), 13106); // the run goes on meanwhile
        AnswerQuestion(bench.Window, QMessageBox::Yes);
    });
    QTest::mouseClick(&WindowBench::FindIn<QWidget>(window, "cmdStart"), Qt::LeftButton);
    EXPECT_LT(bench.Bench.Time.Counter(), 4 * bench.Bench.Time.Frequency());
    EXPECT_EQ(bench.Bench.TheStation.CurrentAIB->DAC(0), 0);
    EXPECT_TRUE(bench.Bench.Messages.Shown.empty());
    QCoreApplication::processEvents();
    EXPECT_FALSE(bench.Window.isVisible());
    EXPECT_FALSE(window.isVisible());
}

} // namespace
} // namespace ombrix
