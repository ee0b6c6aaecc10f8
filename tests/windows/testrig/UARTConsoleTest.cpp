#include "windows/WindowBench.h"

#include <QAction>
#include <QCheckBox>
#include <QListWidget>
#include <QSlider>
#include <QTimer>

namespace ombrix {
namespace {

class UARTConsoleTest : public ::testing::Test {
  protected:
    void Open(const std::string& bench = "acu", const std::vector<std::string>& faults = {}) {
        m_Bench = std::make_unique<WindowBench>(bench, faults);
        m_Bench->Find<QAction>("mnuUARTs").trigger();
        m_Window = WindowBench::TopLevel("frmUARTs");
    }
    template <class Control>
    Control& Find(const QString& name) {
        return WindowBench::FindIn<Control>(*m_Window, name);
    }
    void Click(const QString& name) {
        QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton);
    }
    QString Label(const QString& name) { return Find<QLabel>(name).text(); }
    void PassATick() {
        QMetaObject::invokeMethod(&Find<QTimer>("timUpdate"), "timeout", Qt::DirectConnection);
    }
    QStringList Errors() {
        QStringList lines;
        for (int row = 0; row < Find<QListWidget>("lstErrors").count(); ++row)
            lines << Find<QListWidget>("lstErrors").item(row)->text();
        return lines;
    }
    double FlowOfChannel(std::int32_t channel) {
        m_Bench->Bench.Time.Advance(5.0);
        Click(QStringLiteral("cmdGet_%1").arg(channel));
        return Label(QStringLiteral("lblADC_%1").arg(channel)).toDouble();
    }

