#include "windows/WindowBench.h"

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
        EXPECT_EQ(Find<QListWidget>("lstSteps").count(), 3);
        EXPECT_EQ(Find<QListWidget>("lstSteps").currentRow(), 1);
        EXPECT_NEAR(Find<QProgressBar>("prgRun").value(), 3.0 / 24.0 * 1000.0, 2.0);
        EXPECT_TRUE(Find<QLabel>("lblValue_0").text().startsWith("13106  :  "));
    });
    Click("cmdStart");
    EXPECT_NEAR(Elapsed_s(), 24.0, 0.1);
    expectRunning(false, 0);
    EXPECT_EQ(m_Bench->Bench.Messages.Shown.back().Buttons, MessageButtons::YesNo);
    EXPECT_EQ(m_Bench->Bench.Documents.Opened.size(), 1U); // as was answered
    EXPECT_EQ(Board().DAC(1), 0);
    EXPECT_EQ(Find<QProgressBar>("prgRun").value(), 1000);
}

TEST_F(HealthCheckWindowTest, CancelEndsTheRunWithTheAirOffAndTheReportSaved) {
    m_Bench->Bench.Messages.Answers = {Answer::Ok, Answer::No};
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

TEST_F(HealthCheckWindowTest, FolderOpensTheFolderOfTheReports) {
    Click("cmdOpenFolder");
    ASSERT_EQ(m_Bench->Bench.Documents.Opened.size(), 1U);
    EXPECT_TRUE(std::filesystem::equivalent(m_Bench->Bench.Documents.Opened.front(),
                                            m_Bench->Bench.Folder.Path() / "ACUs"));
}

} // namespace
} // namespace ombrix
