#include "mainwindow/WindowBench.h"

#include <QListWidget>
#include <QMessageBox>
#include <QProgressBar>
#include <QSlider>

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
    clsAIB& Board() { return *m_Bench->Bench.TheStation.g_CurrentAIB; }
    std::vector<std::filesystem::path> Reports() const {
        std::vector<std::filesystem::path> reports;
        const auto folder = m_Bench->Bench.Folder.Path() / "ACUs" / "ACU00301_M9200301A";
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            reports.push_back(entry.path());
        return reports;
    }
    double Elapsed_s() const {
        return static_cast<double>(m_Bench->Bench.Time.Counter()) /
               static_cast<double>(m_Bench->Bench.Time.Frequency());
    }

    std::unique_ptr<WindowBench> m_Bench;
    QWidget* m_Window = nullptr;
};

TEST_F(HealthCheckWindowTest, StartWantsAnOption) {
    EXPECT_EQ(m_Window->windowTitle(), "Health Checking");
    EXPECT_FALSE(m_Window->isModal());
    EXPECT_FALSE(Find("cmdStart").isEnabled());
    for (const QString& box : OptionBoxes) {
        Tick(box);
        EXPECT_TRUE(Find("cmdStart").isEnabled()) << box.toStdString();
        Tick(box);
        EXPECT_FALSE(Find("cmdStart").isEnabled()) << box.toStdString();
    }
    EXPECT_FALSE(Find("cmdCancel").isEnabled());
}

TEST_F(HealthCheckWindowTest, ShortRunMovesTheMainWindowsSlidersAndLocksTheControls) {
    Tick("chkShort");
    At(3.0, [this] {
        for (const QString& box : OptionBoxes)
            EXPECT_FALSE(Find(box).isEnabled()) << box.toStdString();
        EXPECT_FALSE(Find("cmdStart").isEnabled());
        EXPECT_TRUE(Find("cmdCancel").isEnabled());
        EXPECT_FALSE(m_Bench->Find<QWidget>("Command3").isEnabled());
        EXPECT_EQ(m_Bench->Find<QSlider>("sldDACValue_0").value(), 6553);
        EXPECT_EQ(Board().DAC(0), 13106);
        EXPECT_EQ(Find<QListWidget>("lstSteps").count(), 3);
        EXPECT_EQ(Find<QListWidget>("lstSteps").currentRow(), 1);
        EXPECT_NEAR(Find<QProgressBar>("prgRun").value(), 3.0 / 24.0 * 1000.0, 2.0);
        EXPECT_TRUE(Find<QLabel>("lblValue_0").text().startsWith("13106  :  "));
    });
    Click("cmdStart");
    EXPECT_NEAR(Elapsed_s(), 24.0, 0.1);
    for (const QString& box : OptionBoxes)
        EXPECT_TRUE(Find(box).isEnabled()) << box.toStdString();
    EXPECT_TRUE(Find("cmdStart").isEnabled());
    EXPECT_FALSE(Find("cmdCancel").isEnabled());
    EXPECT_EQ(Find<QProgressBar>("prgRun").value(), 1000);
    EXPECT_EQ(m_Bench->Find<QSlider>("sldDACValue_0").value(), 0);
    EXPECT_EQ(m_Bench->Find<QSlider>("sldDACValue_1").value(), 0);
    EXPECT_EQ(Board().DAC(0), 0);
    EXPECT_EQ(Board().DAC(1), 0);
}

TEST_F(HealthCheckWindowTest, SavedReportIsOpenedWhenTheOperatorWantsIt) {
    m_Bench->Bench.Messages.Answers = {Answer::Ok, Answer::Yes};
    Tick("chkShort");
    Click("cmdStart");
    ASSERT_EQ(m_Bench->Bench.Messages.Shown.size(), 2U);
    EXPECT_EQ(m_Bench->Bench.Messages.Shown.back().Buttons, MessageButtons::YesNo);
    EXPECT_EQ(m_Bench->Bench.Documents.Opened, Reports());
}

