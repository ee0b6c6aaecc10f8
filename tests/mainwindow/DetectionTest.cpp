#include "mainwindow/WindowBench.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTimer>

namespace ombrix {
namespace {

TEST(Detection, CaptionAndTitleCarryVersionAndProgram) {
    WindowBench bench;
    EXPECT_EQ(bench.Window.windowTitle(), "Ombrix [v1.02.0034]");
    EXPECT_EQ(QCoreApplication::applicationName(), "AIB Test Form");
}

TEST(Detection, OneTabForEachBoardAndTheFirstIsCurrent) {
    WindowBench bench("pair");
    auto& tabs = bench.Find<QTabBar>("tabAIBs");
    ASSERT_EQ(tabs.count(), 2);
    EXPECT_EQ(tabs.tabText(0), "AIB_123: USB");
    EXPECT_EQ(tabs.tabText(1), "AIB_7: FireWire");
    EXPECT_EQ(bench.LabelText("lblDeviceInfo_3"), "123");
    EXPECT_EQ(bench.LabelText("lblDeviceInfo2_3"), "7B");
    EXPECT_EQ(bench.LabelText("lblDeviceInfo2_0"), "USB");
    EXPECT_EQ(bench.LabelText("lblDeviceInfo_4"), "Simulated Instruments");
    EXPECT_EQ(bench.LabelText("lblProgramming_0"), "Programming Completed");
    EXPECT_EQ(bench.LabelText("lblProgramming_1"), "2 board(s) detected and programmed");
    EXPECT_TRUE(bench.Find<QWidget>("picACU").isVisible());
    EXPECT_TRUE(bench.Find<QWidget>("picInfo").isVisible());
    EXPECT_FALSE(bench.Find<QWidget>("picNoAIBs").isVisible());
}

TEST(Detection, ClickOnTheSecondTabMakesItsBoardCurrent) {
    WindowBench bench("pair");
    auto& tabs = bench.Find<QTabBar>("tabAIBs");
    bench.Bench.TheStation.g_AIBList.AIB(1)->SetDAC(2, 4660);
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
    EXPECT_EQ(bench.Bench.TheStation.g_CurrentAIB->BoardIndex(), 1);
    EXPECT_EQ(bench.LabelText("lblDeviceInfo_3"), "7");
    EXPECT_EQ(bench.LabelText("lblDeviceInfo2_0"), "FireWire");
    EXPECT_EQ(bench.LabelText("lblDACValue_2"), "1234");
}

TEST(Detection, TheBoardChosenAtTheStartIsShownIfItIsThere) {
    WindowBench bench("pair");
    bench.Window.ShowTab(1);
    EXPECT_EQ(bench.Bench.TheStation.g_CurrentAIB->BoardIndex(), 1);
    bench.Window.ShowTab(7);
    EXPECT_EQ(bench.Bench.TheStation.g_CurrentAIB->BoardIndex(), 1);
}

TEST(Detection, FireWireBoardsHaveNoAnalogSetupAndNoPowerOutputs) {
    WindowBench bench("pair");
    const auto isOffered = [&bench](const QString& name) {
        auto& control = bench.Find<QAbstractButton>(name);
        return control.isEnabledTo(control.parentWidget());
    };
    const std::vector<QString> usbOnly = {"cmdSetSerial_0", "cmdSetSerial_1", "chkExtGPIO_0",
                                          "chkExtGPIO_1"};
    for (const QString& name : usbOnly)
        EXPECT_TRUE(isOffered(name)) << name.toStdString();
    auto& tabs = bench.Find<QTabBar>("tabAIBs");
    QTest::keyClick(&tabs, Qt::Key_Right);
    for (const QString& name : usbOnly)
        EXPECT_FALSE(isOffered(name)) << name.toStdString();
    EXPECT_TRUE(isOffered("cmdSetSerial_2"));
}

TEST(Detection, WithoutABoardThePanelSaysWhenItWasTriedAndOffersAnotherTry) {
    WindowBench bench("none");
    EXPECT_EQ(bench.LabelText("lblNoAIBs"), "14:05:09 - No AIBs detected");
    EXPECT_TRUE(bench.Find<QWidget>("picNoAIBs").isVisible());
    EXPECT_FALSE(bench.Find<QWidget>("picACU").isVisible());
    EXPECT_FALSE(bench.Find<QWidget>("picInfo").isVisible());

    bench.Plug("acu");
    EXPECT_EQ(bench.Find<QAbstractButton>("cmdDetectAIBs").text(), "Detect AIBs");
    bench.Click("cmdDetectAIBs");
    EXPECT_EQ(bench.Find<QTabBar>("tabAIBs").tabText(0), "AIB_301: USB");
    EXPECT_TRUE(bench.Find<QWidget>("picACU").isVisible());
    EXPECT_TRUE(bench.Find<QTimer>("timUpdateInput").isActive());
}

TEST(Detection, PanelsThatAppearDoNotMakeTheWindowGrow) {
    WindowBench bench("none");
    const QSize before = bench.Window.size();
    bench.Plug("acu");
    bench.Click("cmdDetectAIBs");
    QCoreApplication::processEvents();
    EXPECT_EQ(bench.Window.size(), before);
}

TEST(Detection, ButtonIsDisabledAndSaysSoWhileDetecting) {
    WindowBench bench("none");
    bench.Plug("acu");
    QString caption;
    bool enabled = true;
    bench.Bench.Events.At(0.0, [&] {
        const auto& button = bench.Find<QAbstractButton>("cmdDetectAIBs");
        caption = button.text();
        enabled = button.isEnabled();
        EXPECT_EQ(bench.LabelText("lblAIBInitState"), "Initialising ACU 1: USB");
        EXPECT_FALSE(bench.Find<QAction>("mnuDetectAIBs").isEnabled());
    });
    bench.Click("cmdDetectAIBs");
    EXPECT_EQ(caption, "Detecting AIBs");
    EXPECT_FALSE(enabled);
}

TEST(Detection, TabsOfBoardsThatAreGoneAreRemoved) {
    WindowBench bench("pair");
    auto& tabs = bench.Find<QTabBar>("tabAIBs");
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
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

TEST(Detection, SecondDetectionSwitchesTheOutputsOfEveryBoardOff) {
    WindowBench bench("pair");
    bench.Bench.TheStation.g_AIBList.AIB(1)->SetDAC(0, 30000);
    bench.Bench.Time.Advance(5.0);
    ASSERT_GT(bench.Bench.TheStation.g_AIBList.AIB(1)->MyGetADC(0), 25000);
    bench.Find<QAction>("mnuDetectAIBs").trigger();
    bench.Bench.Time.Advance(5.0);
    EXPECT_LT(bench.Bench.TheStation.g_AIBList.AIB(1)->MyGetADC(0), 100);
}

TEST(Detection, CalibrationSummaryShowsInItsColours) {
    WindowBench bench("acu");
    EXPECT_EQ(bench.LabelText("lblACUVel_System"), "12/03/2024 09:41 - QUILLON");
    EXPECT_EQ(bench.Find<QLabel>("lblACUVel_System").palette().color(QPalette::WindowText),
              QColor(0, 0, 255));
    EXPECT_FALSE(bench.Find<QLabel>("lblIntMsg").isVisible());
    EXPECT_EQ(bench.Find<QLineEdit>("txtMFCNumber").text(), "M9200301A");
}

TEST(Detection, UninitialisedRecordShowsAsSuchWithTheHint) {
    WindowBench bench("fresh");
    EXPECT_EQ(bench.LabelText("lblACUPresure_Audit"), "ACU Data Not Initialised");
    EXPECT_EQ(bench.Find<QLabel>("lblACUPresure_Audit").palette().color(QPalette::WindowText),
              QColor(192, 64, 0));
    EXPECT_TRUE(bench.Find<QLabel>("lblIntMsg").isVisible());
}

TEST(Detection, EveryCommandCanBeGivenButThoseWithoutAFunction) {
    WindowBench bench;
    const QStringList without = {"cmdVelocity_PV16", "cmdPressure_PV17", "cmdACU_PVBoth"};
    const QStringList cancels = {"cmdCancelTest", "cmdCancelAirTest", "cmdCancelAirFlow"};
    for (const auto* command : bench.Window.findChildren<QPushButton*>()) {
        if (!command->isVisible() || cancels.contains(command->objectName()))
            continue;
        EXPECT_EQ(command->isEnabled(), !without.contains(command->objectName()))
            << command->objectName().toStdString();
    }
}

} // namespace
} // namespace ombrix
