// The bench tests, started and cancelled by clicks in the main window.
#include "mainwindow/WindowBench.h"
#include "platform/FolderDrive.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QScrollBar>
#include <QSlider>

#include <algorithm>

namespace ombrix {
namespace {

/// The CSV files on drive C:.
std::vector<std::filesystem::path> Files(WindowBench& bench) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(bench.Bench.Folder.Path())) {
        if (entry.path().extension() == ".csv")
            files.push_back(entry.path());
    }
    return files;
}

struct TestCase {
    const char* Bench;
    const char* Start;
    const char* Cancel;
    /// While it runs, at the second.
    double LookAt_s;
    const char* CaptionThen;
    const char* CaptionAfter;
};

class BenchTests : public ::testing::TestWithParam<TestCase> {};

TEST_P(BenchTests, RunFromTheirButtonAndEndWithTheirCancel) {
    const TestCase& c = GetParam();
    WindowBench bench(c.Bench);
    const auto usable = [&bench](const char* name) {
        return bench.Find<QWidget>(name).isEnabled();
    };
    EXPECT_FALSE(usable(c.Cancel));
    bool looked = false;
    bench.Bench.Events.At(c.LookAt_s, [&] {
        looked = true;
        for (const char* name :
             {"cmdTestDigitalMFCs", "cmdTestSpeed", "cmdAirTestHi", "cmdAirTestAll",
              "scrAirTestDelay", "Command", "Command3", "sldDACValue_2", "cmdVelocity_Init"})
            EXPECT_FALSE(usable(name)) << name;
        EXPECT_TRUE(usable(c.Cancel));
        const auto& button = bench.Find<QAbstractButton>(c.Start);
        EXPECT_EQ(button.text(), c.CaptionThen);
        EXPECT_EQ(button.accessibleName(), c.CaptionThen);
        EXPECT_GE(button.width(), button.sizeHint().width()) << "the caption is cut";
        EXPECT_GT(bench.Find<QSlider>("sldDACValue_0").value() +
                      bench.Find<QSlider>("sldDACValue_1").value(),
                  0);
        bench.Click(c.Cancel);
    });
    bench.Click(c.Start);
    EXPECT_TRUE(looked);
    EXPECT_EQ(bench.Find<QAbstractButton>(c.Start).text(), c.CaptionAfter);
    EXPECT_TRUE(usable(c.Start));
    EXPECT_FALSE(usable(c.Cancel));
    EXPECT_EQ(Files(bench).size(), 1U);
    for (int channel = 0; channel < 4; ++channel)
        EXPECT_EQ(bench.Find<QSlider>(QString("sldDACValue_%1").arg(channel)).value(), 0);
    EXPECT_LT(bench.Bench.FlowLater_bits(), TestBench::NoFlow_bits);
}

INSTANTIATE_TEST_SUITE_P(Tests, BenchTests,
                         ::testing::Values(TestCase{"plain", "cmdAirTestHi", "cmdCancelAirTest",
                                                    10.0, "34000 bits", "Run Air Test CH1"},
                                           TestCase{"plain", "cmdAirTestAll", "cmdCancelAirTest",
                                                    10.0, "2000 bits", "Run Air Test All"},
                                           TestCase{"acu", "cmdTestDigitalMFCs", "cmdCancelTest",
                                                    15.0, "Step 1 of 10 (2% Demand)",
                                                    "Test Digital MFCs"},
                                           TestCase{"airflow", "Command", "cmdCancelAirFlow", 7.5,
                                                    "Switch: 0  -  7.50", "Test Air Flow"}));

TEST(BenchTestControls, SteppedSweepFollowsTheControls) {
    WindowBench bench("plain");
    bench.Find<QScrollBar>("scrAirTestStepSize").setValue(65000);
    bench.Find<QScrollBar>("scrAirTestDelay").setValue(120);
    EXPECT_EQ(bench.LabelText("lblAirTestStepSize"), "65000");
    EXPECT_EQ(bench.LabelText("lblAirTestDelay"), "120");
    bench.Tick("chkAirTestBothWays");
    bench.Click("cmdAirTestAll");
    const auto files = Files(bench);
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].filename(), "AirData20240315_140509_D120_S65000.csv");
    const std::string content = ReadWholeFile(files[0]);
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 7);
}

TEST(BenchTestControls, StageOfTheDigitalMFCTestIsShown) {
    WindowBench bench;
    EXPECT_EQ(bench.LabelText("lblDMFCStage"), "[DMFC Stage]");
    QString stage;
    bench.Bench.Events.At(20.0, [&] {
        stage = bench.LabelText("lblDMFCStage");
        bench.Click("cmdCancelTest");
    });
    bench.Click("cmdTestDigitalMFCs");
    EXPECT_TRUE(stage.startsWith("CH0 - 320 - 9.9")) << stage.toStdString();
    EXPECT_EQ(bench.LabelText("lblDMFCStage"), "Cancelled");
}

TEST(BenchTestControls, SpeedTestShowsItsTimesAndItsModes) {
    WindowBench bench;
    std::vector<bool> modes;
    bench.Bench.Events.EveryPass = [&, pass = 0]() mutable {
        bench.Bench.Time.Advance(0.001);
        if (++pass % 500 != 1)
            return;
        QCoreApplication::processEvents();
        const bool digital = bench.Find<QCheckBox>("chkIsDigitalSetup").isChecked();
        if (modes.empty() || modes.back() != digital)
            modes.push_back(digital);
    };
    bench.Click("cmdTestSpeed");
    EXPECT_EQ(bench.LabelText("lblDMFCStage"), "Analogue 2.00 s, digital 2.00 s");
    EXPECT_EQ(modes, (std::vector<bool>{false, true}));
    EXPECT_TRUE(bench.Find<QCheckBox>("chkIsDigitalSetup").isChecked());
}

TEST(BenchTestControls, MissingBoardsAreTold) {
    WindowBench bench("acu");
    bench.Click("Command");
    ASSERT_EQ(bench.Bench.Messages.Shown.size(), 1U);
    EXPECT_EQ(bench.Bench.Messages.Shown[0].Text, "tAIB_Flow AND tAIB_Measure are Nothing!");
    EXPECT_TRUE(bench.Find<QWidget>("Command").isEnabled());
}

TEST(BenchTestControls, ClosingTheWindowEndsTheTestAndKeepsItsData) {
    WindowBench bench;
    bench.Bench.Events.At(15.0, [&bench] { bench.Window.close(); });
    bench.Bench.Events.At(15.5, [&bench] {
        auto* box = bench.Window.findChild<QMessageBox*>("boxWhileRunning");
        ASSERT_NE(box, nullptr);
        QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
    });
    bench.Click("cmdTestDigitalMFCs");
    EXPECT_LT(bench.Bench.Time.Counter(), 16 * bench.Bench.Time.Frequency());
    EXPECT_EQ(Files(bench).size(), 1U);
    QCoreApplication::processEvents();
    EXPECT_FALSE(bench.Window.isVisible());
    EXPECT_LT(bench.Bench.FlowLater_bits(), TestBench::NoFlow_bits);
}

} // namespace
} // namespace ombrix
