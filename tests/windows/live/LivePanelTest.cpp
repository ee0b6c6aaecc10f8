#include "windows/WindowBench.h"
#include "windows/live/DACPanel.h"

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

AIB& Board(WindowBench& bench) {
    return *bench.Bench.TheStation.CurrentAIB;
}

TEST(LivePanel, TypedNumberIsSentWithinTheRangeAndShownInTheChosenBase) {
    WindowBench bench;
    bench.Update();
    for (const auto& [typed, sent, hexadecimal] :
         {std::tuple("70000", 65534, "FFFE"),
          {"-5", 0, "0"},
          {"0xfE", 254, "FE"},
          {"201", 201, "C9"}, // the slider's own change would send 200
          {"12x", 201, "C9"}}) {
        Type(bench, "txtDACVal_2", typed);
        EXPECT_EQ(Board(bench).DAC(2), sent);
        EXPECT_EQ(bench.Find<QSlider>("sldDACValue_2").value(), sent / 2);
        EXPECT_EQ(bench.LabelText("lblDACValue_2"), hexadecimal);
    }
    bench.Tick("optHexBin_1");
    EXPECT_EQ(bench.LabelText("lblDACValue_2"), "201");
}

TEST(LivePanel, ATypedValueIsMarkedUntilItIsTakenAndAWrongOneSaysWhy) {
    WindowBench bench;
    auto& field = bench.Find<QLineEdit>("txtDACVal_2");
    const auto ground = [&] { return field.palette().color(QPalette::Base); };
    const QColor usual = ground();
    Type(bench, "txtDACVal_2", "12x");
    const QColor wrong = ground();
    EXPECT_GT(wrong.red(), wrong.green() + 20);
    EXPECT_EQ(bench.LabelText("lblDACNote_2"), "Not a Number");
    field.selectAll();
    QTest::keyClicks(&field, "500");
    EXPECT_EQ(bench.LabelText("lblDACNote_2"), "Enter to set");
    EXPECT_NE(ground(), usual);
    EXPECT_NE(ground(), wrong);
    bench.Bench.TheStation.Outputs.Set(Board(bench), 2, 100);
    EXPECT_EQ(field.text(), "500") << "not dropped by what others tell";
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_EQ(field.text(), "100");
    EXPECT_EQ(bench.LabelText("lblDACNote_2"), "");
    EXPECT_EQ(ground(), usual);
}

TEST(LivePanel, BitsStandInUnitsTooAsFarAsTheUnitIsKnown) {
    for (const auto& [name, flow] : {std::pair("acu", " ml/min"), {"fresh", " %"}}) {
        WindowBench bench(name);
        Type(bench, "txtDACVal_0", "32767");
        bench.Bench.Time.Advance(5.0);
        bench.Update();
        EXPECT_EQ(bench.LabelText("lblDACShare_0"), "50.0 %");
        const QString measured = bench.LabelText("lblADCUnits_0");
        ASSERT_TRUE(measured.endsWith(flow)) << measured.toStdString();
        const float full = flow == std::string(" %") ? 100.0F : 5000.0F;
        EXPECT_NEAR(measured.chopped(static_cast<int>(std::strlen(flow))).toFloat(), full / 2,
                    full / 50);
        EXPECT_EQ(bench.LabelText("lblADCUnits_2").endsWith(" mBar"), full > 100.0F);
    }
}

TEST(LivePanel, ReadingsOfManyDigitsDoNotWidenTheWindow) {
    WindowBench bench;
    auto& panel = bench.Find<QWidget>("picACU");
    const int usual = panel.minimumSizeHint().width();
    for (const char* name : {"lblDACValue_0", "lblADC_0", "lblADCUnits_0", "lblGIOInputVal_5",
                             "Label2", "Label3", "lblRecorded"}) {
        bench.Find<QLabel>(name).setText("-2147483648");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        EXPECT_EQ(panel.minimumSizeHint().width(), usual) << name;
    }
}

TEST(LivePanel, AnMFCNumberThatIsNotInTheRecordIsMarked) {
    WindowBench bench;
    auto& field = bench.Find<QLineEdit>("txtMFCNumber");
    field.selectAll();
    for (const auto& [typed, note] : {std::pair("M9200301A", ""),
                                      {"B", "Not in the record yet"},
                                      {"BCD", "Too long: a unit holds 12 characters"}}) {
        QTest::keyClicks(&field, typed);
        EXPECT_EQ(bench.LabelText("lblMFCNumberNote"), note);
    }
}

TEST(LivePanel, SliderSendsTwiceItsPositionAndShowsWhatOthersSend) {
    WindowBench bench;
    auto& slider = bench.Find<QSlider>("sldDACValue_3");
    slider.setValue(100);
    EXPECT_EQ(Board(bench).DAC(3), 200);
    EXPECT_EQ(bench.LabelText("lblDACValue_3"), "C8");
    bench.Bench.TheStation.Outputs.Set(Board(bench), 3, 101);
    EXPECT_EQ(slider.value(), 50);
    EXPECT_EQ(bench.LabelText("lblDACValue_3"), "65");
    EXPECT_EQ(Board(bench).DAC(3), 101) << "the slider that follows sends nothing";
}