TEST_F(HealthCheckWindowTest, SavedReportIsLeftAloneOtherwise) {
    m_Bench->Bench.Messages.Answers = {Answer::Ok, Answer::No};
    Tick("chkShort");
    Click("cmdStart");
    EXPECT_EQ(Reports().size(), 1U);
    EXPECT_TRUE(m_Bench->Bench.Documents.Opened.empty());
}

TEST_F(HealthCheckWindowTest, CancelEndsTheRunWithTheAirOffAndTheReportSaved) {
    m_Bench->Bench.Messages.Answers = {Answer::Ok, Answer::No};
    Tick("chkLongCh1");
    At(15.0, [this] {
        EXPECT_GT(Board().DAC(0), 0);
        Click("cmdCancel");
    });
    Click("cmdStart");
    EXPECT_LT(Elapsed_s(), 15.1);
    EXPECT_EQ(Board().DAC(0), 0);
    EXPECT_EQ(Reports().size(), 1U);
    EXPECT_TRUE(Find("cmdStart").isEnabled());
    EXPECT_FALSE(Find("cmdCancel").isEnabled());
    EXPECT_LT(Find<QProgressBar>("prgRun").value(), 1000);
}

TEST_F(HealthCheckWindowTest, ClosingInMidRunAsksThenCancels) {
    m_Bench->Bench.Messages.Answers = {Answer::Ok, Answer::No};
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
    EXPECT_TRUE(m_Bench->Window.isVisible());
    m_Bench->Click("Command3");
    EXPECT_TRUE(m_Window->isVisible());
}

TEST_F(HealthCheckWindowTest, BoardThatIsLostIsToldAndTheControlsComeBack) {
    Open({"unplug@3"});
    Tick("chkShort");
    Click("cmdStart");
    ASSERT_FALSE(m_Bench->Bench.Messages.Shown.empty());
    EXPECT_EQ(m_Bench->Bench.Messages.Shown.front().Icon, MessageIcon::Critical);
    EXPECT_TRUE(Find("cmdStart").isEnabled());
    EXPECT_TRUE(m_Bench->Find<QWidget>("Command3").isEnabled());
}

TEST_F(HealthCheckWindowTest, OtherProceduresLockTheCommandsButNotCancel) {
    Tick("chkShort");
    {
        const RunningProcedure other(m_Bench->Bench.TheStation.Procedures, [] {});
        EXPECT_FALSE(Find("cmdStart").isEnabled());
        EXPECT_FALSE(Find("cmdCancel").isEnabled());
    }
    EXPECT_TRUE(Find("cmdStart").isEnabled());
}

TEST_F(HealthCheckWindowTest, WaitWindowShowsWhileTheReportIsOpened) {
    QString message;
    m_Bench->Bench.Events.EveryPass = [&message] {
        QCoreApplication::processEvents();
        if (QWidget* wait = WindowBench::TopLevel("frmOpenExcel"); wait != nullptr)
            message = WindowBench::FindIn<QLabel>(*wait, "lblMessage").text();
    };
    At(1.0, [this] {
        EXPECT_EQ(WindowBench::TopLevel("frmOpenExcel"), nullptr);
        Click("cmdCancel");
    });
    Tick("chkShort");
    Click("cmdStart");
    EXPECT_EQ(message, "Initialising Excel Report");
}

TEST_F(HealthCheckWindowTest, GraphsShareTheHeightEqually) {
    m_Window->resize(1000, 900);
    QCoreApplication::processEvents();
    const int height = Find("picGraph_0").height();
    EXPECT_GT(height, 150);
    for (const char* graph : {"picGraph_1", "picGraph_2", "picGraph_3", "picGraph_4"})
        EXPECT_NEAR(Find(graph).height(), height, 1) << graph;
}

TEST_F(HealthCheckWindowTest, FolderOpensTheFolderOfTheReports) {
    Click("cmdOpenFolder");
    ASSERT_EQ(m_Bench->Bench.Documents.Opened.size(), 1U);
    EXPECT_EQ(m_Bench->Bench.Documents.Opened.front().lexically_normal(),
              (m_Bench->Bench.Folder.Path() / "ACUs").lexically_normal());
}

} // namespace
} // namespace ombrix