    std::unique_ptr<WindowBench> m_Bench;
    QWidget* m_Window = nullptr;
};

TEST_F(UARTConsoleTest, DemandIsSentAndReadBackOnItsOwnChannel) {
    Open();
    Find<QSlider>("sldDACValue_1").setValue(30000);
    EXPECT_EQ(Label("lblDACValue_1"), "-") << "moving the slider sends nothing";
    Click("cmdSet_1");
    EXPECT_EQ(Label("lblDACValue_1"), "30000");
    EXPECT_NEAR(FlowOfChannel(1), 30000.0, 150.0);
    EXPECT_LT(FlowOfChannel(0), 100.0);
}

TEST_F(UARTConsoleTest, FailedExchangesAreListedWithTheirTime) {
    Open("acu", {"status:32@MFCGetFlowrate", "status:3@MFCSetFlowrate"});
    m_Bench->Bench.Time.Advance(58.0); // 14:05:09 at the start
    Click("cmdGet_1");
    Find<QSlider>("sldDACValue_0").setValue(500);
    Click("cmdSet_0");
    EXPECT_EQ(Errors(), (QStringList{"14:06:07 - Get(1) failed  [AIB Timeout]",
                                     "14:06:07 - Set(0) failed  [AIB Access Denied]"}));
    EXPECT_EQ(Find<QListWidget>("lstErrors").currentRow(), 1);
    EXPECT_EQ(Label("lblADC_1"), "--");
    Click("cmdClear");
    EXPECT_TRUE(Errors().isEmpty());
    EXPECT_EQ(Label("lblDACValue_0"), "-") << "nothing was sent";
}

TEST_F(UARTConsoleTest, TimerReadsTheTickedChannelsInTurnAndNeverWithinATick) {
    Open("acu", {"status:32@MFCGetFlowrate"});
    EXPECT_EQ(Find<QTimer>("timUpdate").interval(), 100);
    m_Bench->Bench.Events.EveryPass = [this] { PassATick(); };
    PassATick();
    EXPECT_TRUE(Errors().isEmpty());
    for (const char* ticked : {"chkGet_1", "chkGet_0"}) {
        WindowBench::TickIn(*m_Window, ticked);
        PassATick();
    }
    m_Bench->Bench.Events.EveryPass = nullptr;
    ASSERT_EQ(Errors().size(), 3);
    EXPECT_TRUE(Errors()[0].contains("Get(1)"));
    EXPECT_TRUE(Errors()[1].contains("Get(0)"));
    EXPECT_TRUE(Errors()[2].contains("Get(1)"));
}

TEST_F(UARTConsoleTest, ConsoleKeepsStillWhileAProcedureRuns) {
    Open();
    {
        const RunningProcedure procedure(m_Bench->Bench.TheStation.Procedures, "test");
        EXPECT_FALSE(Find<QTimer>("timUpdate").isActive());
        EXPECT_FALSE(Find<QWidget>("cmdSet_0").isEnabled());
        EXPECT_FALSE(m_Bench->Find<QAction>("mnuUARTs").isEnabled());
    }
    EXPECT_TRUE(Find<QTimer>("timUpdate").isActive());
    EXPECT_TRUE(Find<QWidget>("cmdSet_0").isEnabled());
}

TEST_F(UARTConsoleTest, ClosingStopsThePollingAndGivesTheChannelsBackToTheSliders) {
    Open();
    m_Bench->Find<QSlider>("sldDACValue_0").setValue(5000);
    for (const int channel : {0, 1}) {
        Find<QSlider>(QStringLiteral("sldDACValue_%1").arg(channel)).setValue(40000);
        Click(QStringLiteral("cmdSet_%1").arg(channel));
    }
    WindowBench::TickIn(*m_Window, "chkGet_0");
    EXPECT_GT(FlowOfChannel(0), 35000.0);
    m_Window->close();
    EXPECT_FALSE(Find<QTimer>("timUpdate").isActive());
    m_Bench->Find<QAction>("mnuUARTs").trigger();
    EXPECT_FALSE(Find<QCheckBox>("chkGet_0").isChecked());
    EXPECT_EQ(Label("lblDACValue_0"), "-");
    EXPECT_NEAR(FlowOfChannel(0), 10000.0, 100.0) << "what the main window shows";
    EXPECT_LT(FlowOfChannel(1), 100.0);
}

TEST_F(UARTConsoleTest, ClosedDuringAProcedureItGivesTheChannelsBackAfterwards) {
    Open();
    Find<QSlider>("sldDACValue_1").setValue(40000);
    Click("cmdSet_1");
    {
        const RunningProcedure procedure(m_Bench->Bench.TheStation.Procedures, "test");
        m_Window->close();
        EXPECT_GT(m_Bench->Bench.FlowLater_bits(), 1000) << "the procedure has the board";
    }
    EXPECT_LT(m_Bench->Bench.FlowLater_bits(), TestBench::NoFlow_bits);
}

TEST_F(UARTConsoleTest, BoardsOfTheMainWindowStayTheOnesItShows) {
    Open("pair");
    EXPECT_EQ(m_Bench->Bench.TheStation.AIBList.AIB(0), m_Bench->Bench.TheStation.CurrentAIB);
    EXPECT_EQ(Label("lblAIBSerial"), "AIB_123: USB");
    m_Bench->Find<QAction>("mnuDetectAIBs").trigger();
    EXPECT_FALSE(m_Window->isVisible()) << "its board is no longer the one shown";
}

TEST_F(UARTConsoleTest, WithoutABoardTheOperatorTriesAgainOrLeavesTheConsole) {
    m_Bench = std::make_unique<WindowBench>("none");
    auto& messages = m_Bench->Bench.Messages;
    messages.Answers = {Answer::Retry, Answer::Cancel};
    m_Bench->Find<QAction>("mnuUARTs").trigger();
    ASSERT_EQ(messages.Shown.size(), 2U);
    EXPECT_EQ(messages.Shown[0].Text, "No AIBs Detected");
    EXPECT_EQ(messages.Shown[0].Buttons, MessageButtons::RetryCancel);
    EXPECT_EQ(WindowBench::TopLevel("frmUARTs"), nullptr);
    m_Bench->Plug("acu");
    m_Bench->Find<QAction>("mnuUARTs").trigger();
    EXPECT_NE(WindowBench::TopLevel("frmUARTs"), nullptr);
}

} // namespace
} // namespace ombrix
