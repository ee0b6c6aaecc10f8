#include "board/eprom/EpromFields.h"
#include "board/eprom/EpromGuard.h"
#include "windows/WindowBench.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTimer>

namespace ombrix {
namespace {

TEST(Detection, OneTabForEachBoardAndTheFirstIsCurrent) {
    WindowBench bench("pair");
    EXPECT_EQ(bench.Window.windowTitle(), "Ombrix [v1.02.0034]");
    EXPECT_EQ(QCoreApplication::applicationName(), "AIB Test Form");
    auto& tabs = bench.Find<QTabBar>("tabAIBs");
    ASSERT_EQ(tabs.count(), 2);
    EXPECT_EQ(tabs.tabText(0), "AIB_123: USB");
    EXPECT_EQ(tabs.tabText(1), "AIB_7: FireWire");
    EXPECT_EQ(bench.LabelText("lblDeviceInfo_3"), "123");
    EXPECT_EQ(bench.LabelText("lblDeviceInfo2_3"), "7B");
    EXPECT_EQ(bench.LabelText("lblDeviceInfo2_0"), "USB");
    EXPECT_EQ(bench.LabelText("lblDeviceInfo_4"), "Simulated Instruments");
    EXPECT_EQ(bench.LabelText("lblProgramming_1"), "2 board(s) detected and programmed");
    EXPECT_FALSE(bench.Find<QWidget>("picNoAIBs").isVisible());
}

TEST(Detection, AnEpromWrittenInPartShowsAndIsOfferedWhatItHeldBefore) {
    WindowBench bench;
    const std::string before = bench.Bench.Bench.Board(0).Eprom().Image();
    EpromWords words;
    for (const std::int32_t address : {16, 20, 1040}) // without capacities it looks blank
        words.WriteEPROM(address, 0);
    EpromGuard(bench.Bench.TheStation, "EPROM Fields").Write(words, [](std::int32_t address) {
        return address < 1040;
    });
    auto& detect = bench.Find<QAction>("mnuDetectAIBs");
    auto& messages = bench.Bench.Messages;
    const auto& strip = bench.Find<QLabel>("lblPartialWrite");
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        messages.Shown.clear();
        messages.Answers = {Answer::Ok, answer};
        detect.trigger();
        ASSERT_GT(messages.Shown.size(), 1U); // first, that the record cannot be read
        EXPECT_TRUE(messages.Shown[1].DefaultsToRefusal) << messages.Shown[1].Text;
        EXPECT_NE(messages.Shown[1].Text.find("written in part: \"EPROM Fields\""),
                  std::string::npos);
        QTest::qWait(250); // for the window's tick
        EXPECT_EQ(strip.isVisible(), answer == Answer::No);
        EXPECT_EQ(bench.Bench.Bench.Board(0).Eprom().Image() == before, answer == Answer::Yes);
    }
}

TEST(Detection, ABoardOfAnotherProgramIsReadOnlyUntilThatHasEnded) {
    WindowBench bench("pair");
    const auto& tabs = bench.Find<QTabBar>("tabAIBs");
    const auto expectReadOnly = [&](bool readOnly) {
        bench.Find<QAction>("mnuDetectAIBs").trigger();
        EXPECT_EQ(tabs.tabText(0), "AIB_123: USB");
        EXPECT_EQ(tabs.tabText(1), readOnly ? "AIB_7: FireWire (read only)" : "AIB_7: FireWire");
        bench.Window.ShowTab(1);
        QTest::qWait(250); // for the panel's ticks, which show the reading and the readiness
        for (const char* name : {"sldDACValue_0", "txtDACVal_2", "chkGIO_0", "cmdVelocity_Init",
                                 "Command3", "cmdSetSerial_2", "cmdAirTestHi", "chkRecordADCs"})
            EXPECT_EQ(bench.Find<QWidget>(name).isEnabled(), !readOnly) << name;
        EXPECT_EQ(bench.Find<QAction>("mnuVelocitySystem").isEnabled(), !readOnly);
        EXPECT_EQ(bench.LabelText("lblDACValue_2"), readOnly ? "--" : "0");
        EXPECT_NE(bench.LabelText("lblADC_2"), "--") << "it can be looked at";
        EXPECT_EQ(bench.LabelText("lblMFCsReady"), readOnly ? "MFCs Not Ready" : "MFCs Ready");
        const auto& notice = bench.Find<QLabel>("lblReadOnly");
        const QString holder =
            QString::fromStdString("in use by " + ombrix::NameOf(bench.Bench.World.Program));
        EXPECT_EQ(notice.isVisible() && notice.text().contains("board 7 (FireWire) is " + holder),
                  readOnly);
        EXPECT_EQ(tabs.tabToolTip(1), readOnly ? "Read only: " + holder + "." : "");
    };
    {
        bench.Bench.TheStation.Claims.ReleaseAll();
        BoardClaims other(bench.Bench.World);
        ASSERT_TRUE(other.Claim(7));
        expectReadOnly(true);
        EXPECT_EQ(bench.LabelText("lblProgramming_0"), "Programming Incomplete");
        EXPECT_EQ(bench.LabelText("lblProgramming_1"), "2 board(s) detected, 1 programmed");
        bench.Window.ShowTab(0);
        EXPECT_TRUE(bench.Find<QWidget>("sldDACValue_2").isEnabled());
    }
    expectReadOnly(false);
}

TEST(Detection, EachTabShowsWhatItsBoardWasTold) {
    WindowBench bench("pair");
    for (const char* ticked : {"chkGIO_3", "chkGIOOn_3", "chkExtGPIO_1"})
        bench.Tick(ticked);
    bench.Find<QLineEdit>("txtDACVal_2").setText("77");
    const auto expectTicked = [&bench](bool ticked, const char* mask) {
        for (const char* name : {"chkGIO_3", "chkGIOOn_3", "chkExtGPIO_1"})
            EXPECT_EQ(bench.Find<QAbstractButton>(name).isChecked(), ticked) << name;
        EXPECT_EQ(bench.LabelText("lblGIOValHex"), mask);
    };
    bench.Window.ShowTab(1);
    expectTicked(false, "1"); // the pin of its valves
    EXPECT_EQ(bench.Find<QLineEdit>("txtDACVal_2").text(), "0");
    // What a procedure tells a board shows too.
    bench.Bench.TheStation.Outputs.SetValve(*bench.Bench.TheStation.CurrentAIB, true);
    bench.Update();
    EXPECT_TRUE(bench.Find<QAbstractButton>("chkGIOOn_0").isChecked());
    bench.Window.ShowTab(0);
    expectTicked(true, "9");
}

TEST(Detection, BoardOfTheChosenTabIsCurrent) {
    WindowBench bench("pair");
    auto& tabs = bench.Find<QTabBar>("tabAIBs");
    bench.Bench.TheStation.AIBList.AIB(1)->SetDAC(2, 4660);
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
    EXPECT_EQ(bench.LabelText("lblDeviceInfo_3"), "7");
    EXPECT_EQ(bench.LabelText("lblDACValue_2"), "1234");
    for (const int chosenAtTheStart : {0, 7}) { // there is no eighth
        bench.Window.ShowTab(chosenAtTheStart);
        EXPECT_EQ(bench.Bench.TheStation.CurrentAIB->BoardIndex(), 0);
    }
}

TEST(Detection, FireWireBoardsHaveNoAnalogSetupAndNoPowerOutputs) {
    WindowBench bench("pair");
    for (const bool fireWire : {false, true}) {
        for (const char* name : {"cmdSetSerial_0", "cmdSetSerial_1", "cmdSetSerial_2",
                                 "chkExtGPIO_0", "chkExtGPIO_1"}) {
            const auto& control = bench.Find<QAbstractButton>(name);
            EXPECT_EQ(control.isEnabledTo(control.parentWidget()),
                      !fireWire || control.objectName() == "cmdSetSerial_2")
                << name;
        }
        QTest::keyClick(&bench.Find<QTabBar>("tabAIBs"), Qt::Key_Right);
    }
}

TEST(Detection, WithoutABoardThePanelSaysWhenItWasTriedAndOffersAnotherTry) {
    WindowBench bench("none");
    EXPECT_EQ(bench.LabelText("lblNoAIBs"), "14:05:09 - No AIBs detected");
    EXPECT_FALSE(bench.Find<QWidget>("picACU").isVisible());
    EXPECT_FALSE(bench.Find<QWidget>("picInfo").isVisible());
    const QSize before = bench.Window.size();
    bench.Plug("acu");
    const auto& button = bench.Find<QAbstractButton>("cmdDetectAIBs");
    EXPECT_EQ(button.text(), "Detect AIBs");
    QString captionThen;
    bench.Bench.Events.At(0.0, [&] {
        captionThen = button.text();
        EXPECT_FALSE(button.isEnabled());
        EXPECT_FALSE(bench.Find<QAction>("mnuDetectAIBs").isEnabled());
        EXPECT_EQ(bench.LabelText("lblAIBInitState"), "Initialising ACU 1: USB");
    });
    bench.Click("cmdDetectAIBs");
    EXPECT_EQ(captionThen, "Detecting AIBs");
    EXPECT_EQ(bench.Find<QTabBar>("tabAIBs").tabText(0), "AIB_301: USB");
    EXPECT_TRUE(bench.Find<QWidget>("picACU").isVisible());
    EXPECT_TRUE(bench.Find<QTimer>("timUpdateInput").isActive());
    QCoreApplication::processEvents();
    EXPECT_EQ(bench.Window.size(), before);
}

TEST(Detection, TabsOfBoardsThatAreGoneAreRemoved) {
    WindowBench bench("pair");
    auto& tabs = bench.Find<QTabBar>("tabAIBs");
    tabs.setCurrentIndex(1);
    bench.Plug("fresh");
    bench.Find<QAction>("mnuDetectAIBs").trigger();
    ASSERT_EQ(tabs.count(), 1);
    EXPECT_EQ(tabs.tabText(0), "AIB_302: USB");
    EXPECT_EQ(bench.LabelText("lblDeviceInfo_3"), "302");
    bench.Plug("none");
    bench.Find<QAction>("mnuDetectAIBs").trigger();
    EXPECT_EQ(tabs.count(), 0);
    EXPECT_TRUE(bench.Find<QWidget>("picNoAIBs").isVisible());
    EXPECT_FALSE(bench.Find<QTimer>("timUpdateInput").isActive());
}

TEST(Detection, PinsAndErrorsAreDealtWithBeforeTheBoardIsShown) {
    WindowBench bench;
    auto& value = bench.Find<QLineEdit>("txtNewValue");
    value.setText("-5");
    PutWord(*bench.Bench.TheStation.CurrentAIB, ACUMemoryMap::CalibrationPoints, 0);
    int asked = 0;
    // Told while the record is read.
    bench.Bench.Messages.WhileAsked = [&](const Message& /*message*/) {
        EXPECT_EQ(bench.Bench.TheStation.CurrentAIB->Directions(), 1);
        EXPECT_EQ(bench.LabelText("lblValueError"), "");
        ++asked;
    };
    bench.Find<QAction>("mnuDetectAIBs").trigger();
    EXPECT_GT(asked, 0);
    EXPECT_EQ(value.text(), "0") << "what can be written is what stands there";
    EXPECT_TRUE(bench.Find<QPushButton>("cmdWriteValue").isEnabled());
}

TEST(Detection, SecondDetectionSwitchesTheOutputsOfEveryBoardOff) {
    WindowBench bench("pair");
    bench.Bench.TheStation.AIBList.AIB(1)->SetDAC(0, 30000);
    bench.Bench.Time.Advance(5.0);
    ASSERT_GT(bench.Bench.TheStation.AIBList.AIB(1)->MyGetADC(0), 25000);
    bench.Find<QAction>("mnuDetectAIBs").trigger();
    bench.Bench.Time.Advance(5.0);
    EXPECT_LT(bench.Bench.TheStation.AIBList.AIB(1)->MyGetADC(0), 100);
}

TEST(Detection, CalibrationSummaryShowsInItsColours) {
    for (const auto& [name, summary, colour, hint] :
         {std::tuple("acu", "12/03/2024 09:41 - QUILLON", QColor(0, 0, 255), false),
          {"fresh", "ACU Data Not Initialised", QColor(192, 64, 0), true}}) {
        WindowBench bench(name);
        const auto& label = bench.Find<QLabel>("lblACUVel_System");
        EXPECT_EQ(label.text(), summary);
        EXPECT_EQ(label.palette().color(QPalette::WindowText), colour);
        EXPECT_EQ(bench.Find<QLabel>("lblIntMsg").isVisible(), hint);
    }
}

TEST(Detection, EveryCommandCanBeGivenButThoseWithoutAFunction) {
    WindowBench bench;
    const QStringList without = {"cmdVelocity_PV16", "cmdPressure_PV17", "cmdACU_PVBoth"};
    const QStringList cancels = {"cmdCancelTest", "cmdCancelAirTest", "cmdCancelAirFlow",
                                 "cmdCancelProcedure", "cmdMark"};
    for (const auto* command : bench.Window.findChildren<QPushButton*>()) {
        if (!command->isVisible() || cancels.contains(command->objectName()))
            continue;
        const bool idle = without.contains(command->objectName());
        EXPECT_EQ(command->isEnabled(), !idle) << command->objectName().toStdString();
        EXPECT_EQ(command->toolTip() == "This button has no function.", idle);
    }
}

} // namespace
} // namespace ombrix
