// The desktop program ended from outside while air flows.
#include "windows/desktop/SafeEnd.h"

#include "windows/WindowBench.h"
#include "windows/desktop/QtOperator.h"

#include <QSlider>
#include <QTimer>

#include <csignal>

namespace ombrix {
namespace {

/// Fails in a way that no handler expects.
class FailingTimer final : public QObject {
  public:
    FailingTimer() { startTimer(0); }

  protected:
    void timerEvent(QTimerEvent* /*event*/) override { throw std::runtime_error("no such tab"); }
};

void RaiseSignal(int signal) {
    ::raise(signal);
    QCoreApplication::processEvents();
}
void EndSession() {
    // The session's manager is not looked at, and cannot be made here.
    alignas(void*) static std::array<std::byte, 64> unused{};
    emit qApp->commitDataRequest(reinterpret_cast<QSessionManager&>(unused));
}
void FailUnexpectedly() {
    const FailingTimer timer;
    QCoreApplication::processEvents();
}

struct Way {
    const char* Name;
    void (*End)();
    /// In the health check: while it drives, and while it rests at zero between.
    double At_s;
    std::size_t Messages = 0;
};

class SafeEndTest : public ::testing::TestWithParam<Way> {
  protected:
    SafeEndTest() {
        auto& application = *static_cast<SafeApplication*>(qApp);
        application.OnUnexpectedError = [this](const std::exception& error) {
            m_SafeEnd.EndAfterError(error.what());
        };
    }
    ~SafeEndTest() override { static_cast<SafeApplication*>(qApp)->OnUnexpectedError = nullptr; }
    void ExpectEnded() {
        QCoreApplication::processEvents();
        EXPECT_FALSE(m_Bench.Window.isVisible());
        EXPECT_TRUE(m_Bench.Bench.Events.ProgramEnding());
        EXPECT_LT(m_Bench.Bench.FlowLater_bits(), TestBench::NoFlow_bits);
        EXPECT_EQ(m_Bench.Bench.Messages.Shown.size(), GetParam().Messages);
        EXPECT_EQ(m_Bench.Bench.Files.FilesIn(R"(C:\Claims)"),
                  std::vector<std::string>{"AIB_00301.lock"});
    }

    StopSignals m_Signals;
    WindowBench m_Bench;
    QtOperator m_Messages;
    SafeEnd m_SafeEnd{
        m_Bench.Bench.TheStation,
        m_Messages,
        m_Signals,
        {[this] { m_Bench.Bench.Events.EndProgram(); }, [this] { m_Bench.Window.EndUnasked(); }}};
};

INSTANTIATE_TEST_SUITE_P(Ways, SafeEndTest,
                         ::testing::Values(Way{"interrupt", [] { RaiseSignal(SIGINT); }, 0.5},
                                           Way{"terminate", [] { RaiseSignal(SIGTERM); }, 3.0},
                                           Way{"hang up", [] { RaiseSignal(SIGHUP); }, 5.0},
                                           Way{"logout", EndSession, 3.5},
                                           Way{"error", FailUnexpectedly, 3.0, 1}));

TEST_P(SafeEndTest, AirThatTheSlidersSwitchedOnIsOff) {
    m_Bench.Find<QSlider>("sldDACValue_0").setValue(20000);
    ASSERT_GT(m_Bench.Bench.FlowLater_bits(), 1000);
    GetParam().End();
    ExpectEnded();
}

TEST_P(SafeEndTest, ProcedureEndsAtItsNextPass) {
    m_Bench.Click("Command3");
    QWidget& window = *WindowBench::TopLevel("frmACUHealthCheck");
    WindowBench::TickIn(window, "chkShort");
    m_Bench.Bench.Events.At(GetParam().At_s, [] { GetParam().End(); });
    QTest::mouseClick(&WindowBench::FindIn<QWidget>(window, "cmdStart"), Qt::LeftButton);
    EXPECT_NEAR(MonotonicSeconds(m_Bench.Bench.Time), GetParam().At_s, 0.1);
    ExpectEnded();
    EXPECT_FALSE(window.isVisible());
}

TEST_P(SafeEndTest, OpenDialogIsRefusedAndNoneIsOpenedAfterwards) {
    QTimer::singleShot(0, [] { GetParam().End(); });
    const Message question{"Go on?", MessageIcon::Question, MessageButtons::YesNo};
    EXPECT_EQ(m_Messages.Ask(question), Answer::No);
    EXPECT_EQ(m_Messages.Ask(question), Answer::No);
    EXPECT_EQ(m_Messages.AskText("Number?", "301", ""), std::nullopt);
    ExpectEnded();
}

TEST(SafeEndAfterError, OutputsThatABoardDoesNotSwitchOffAreNotSaidToBeOff) {
    for (const bool driven : {false, true}) {
        WindowBench bench;
        QtOperator messages;
        StopSignals stopSignals;
        SafeEnd safeEnd(bench.Bench.TheStation, messages, stopSignals,
                        {[] {}, [&bench] { bench.Window.EndUnasked(); }});
        if (driven)
            bench.Find<QSlider>("sldDACValue_0").setValue(20000);
        bench.Bench.Bench.SetFaults(Faults::Parse(std::vector<std::string>{"status:32@SetDAC"}));
        safeEnd.EndAfterError("no such tab");
        // What names a driven board comes before it.
        const std::string text = bench.Bench.Messages.Shown.at(driven ? 1 : 0).Text;
        EXPECT_TRUE(text.starts_with("no such tab")) << text;
        EXPECT_EQ(text.find("have been switched off"), std::string::npos) << text;
        EXPECT_NE(text.find("AIR MAY STILL BE FLOWING"), std::string::npos) << text;
        EXPECT_NE(text.find("close the air supply"), std::string::npos) << text;
    }
}

} // namespace
} // namespace ombrix
