#include "mainwindow/DACPanel.h"
#include "mainwindow/WindowBench.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QSlider>
#include <QTabBar>
#include <QTimer>

namespace ombrix {
namespace {

void Type(WindowBench& bench, const QString& field, const QString& text) {
    auto& edit = bench.Find<QLineEdit>(field);
    edit.selectAll();
    QTest::keyClicks(&edit, text);
    QTest::keyClick(&edit, Qt::Key_Return);
}

clsAIB& Board(WindowBench& bench) {
    return *bench.Bench.TheStation.g_CurrentAIB;
}

TEST(LivePanel, TypedValueBeyondTheRangeSendsTheLargestAllowed) {
    WindowBench bench;
    bench.Update();
    Type(bench, "txtDACVal_1", "70000");
    EXPECT_EQ(Board(bench).DAC(1), 65534);
    EXPECT_EQ(bench.Find<QSlider>("sldDACValue_1").value(), 32767);
    EXPECT_EQ(bench.LabelText("lblDACValue_1"), "FFFE");
}

TEST(LivePanel, TypedTextThatIsNoNumberSendsNothing) {
    WindowBench bench;
    Type(bench, "txtDACVal_2", "1200");
    Type(bench, "txtDACVal_2", "12x");
    EXPECT_EQ(Board(bench).DAC(2), 1200);
    Type(bench, "txtDACVal_2", "-5");
    EXPECT_EQ(Board(bench).DAC(2), 0);
}

TEST(LivePanel, SliderSendsTwiceItsPosition) {
    WindowBench bench;
    bench.Find<QSlider>("sldDACValue_3").setValue(100);
    EXPECT_EQ(Board(bench).DAC(3), 200);
    EXPECT_EQ(bench.LabelText("lblDACValue_3"), "C8");
}

TEST(LivePanel, OddValueIsSentAsTypedThoughTheSliderHoldsHalfOfIt) {
    WindowBench bench;
    Type(bench, "txtDACVal_2", "201");
    EXPECT_EQ(Board(bench).DAC(2), 201); // the slider's own change would have sent 200
    EXPECT_EQ(bench.Find<QSlider>("sldDACValue_2").value(), 100);
}

TEST(LivePanel, ShownPositionMovesTheSliderAndSendsNothing) {
    WindowBench bench;
    Board(bench).SetDAC(2, 30000);
    bench.Window.findChild<DACPanel*>()->Show(2, 100);
    EXPECT_EQ(bench.Find<QSlider>("sldDACValue_2").value(), 100);
    EXPECT_EQ(bench.LabelText("lblDACValue_2"), "C8");
    EXPECT_EQ(Board(bench).DAC(2), 30000);
}

TEST(LivePanel, BaseOfTheNumbersFollowsTheChoice) {
    WindowBench bench;
    Type(bench, "txtDACVal_2", "4660");
    EXPECT_EQ(bench.LabelText("lblDACValue_2"), "1234");
    bench.Tick("optHexBin_1");
    EXPECT_EQ(bench.LabelText("lblDACValue_2"), "4660");
    bench.Tick("optHexBin_0");
    EXPECT_EQ(bench.LabelText("lblDACValue_2"), "1234");
}

TEST(LivePanel, ReadingsFollowTheOutputs) {
    WindowBench bench("plain");
    bench.Tick("optHexBin_1");
    Type(bench, "txtDACVal_0", "30000");
    bench.Bench.Time.Advance(5.0);
    bench.Update();
    EXPECT_NEAR(bench.LabelText("lblADC_0").toInt(), 30000, 300);
    EXPECT_EQ(bench.LabelText("lblMFCsReady"), "MFCs Ready");
    EXPECT_FALSE(bench.Find<QLabel>("lblMFCsReady").font().bold());
}

TEST(LivePanel, MFCsThatAreNotReadyTakeNoDemand) {
    WindowBench bench("acu", {"not-ready:1"});
    bench.Update();
    const auto& label = bench.Find<QLabel>("lblMFCsReady");
    EXPECT_EQ(label.text(), "MFCs Not Ready");
    EXPECT_TRUE(label.font().bold());
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(255, 0, 0));
    for (const int channel : {0, 1, 2, 3}) {
        const bool usable = channel >= 2;
        EXPECT_EQ(bench.Find<QSlider>(QString("sldDACValue_%1").arg(channel)).isEnabled(), usable);
        EXPECT_EQ(bench.Find<QLineEdit>(QString("txtDACVal_%1").arg(channel)).isEnabled(), usable);
    }
}

TEST(LivePanel, DirectionMaskIsSentAndChoosesWhatAPinShows) {
    WindowBench bench;
    EXPECT_TRUE(bench.Find<QCheckBox>("chkGIO_0").isChecked());
    EXPECT_TRUE(bench.Find<QCheckBox>("chkGIOOn_0").isVisible());
    EXPECT_TRUE(bench.Find<QLabel>("lblGIOInputVal_3").isVisible());
    EXPECT_EQ(bench.LabelText("lblGIOValHex"), "1");

    bench.Tick("chkGIO_3");
    EXPECT_EQ(bench.LabelText("lblGIOValHex"), "9");
    EXPECT_TRUE(bench.Find<QCheckBox>("chkGIOOn_3").isVisible());
    EXPECT_FALSE(bench.Find<QLabel>("lblGIOInputVal_3").isVisible());
    // Pin 3 reads back its own level only as an output of the board.
    bench.Tick("chkGIOOn_3");
    std::int32_t level = 0;
    Board(bench).GetGPI(3, level);
    EXPECT_EQ(level, 1);
}

TEST(LivePanel, PowerBoxesSwitchTheExtendedOutputs) {
    WindowBench bench;
    bench.Update();
    ASSERT_EQ(bench.LabelText("lblGIOInputVal_9"), "0");
    bench.Tick("chkExtGPIO_1");
    bench.Update();
    EXPECT_EQ(bench.LabelText("lblGIOInputVal_9"), "1");
    bench.Tick("chkExtGPIO_1");
    bench.Update();
    EXPECT_EQ(bench.LabelText("lblGIOInputVal_9"), "0");
}

QColor PressureBackground(WindowBench& bench) {
    return bench.Find<QLabel>("Label2").palette().color(QPalette::Window);
}

TEST(LivePanel, PressureThatStandsStillTurnsRed) {
    WindowBench bench("acu", {"pressure-frozen"});
    bench.Update();
    const QString pressure = bench.LabelText("Label2");
    EXPECT_EQ(bench.LabelText("Label3").toInt(nullptr, 16), pressure.toInt());
    bench.Bench.Time.Advance(9.99);
    bench.Update();
    EXPECT_EQ(PressureBackground(bench), QColor(Qt::white));
    bench.Bench.Time.Advance(0.02);
    bench.Update();
    EXPECT_EQ(bench.LabelText("Label2"), pressure);
    EXPECT_EQ(PressureBackground(bench), QColor(255, 0, 0));
}

TEST(LivePanel, PressureThatMovesAgainTurnsWhite) {
    WindowBench bench("acu", {"pressure-frozen"});
    bench.Update();
    bench.Bench.Time.Advance(20.0);
    bench.Update();
    ASSERT_EQ(PressureBackground(bench), QColor(255, 0, 0));
    const QString before = bench.LabelText("Label2");

    bench.Plug("acu");
    Type(bench, "txtDACVal_0", "60000"); // the back-pressure rises
    bench.Bench.Time.Advance(5.0);
    bench.Update();
    ASSERT_NE(bench.LabelText("Label2"), before);
    bench.Plug("acu", {"pressure-frozen"}); // stands still from here on
    bench.Update();
    bench.Update();
    EXPECT_EQ(PressureBackground(bench), QColor(Qt::white));
}

TEST(LivePanel, FailedReadingsShowNoValueAndSayWhy) {
    WindowBench bench("acu", {"status:32@GetGPI", "status:32@GetADC", "status:32@ReadReg",
                              "status:32@MFCGetFlowrate"});
    bench.Update();
    for (const char* name : {"lblADC_0", "lblADC_2", "lblGIOInputVal_5", "Label2", "Label3"}) {
        EXPECT_EQ(bench.LabelText(name), "--") << name;
        EXPECT_EQ(bench.Find<QLabel>(name).toolTip(), "AIB Timeout") << name;
    }
}

TEST(LivePanel, ValuesComeBackWithoutTheReasonOfTheFailure) {
    WindowBench bench("acu", {"status:32@ReadReg"});
    bench.Update();
    ASSERT_EQ(bench.LabelText("Label2"), "--");
    bench.Plug("acu");
    bench.Update();
    EXPECT_GT(bench.LabelText("Label2").toInt(), 0);
    EXPECT_TRUE(bench.Find<QLabel>("Label2").toolTip().isEmpty());
}

TEST(LivePanel, DigitalSetupIsShownAndOverridden) {
    WindowBench bench("acu");
    EXPECT_TRUE(bench.Find<QCheckBox>("chkIsDigitalSetup").isChecked());
    bench.Tick("chkIsDigitalSetup");
    EXPECT_FALSE(Board(bench).IsDigitalSetup());
}

TEST(LivePanel, TimersRunAtTheirIntervals) {
    WindowBench bench;
    EXPECT_EQ(bench.Find<QTimer>("timUpdateInput").interval(), 50);
    EXPECT_TRUE(bench.Find<QTimer>("timUpdateInput").isActive());
    EXPECT_EQ(bench.Find<QTimer>("timRecordData").interval(), 20);
    EXPECT_FALSE(bench.Find<QTimer>("timRecordData").isActive());
}

TEST(LivePanel, NothingCanBeOperatedWhileAProcedureRuns) {
    WindowBench bench("pair");
    {
        const RunningProcedure procedure(bench.Bench.TheStation.Procedures, [] {});
        EXPECT_FALSE(bench.Find<QTimer>("timUpdateInput").isActive());
        for (const char* name : {"sldDACValue_2", "txtDACVal_2", "chkGIO_0", "cmdUpdate",
                                 "Command3", "tabAIBs", "chkIsDigitalSetup"})
            EXPECT_FALSE(bench.Find<QWidget>(name).isEnabled()) << name;
    }
    EXPECT_TRUE(bench.Find<QTimer>("timUpdateInput").isActive());
    EXPECT_TRUE(bench.Find<QWidget>("Command3").isEnabled());
    EXPECT_TRUE(bench.Find<QTabBar>("tabAIBs").isEnabled());
}

} // namespace
} // namespace ombrix