TEST(LivePanel, ReadingsFollowTheOutputs) {
    WindowBench bench("plain");
    bench.Tick("optHexBin_1");
    Type(bench, "txtDACVal_0", "30000");
    bench.Bench.Time.Advance(5.0);
    bench.Update();
    EXPECT_NEAR(bench.LabelText("lblADC_0").toInt(), 30000, 300);
    EXPECT_EQ(bench.LabelText("lblMFCsReady"), "MFCs Ready");
    bench.Tick("chkIsDigitalSetup"); // the plain board has analogue MFCs
    EXPECT_TRUE(Board(bench).IsDigitalSetup());
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

TEST(LivePanel, PinsAreSwitchedAndTheirDirectionChoosesWhatTheyShow) {
    WindowBench bench;
    EXPECT_TRUE(bench.Find<QLabel>("lblGIOInputVal_3").isVisible());
    EXPECT_EQ(bench.LabelText("lblGIOValHex"), "1");
    bench.Tick("chkGIO_3");
    EXPECT_EQ(bench.LabelText("lblGIOValHex"), "9");
    EXPECT_FALSE(bench.Find<QLabel>("lblGIOInputVal_3").isVisible());
    // Pin 3 reads back its own level only as an output of the board.
    bench.Tick("chkGIOOn_3");
    std::int32_t level = 0;
    Board(bench).GetGPI(3, level);
    EXPECT_EQ(level, 1);
    for (const char* power : {"1", "0"}) {
        bench.Tick("chkExtGPIO_1");
        bench.Update();
        EXPECT_EQ(bench.LabelText("lblGIOInputVal_9"), power);
    }
}

QColor PressureBackground(WindowBench& bench) {
    return bench.Find<QLabel>("Label2").palette().color(QPalette::Window);
}

TEST(LivePanel, PressureIsRedWhileItStandsStill) {
    WindowBench bench("acu", {"pressure-frozen"});
    bench.Update();
    const QString pressure = bench.LabelText("Label2");
    EXPECT_EQ(bench.LabelText("Label3").toInt(nullptr, 16), pressure.toInt());
    bench.Bench.Time.Advance(9.99);
    bench.Update();
    EXPECT_EQ(PressureBackground(bench), QColor(Qt::white));
    bench.Bench.Time.Advance(0.02);
    bench.Update();
    EXPECT_EQ(PressureBackground(bench), QColor(255, 0, 0));
    bench.Plug("acu");
    Type(bench, "txtDACVal_0", "60000"); // the back-pressure rises
    bench.Bench.Time.Advance(5.0);
    bench.Update();
    ASSERT_NE(bench.LabelText("Label2"), pressure);
    bench.Plug("acu", {"pressure-frozen"}); // stands still from here on
    bench.Update();
    bench.Update();
    EXPECT_EQ(PressureBackground(bench), QColor(Qt::white));
}

TEST(LivePanel, FailedReadingsShowNoValueAndSayWhyUntilTheNextGoodOne) {
    WindowBench bench("acu", {"status:32@GetGPI", "status:32@GetADC", "status:32@ReadReg",
                              "status:32@MFCGetFlowrate"});
    bench.Update();
    for (const char* name : {"lblADC_0", "lblADC_2", "lblGIOInputVal_5", "Label2", "Label3"}) {
        EXPECT_EQ(bench.LabelText(name), "--") << name;
        EXPECT_EQ(bench.Find<QLabel>(name).toolTip(), "AIB Timeout") << name;
    }
    bench.Plug("acu");
    bench.Update();
    EXPECT_GT(bench.LabelText("Label2").toInt(), 0);
    EXPECT_TRUE(bench.Find<QLabel>("Label2").toolTip().isEmpty());
}

TEST(LivePanel, NothingCanBeOperatedWhileAProcedureRuns) {
    WindowBench bench("pair");
    const auto expectUsable = [&bench](bool usable) {
        for (const char* name :
             {"sldDACValue_2", "txtDACVal_2", "chkGIO_0", "cmdUpdate", "Command3", "tabAIBs",
              "chkIsDigitalSetup", "cmdVelocity_Init", "cmdPressure_Init", "cmdACU_InitBoth",
              "cmdClearPV17", "txtMFCNumber", "cmdCreateACUInfoDoc", "cmdSetSerial_2"})
            EXPECT_EQ(bench.Find<QWidget>(name).isEnabled(), usable) << name;
    };
    {
        const RunningProcedure procedure(bench.Bench.TheStation.Procedures, "test");
        expectUsable(false);
    }
    expectUsable(true);
}

TEST(LivePanel, GoesOnDuringAProcedureWithWhatThatReadsAndNothingElse) {
    WindowBench bench;
    QStringList inputs;
    bool sliderTakesValues = true;
    bench.Bench.Events.At(30.0, [&] {
        QTest::qWait(100); // for a tick of the panel
        inputs << bench.LabelText("lblADC_0") << bench.LabelText("lblADC_3");
        sliderTakesValues = bench.Find<QSlider>("sldDACValue_0").isEnabled();
        EXPECT_TRUE(bench.Find<QLabel>("lblADC_0").isEnabled());
        bench.Click("cmdCancelTest");
    });
    bench.Click("cmdTestDigitalMFCs");
    ASSERT_EQ(inputs.size(), 2);
    EXPECT_GT(inputs[0].toInt(nullptr, 16), 0);
    EXPECT_EQ(inputs[1], "--") << "the test of the MFCs reads no other input";
    EXPECT_FALSE(sliderTakesValues);
}

} // namespace
} // namespace ombrix
