// The bench tests, started and cancelled by clicks in the main window.
#include "platform/os/FolderDrive.h"
#include "windows/WindowBench.h"

#include <QCheckBox>
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
    int Slider0;
    int Slider1;
    const char* CaptionThen;
    const char* StageThen;
    const char* CaptionAfter;
};

void ExpectToRunAlone(WindowBench& bench, const TestCase& c) {
    for (const char* name :
         {"cmdTestDigitalMFCs", "cmdTestSpeed", "cmdAirTestHi", "cmdAirTestAll", "scrAirTestDelay",
          "Command", "Command3", "sldDACValue_2", "cmdVelocity_Init"})
        EXPECT_FALSE(bench.Find<QWidget>(name).isEnabled()) << name;
    EXPECT_TRUE(bench.Find<QWidget>(c.Cancel).isEnabled());
    const auto& button = bench.Find<QAbstractButton>(c.Start);
    EXPECT_TRUE(bench.LabelText("lblDMFCStage").startsWith(c.StageThen));
    EXPECT_EQ(button.text(), c.CaptionThen);
    EXPECT_EQ(button.accessibleName(), c.CaptionThen);
    EXPECT_GE(button.width(), button.sizeHint().width()) << "the caption is cut";
    EXPECT_EQ(bench.Find<QSlider>("sldDACValue_0").value(), c.Slider0);
    EXPECT_EQ(bench.Find<QSlider>("sldDACValue_1").value(), c.Slider1);
}

TEST(BenchTests, RunFromTheirButtonAndEndWithTheirCancel) {
    for (const TestCase& c :
         {TestCase{"plain", "cmdAirTestHi", "cmdCancelAirTest", 10.0, 17000, 17000, "34000 bits",
                   "[DMFC Stage]", "Run Air Test CH1"},
          TestCase{"plain", "cmdAirTestAll", "cmdCancelAirTest", 10.0, 1000, 1000, "2000 bits",
                   "[DMFC Stage]", "Run Air Test All"},
          TestCase{"acu", "cmdTestDigitalMFCs", "cmdCancelTest", 15.02, 656, 0,
                   "Step 1 of 10 (2% Demand)", "CH0 - 221 - 5.00 - ", "Test Digital MFCs"},
          TestCase{"airflow", "Command", "cmdCancelAirFlow", 7.5, 0, 9830, "Switch: 0  -  7.50",
                   "[DMFC Stage]", "Test Air Flow"}}) {
        SCOPED_TRACE(c.Start);
        WindowBench bench(c.Bench);
        EXPECT_FALSE(bench.Find<QWidget>(c.Cancel).isEnabled());
        bench.Bench.Events.At(c.LookAt_s, [&] {
            ExpectToRunAlone(bench, c);
            bench.Click(c.Cancel);
        });
        bench.Click(c.Start);
        EXPECT_LT(bench.Bench.Time.Counter(), 16 * bench.Bench.Time.Frequency());
        EXPECT_EQ(bench.Find<QAbstractButton>(c.Start).text(), c.CaptionAfter);
        EXPECT_TRUE(bench.Find<QWidget>(c.Start).isEnabled());
        EXPECT_EQ(Files(bench).size(), 1U);
        for (int channel = 0; channel < 4; ++channel)
            EXPECT_EQ(bench.Find<QSlider>(QString("sldDACValue_%1").arg(channel)).value(), 0);
    }
}

TEST(BenchTestControls, SteppedSweepFollowsTheControls) {
    WindowBench bench("plain");
    bench.Find<QScrollBar>("scrAirTestStepSize").setValue(65000);
    bench.Find<QScrollBar>("scrAirTestDelay").setValue(120);
    EXPECT_EQ(bench.LabelText("lblAirTestDelay"), "120");
    bench.Tick("chkAirTestBothWays");
    bench.Click("cmdAirTestAll");
    const auto files = Files(bench);
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].filename(), "AirData20240315_140509_D120_S65000.csv");
    const std::string content = ReadWholeFile(files[0]);
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 7);
}

TEST(BenchTestControls, SpeedTestShowsItsTimesAndItsModes) {
    WindowBench bench;
    bench.Bench.Events.EveryPass = [&] { bench.Bench.Time.Advance(0.001); };
    for (const bool digital : {false, true}) {
        bench.Bench.Events.At(digital ? 3.0 : 1.0, [&bench, digital] {
            EXPECT_EQ(bench.Find<QCheckBox>("chkIsDigitalSetup").isChecked(), digital);
        });
    }
    bench.Click("cmdTestSpeed");
    EXPECT_EQ(bench.LabelText("lblDMFCStage"), "Analogue 2.00 s, digital 2.00 s");
    EXPECT_TRUE(bench.Find<QCheckBox>("chkIsDigitalSetup").isChecked());
}

} // namespace
} // namespace ombrix
