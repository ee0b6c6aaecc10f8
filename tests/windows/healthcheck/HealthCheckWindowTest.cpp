#include "calibration/history/CalibrationHistory.h"
#include "windows/WindowBench.h"

#include <QMessageBox>
#include <QProgressBar>
#include <QSlider>
#include <QTreeWidget>

namespace ombrix {
namespace {

const std::vector<QString> OptionBoxes = {"chkShort",   "chkLowCh1",  "chkLowCh2",
                                          "chkLongCh1", "chkLongCh2", "chkPressureCheck"};

class HealthCheckWindowTest : public ::testing::Test {
  protected:
    void Open(const std::vector<std::string>& faults = {}) {
        m_Bench = std::make_unique<WindowBench>("acu", faults);
        m_Bench->Click("Command3");
        m_Window = WindowBench::TopLevel("frmACUHealthCheck");
        ASSERT_NE(m_Window, nullptr);
    }
    void SetUp() override { Open(); }

    template <class Control = QWidget>
    Control& Find(const QString& name) {
        return WindowBench::FindIn<Control>(*m_Window, name);
    }
    void Click(const QString& name) { QTest::mouseClick(&Find(name), Qt::LeftButton); }
    void Tick(const QString& name) { WindowBench::TickIn(*m_Window, name); }
    void At(double at_s, std::function<void()> action) {
        m_Bench->Bench.Events.At(at_s, std::move(action));
    }
    AIB& Board() { return *m_Bench->Bench.TheStation.CurrentAIB; }
    std::ptrdiff_t Reports() const {
        const auto folder = m_Bench->Bench.Folder.Path() / "ACUs" / "ACU00301_M9200301A";
        return std::distance(std::filesystem::directory_iterator(folder), {});
    }
    double Elapsed_s() const {
        return static_cast<double>(m_Bench->Bench.Time.Counter()) /
               static_cast<double>(m_Bench->Bench.Time.Frequency());
    }

