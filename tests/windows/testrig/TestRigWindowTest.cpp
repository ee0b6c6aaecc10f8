#include "benchtests/TestRigRun.h"
#include "platform/text/Paths.h"
#include "windows/WindowBench.h"

#include <QMessageBox>
#include <QSlider>
#include <QTimer>
#include <QTreeWidget>

namespace ombrix {
namespace {

class TestRigWindowTest : public ::testing::Test {
  protected:
    void Open(const std::string& bench) {
        m_Bench = std::make_unique<WindowBench>(bench);
        m_Bench->Click("cmdRunTests");
        m_Options = WindowBench::TopLevel("frmAIBTestRigOptions");
        ASSERT_NE(m_Options, nullptr);
    }
    /// Chooses a job, which runs before this returns.
    void Choose(int job) {
        Button(m_Options, QStringLiteral("cmdOption_%1").arg(job)).click();
        m_Rig = WindowBench::TopLevel("frmAIBTestRig");
        ASSERT_NE(m_Rig, nullptr);
        QCoreApplication::processEvents();
    }
    static QAbstractButton& Button(QWidget* window, const QString& name) {
        return WindowBench::FindIn<QAbstractButton>(*window, name);
    }
    void ClickRig(const QString& name) { QTest::mouseClick(&Button(m_Rig, name), Qt::LeftButton); }
    QString Label(const QString& name) { return WindowBench::FindIn<QLabel>(*m_Rig, name).text(); }
    QStringList Column(int column) {
        QStringList texts;
        for (QTreeWidgetItemIterator row(m_Rig->findChild<QTreeWidget*>("lvwStatus")); *row; ++row)
            texts << (*row)->text(column);
        return texts;
    }
    void At(double at_s, std::function<void()> action) {
        m_Bench->Bench.Events.At(at_s, std::move(action));
    }
    std::int32_t Output() { return m_Bench->Bench.Bench.Board(1).DAC(0); }
    bool LiveTimerRuns() { return m_Bench->Find<QTimer>("timUpdateInput").isActive(); }