    std::unique_ptr<WindowBench> m_Bench;
    QWidget* m_Window = nullptr;
};

TEST_F(HealthCheckWindowTest, StartWantsAnOptionAndNoOtherProcedure) {
    EXPECT_EQ(m_Window->windowTitle(), "Health Checking");
    EXPECT_FALSE(m_Window->isModal());
    for (const QString& box : OptionBoxes) {
        EXPECT_FALSE(Find("cmdStart").isEnabled()) << box.toStdString();
        Tick(box);
        EXPECT_TRUE(Find("cmdStart").isEnabled()) << box.toStdString();
        Tick(box);
    }
    Tick(OptionBoxes.front());
    const RunningProcedure other(m_Bench->Bench.TheStation.Procedures, "test");
    EXPECT_FALSE(Find("cmdStart").isEnabled());
    EXPECT_FALSE(Find("cmdCancel").isEnabled());
}

TEST_F(HealthCheckWindowTest, ShortRunMovesTheMainWindowsSlidersAndLocksTheControls) {
    const auto expectRunning = [this](bool running, int demand_bits) {
        for (const QString& box : OptionBoxes)
            EXPECT_EQ(Find(box).isEnabled(), !running) << box.toStdString();
        EXPECT_EQ(Find("cmdStart").isEnabled(), !running);
        EXPECT_EQ(Find("cmdCancel").isEnabled(), running);
        EXPECT_EQ(m_Bench->Find<QWidget>("Command3").isEnabled(), !running);
        EXPECT_EQ(m_Bench->Find<QSlider>("sldDACValue_0").value(), demand_bits / 2);
        EXPECT_EQ(Board().DAC(0), demand_bits);
    };
    Tick("chkShort");
    At(3.0, [&] {
        expectRunning(true, 13106);
        const auto& steps = Find<QTreeWidget>("lstSteps");
        EXPECT_EQ(steps.topLevelItemCount(), 3);
        EXPECT_EQ(steps.currentItem(), steps.topLevelItem(1));
        EXPECT_EQ(steps.currentItem()->data(0, Qt::AccessibleTextRole).toString(),
                  "2.    Ch1 20.0%     Ch2 0.0%     for     2s");
        EXPECT_EQ(steps.currentItem()->text(1) + " " + steps.currentItem()->text(3), "20.0 2");
        EXPECT_EQ(Find<QLabel>("lblSequence").text(), "Sequence 1 of 4: Zero - Ch1");
        EXPECT_EQ(Find<QLabel>("lblTime").text(), "Elapsed 0:03 of 0:24");
        EXPECT_NEAR(Find<QProgressBar>("prgRun").value(), 3.0 / 24.0 * 1000.0, 2.0);
        EXPECT_TRUE(Find<QLabel>("lblValue_0").text().startsWith("13106  :  "));
    });
    Click("cmdStart");
    EXPECT_NEAR(Elapsed_s(), 24.0, 0.1);
    expectRunning(false, 0);
    EXPECT_TRUE(m_Bench->Bench.Documents.Opened.empty()) << "nobody has chosen Open";
    EXPECT_EQ(Board().DAC(1), 0);
    EXPECT_EQ(Find<QProgressBar>("prgRun").value(), 1000);
}

TEST_F(HealthCheckWindowTest, CancelEndsTheRunWithTheAirOffAndTheReportSaved) {
    QString wait;
    m_Bench->Bench.Events.EveryPass = [&wait] {
        QCoreApplication::processEvents();
        if (QWidget* window = WindowBench::TopLevel("frmOpenExcel"); window != nullptr)
            wait = WindowBench::FindIn<QLabel>(*window, "lblMessage").text();
    };
    Tick("chkLongCh1");
    At(15.0, [this] {
        EXPECT_EQ(WindowBench::TopLevel("frmOpenExcel"), nullptr);
        EXPECT_GT(Board().DAC(0), 0);
        Click("cmdCancel");
    });
    Click("cmdStart");
    EXPECT_EQ(wait, "Initialising Excel Report");
    EXPECT_LT(Elapsed_s(), 15.1);
    EXPECT_EQ(Board().DAC(0), 0);
    EXPECT_EQ(Reports(), 1);
    EXPECT_TRUE(m_Bench->Bench.Documents.Opened.empty());
    EXPECT_TRUE(Find("cmdStart").isEnabled());
    EXPECT_LT(Find<QProgressBar>("prgRun").value(), 1000);
}

TEST_F(HealthCheckWindowTest, ClosingInMidRunAsksThenCancels) {
    Tick("chkShort");
    At(3.0, [this] {
        EXPECT_FALSE(m_Window->close());
        auto* box = m_Window->findChild<QMessageBox*>("boxWhileRunning");
        ASSERT_NE(box, nullptr);
        QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
        EXPECT_TRUE(m_Window->isVisible()); // until the run has ended
    });
    Click("cmdStart");
    EXPECT_LT(Elapsed_s(), 3.1);
    EXPECT_FALSE(m_Window->isVisible());
    m_Bench->Click("Command3");
    EXPECT_TRUE(m_Window->isVisible());
}

TEST_F(HealthCheckWindowTest, BoardThatIsLostIsToldAndTheControlsComeBack) {
    Open({"unplug@3"});
    Tick("chkShort");
    Click("cmdStart");
    ASSERT_EQ(m_Bench->Bench.Messages.Shown.size(), 2U);
    EXPECT_EQ(m_Bench->Bench.Messages.Shown.back().Icon, MessageIcon::Critical);
    EXPECT_TRUE(Find("cmdStart").isEnabled());
    EXPECT_TRUE(m_Bench->Find<QWidget>("Command3").isEnabled());
}

TEST_F(HealthCheckWindowTest, FolderOpensTheFolderOfTheReports) {
    Click("cmdOpenFolder");
    ASSERT_EQ(m_Bench->Bench.Documents.Opened.size(), 1U);
    EXPECT_TRUE(std::filesystem::equivalent(m_Bench->Bench.Documents.Opened.front(),
                                            m_Bench->Bench.Folder.Path() / "ACUs"));
}

TEST_F(HealthCheckWindowTest, VerdictStepsHistoryAndTheOneBoxAtTheEndAgree) {
    struct Case {
        std::vector<std::string> Faults;
        double CancelAt_s;
        const char* Verdict;
        const char* LastStep;
    };
    for (const Case& c :
         {Case{{}, 1e9, "✓ PASS", "✓ Pass"}, Case{{"gain:1,50"}, 1e9, "✗ FAIL", "✓ Pass"},
          Case{{}, 23.4, "✗ INCOMPLETE", "-"}}) {
        Open(c.Faults);
        m_Bench->Bench.Messages.Answers = {Answer::Open};
        Tick("chkLowCh2");
        At(c.CancelAt_s, [this] { Click("cmdCancel"); });
        Click("cmdStart");
        const std::string verdict = Find<QLabel>("lblVerdict").text().toStdString();
        EXPECT_EQ(verdict, c.Verdict);
        const HistoryEntry run = ReadHistory(m_Bench->Bench.Files, 301).Runs.at(0);
        EXPECT_TRUE(verdict.ends_with(" " + run.Verdict));
        EXPECT_EQ(Find<QLabel>("lblCounts").text().toStdString(),
                  CountsText(run.Check) + "; limit 1 % of full scale");
        const auto& steps = Find<QTreeWidget>("lstSteps");
        EXPECT_EQ(steps.topLevelItem(23)->text(6), c.LastStep);
        const auto failed = steps.findItems("✗ Fail", Qt::MatchExactly, 6);
        EXPECT_EQ(failed.size(), run.Check.Failed);
        for (const QTreeWidgetItem* step : failed)
            EXPECT_TRUE(step->toolTip(6).contains("% of full scale off its demand"));
        const auto& shown = m_Bench->Bench.Messages.Shown;
        ASSERT_EQ(shown.size(), 1U);
        EXPECT_TRUE(shown[0].OffersToOpen);
        EXPECT_TRUE(shown[0].Text.ends_with(run.Verdict + ": " + CountsText(run.Check)));
        ASSERT_EQ(m_Bench->Bench.Documents.Opened.size(), 1U);
        EXPECT_EQ(m_Bench->Bench.Documents.Opened[0].string(), run.Files.at(0));
    }
}

} // namespace
} // namespace ombrix