    std::unique_ptr<WindowBench> m_Bench;
    QWidget* m_Options = nullptr;
    QWidget* m_Rig = nullptr;
};

TEST_F(TestRigWindowTest, OptionsOfferTheJobsAndHoldTheMainWindow) {
    Open("rig");
    EXPECT_TRUE(m_Options->isModal());
    EXPECT_EQ(Button(m_Options, "cmdOption_0").text(), "1 - Test AIB in Loop Through");
    EXPECT_EQ(Button(m_Options, "cmdOption_1").text(), "2 - Test AIB in Sniffing Mode");
    EXPECT_EQ(Button(m_Options, "cmdOption_2").text(), "3 - Test MFC in Standard Mode");
    EXPECT_FALSE(LiveTimerRuns());
    QCoreApplication::processEvents();
    QTest::keyClick(m_Options, Qt::Key_Escape);
    EXPECT_FALSE(m_Options->isVisible());
    EXPECT_TRUE(LiveTimerRuns());
}

TEST_F(TestRigWindowTest, LoopThroughRunsInItsWindow) {
    Open("rig");
    m_Bench->Find<QSlider>("sldDACValue_2").setValue(10000);
    At(50.0, [this] {
        EXPECT_EQ(Column(1),
                  (QStringList{"Loop Through: Outputs Up", "Loop Through: Outputs Down"}));
        EXPECT_EQ(Column(2), (QStringList{"Complete (Passed)", "Running..."}));
        EXPECT_TRUE(Button(m_Rig, "cmdCancel").isEnabled());
        EXPECT_FALSE(Button(m_Rig, "cmdClose").isEnabled());
        EXPECT_FALSE(m_Bench->Find<QWidget>("cmdRunTests").isEnabled());
        QMetaObject::invokeMethod(&WindowBench::FindIn<QTimer>(*m_Rig, "timUpdateScreen"),
                                  "timeout", Qt::DirectConnection);
        EXPECT_EQ(Label("lblOP_5"), "40959");
        EXPECT_NEAR(Label("lblIP_1").toInt(), 40959, 10);
        EXPECT_NEAR(Label("lblIP_2").toInt(), 0, 10);
    });
    Choose(0);
    EXPECT_FALSE(m_Options->isVisible());
    EXPECT_TRUE(m_Rig->isModal());
    EXPECT_EQ(Label("lblAIBSerial_1"), "Board 2: AIB_22: USB");
    EXPECT_EQ(Column(2), (QStringList{"Complete (Passed)", "Complete (Passed)"}));
    EXPECT_TRUE(Label("lblOutcome").endsWith("_AIBData.csv")) << Label("lblOutcome").toStdString();
    EXPECT_FALSE(LiveTimerRuns()) << "while the rig is open";
    ClickRig("cmdClose");
    EXPECT_FALSE(m_Rig->isVisible());
    EXPECT_TRUE(LiveTimerRuns());
    EXPECT_EQ(m_Bench->Find<QSlider>("sldDACValue_2").value(), 0) << "the job left it at zero";
}

TEST_F(TestRigWindowTest, OtherJobsOpenTheWindowAndRunNothing) {
    for (const int job : {1, 2}) {
        Open("rig");
        Choose(job);
        EXPECT_EQ(Label("lblOutcome"), "This job has no steps.");
        EXPECT_FALSE(m_Bench->Bench.Files.FileExists(Paths::TestRig));
    }
}

TEST_F(TestRigWindowTest, CancelEndsTheJobAndLeavesTheWindowOpen) {
    Open("rig");
    At(10.0, [this] {
        EXPECT_EQ(Output(), 16384);
        ClickRig("cmdCancel");
    });
    Choose(0);
    EXPECT_EQ(Output(), 0);
    EXPECT_EQ(Column(2), (QStringList{"UNKNOWN", "Queued"}));
    EXPECT_EQ(Label("lblOutcome"), "Cancelled.");
    EXPECT_FALSE(Button(m_Rig, "cmdCancel").isEnabled());
    m_Rig->close();
    m_Bench->Click("cmdRunTests");
    Choose(0); // and once more, to the end
    EXPECT_EQ(Column(2), (QStringList{"Complete (Passed)", "Complete (Passed)"}));
}

TEST_F(TestRigWindowTest, ClosingItOrTheMainWindowInMidRunEndsTheJobSafely) {
    for (const bool mainWindow : {false, true}) {
        Open("rig");
        QWidget& main = m_Bench->Window;
        At(10.0, [&] { EXPECT_FALSE((mainWindow ? main : *m_Rig).close()); });
        if (mainWindow) {
            At(10.5, [&main] {
                auto* box = main.findChild<QMessageBox*>("boxWhileRunning");
                ASSERT_NE(box, nullptr);
                QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
            });
        }
        Choose(0);
        EXPECT_LT(m_Bench->Bench.Time.Counter(), 11 * m_Bench->Bench.Time.Frequency());
        EXPECT_EQ(Output(), 0);
        QCoreApplication::processEvents();
        EXPECT_EQ(main.isVisible(), !mainWindow);
        EXPECT_EQ(LiveTimerRuns(), !mainWindow);
        EXPECT_FALSE(m_Rig->isVisible());
    }
}

TEST_F(TestRigWindowTest, SingleBoardIsToldAndNothingRuns) {
    Open("acu");
    Choose(0);
    ASSERT_EQ(m_Bench->Bench.Messages.Shown.size(), 1U);
    EXPECT_NE(m_Bench->Bench.Messages.Shown[0].Text.find("Board 2 is missing."), std::string::npos);
    EXPECT_FALSE(m_Bench->Bench.Files.FileExists(Paths::TestRig));
    EXPECT_EQ(m_Rig->findChild<QLabel*>("lblAIBSerial_1"), nullptr);
}

} // namespace
} // namespace ombrix
