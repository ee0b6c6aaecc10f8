// The commands that prepare the ACU, driven by clicks in the main window.
#include "board/eprom/EpromFields.h"
#include "calibration/run/ACUSetUp.h"
#include "platform/text/Text.h"
#include "windows/WindowBench.h"

#include <QAction>
#include <QLineEdit>
#include <QMessageBox>
#include <QSlider>
#include <QTreeWidget>
#include <fmt/format.h>

namespace ombrix {
namespace {

std::string StoredMFCNumber(WindowBench& bench) {
    return Trimmed(bench.Bench.Bench.Board(0).Eprom().Image().substr(
        ACUMemoryMap::MFCNumber, ACUMemoryMap::MFCNumberLength));
}

void EnterMFCNumber(WindowBench& bench, const QString& number) {
    auto& field = bench.Find<QLineEdit>("txtMFCNumber");
    field.selectAll();
    QTest::keyClicks(&field, number);
}

std::vector<std::string> Texts(const std::vector<Message>& messages) {
    std::vector<std::string> texts;
    for (const Message& message : messages)
        texts.push_back(message.Text);
    return texts;
}

TEST(SetUpCommands, IdentityButtonsWriteWhatWasEntered) {
    struct Case {
        const char* Button;
        std::deque<std::optional<std::string>> Entered;
        std::deque<Answer> Answers;
        std::vector<std::string> Told;
        std::int32_t Code;
        std::int32_t Serial;
    };
    const std::string programmed = "The AIB has been programmed - restart application to check.";
    const std::string suspect = "Suspect Serial Number.\r\n\r\nPlease enter a number";
    const std::int32_t before = WindowBench().Bench.Bench.Board(0).Identity().HWVersion;
    const auto asked = [before](const char* serial, int code) {
        return fmt::format(
            "Write the identity of this board?\r\n\r\n   Serial number: 301 → {}\r\n "
            "  HW version: {} → {}",
            serial, before, code);
    };
    const std::vector<Case> cases = {
        {"cmdSetSerial_0", {"12"}, {}, {asked("12", 0), programmed}, 0, 12},
        {"cmdSetSerial_2", {"0", "-4", "999"}, {}, {asked("999", 2), programmed}, 2, 999},
        {"cmdSetSerial_0", {"12"}, {Answer::No}, {asked("12", 0)}, before, 301},
        {"cmdSetSerial_1", {"1000"}, {Answer::Cancel}, {suspect + " below 1000!"}, before, 301},
        {"cmdSetSerial_1",
         {"", "8"},
         {Answer::Ok},
         {suspect + "!", asked("8", 1), programmed},
         1,
         8}};
    for (const Case& c : cases) {
        WindowBench bench;
        bench.Bench.Messages.Texts = c.Entered;
        bench.Bench.Messages.Answers = c.Answers;
        bench.Click(c.Button);
        EXPECT_EQ(bench.Bench.Messages.Prompts.size(), c.Entered.size());
        EXPECT_EQ(Texts(bench.Bench.Messages.Shown), c.Told);
        const AccessoryInfo after = bench.Bench.Bench.Board(0).Identity();
        EXPECT_EQ(after.HWVersion, c.Code);
        EXPECT_EQ(after.DevSerialNum, c.Serial);
        EXPECT_EQ(bench.LabelText("lblDeviceInfo_3"), "301"); // until the next detection
    }
}

TEST(SetUpCommands, MFCNumberIsAskedForUntilThereIsOneAndWrittenUnchanged) {
    using Asked = std::deque<std::optional<std::string>>;
    const char* placeholder = ACUSetUp::MFCNumberPlaceholder;
    for (const auto& [entered, asked, stored] :
         {std::tuple("M-7 b", Asked{}, "M-7 b"),
          {"", Asked{"M9200777C"}, "M9200777C"}, // nothing entered: the field says "NOTSET"
          {placeholder, Asked{placeholder, "7B"}, "7B"}}) {
        WindowBench bench("fresh");
        if (*entered != '\0')
            EnterMFCNumber(bench, entered);
        bench.Bench.Messages.Texts = asked;
        bench.Bench.Messages.Answers = {Answer::No};
        bench.Click("cmdPressure_Init");
        EXPECT_EQ(bench.Bench.Messages.Prompts,
                  std::vector<std::string>(asked.size(), "Please enter the MFC Number"));
        EXPECT_EQ(StoredMFCNumber(bench), stored);
        EXPECT_EQ(WindowBench::StageWindow(), nullptr);
    }
}

TEST(SetUpCommands, MFCNumberThatIsTooLongIsRefusedAndCancelEndsTheCommand) {
    WindowBench bench;
    const std::string before = StoredMFCNumber(bench);
    EnterMFCNumber(bench, "1234567890123456");
    bench.Bench.Messages.Texts = {std::nullopt};
    bench.Click("cmdVelocity_Init");
    EXPECT_NE(bench.Bench.Messages.Shown.at(0).Text.find("too long"), std::string::npos);
    EXPECT_EQ(bench.Bench.Messages.Prompts.size(), 1U);
    EXPECT_EQ(StoredMFCNumber(bench), before);
    EXPECT_EQ(WindowBench::StageWindow(), nullptr);
}

TEST(SetUpCommands, IdentityThatTheBoardRefusesIsNotSaidToBeProgrammed) {
    WindowBench bench("acu", {"status:32@WriteAIBInfo"});
    bench.Bench.Messages.Texts = {"12"};
    bench.Click("cmdSetSerial_0");
    EXPECT_EQ(bench.Bench.Messages.Shown.back().Text,
              "The identity could not be written: AIB Timeout");
}

TEST(SetUpCommands, ClearPressureAsksAndZeroesThePressurePartOnly) {
    WindowBench bench;
    const std::string before = bench.Bench.Bench.Board(0).Eprom().Image();
    bench.Bench.Messages.Answers = {Answer::No};
    bench.Click("cmdClearPV17");
    EXPECT_EQ(bench.Bench.Bench.Board(0).Eprom().Image(), before);
    QString progress;
    bench.Bench.Events.EveryPass = [&] { progress = bench.LabelText("lblClearProgress"); };
    bench.Click("cmdClearPV17");
    EXPECT_EQ(progress, "Clearing EPROM address 1020");
    EXPECT_EQ(bench.LabelText("lblClearProgress"), "");
    std::string expected = before;
    expected.replace(600, 424, 424, '\0');
    EXPECT_EQ(bench.Bench.Bench.Board(0).Eprom().Image(), expected);
    const std::string question = "Are you sure you want to Clear the Pressure Calibration?"
                                 "\r\n\r\nUnit: ACU00301";
    EXPECT_EQ(Texts(bench.Bench.Messages.Shown),
              (std::vector<std::string>{question, question, "Pressure Calibration Cleared"}));
    EXPECT_EQ(bench.LabelText("lblACUPresure_System"), "Never"); // read anew
}

TEST(SetUpCommands, InfoWorkbookIsWrittenAndAnErrorLeavesNoWindow) {
    WindowBench bench;
    Station& station = bench.Bench.TheStation;
    PutWord(*station.CurrentAIB, ACUMemoryMap::VelocitySystemPassed, 0);
    bench.Bench.Events.EveryPass = [&] { // while the workbook is opened
        EXPECT_EQ(station.Calibration().Record().VelocitySystemPassed, 0) << "as it is now";
    };
    bench.Click("cmdCreateACUInfoDoc");
    int workbooks = 0;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(bench.Bench.Folder.Path()))
        workbooks += entry.path().extension().string().starts_with(".xls") ? 1 : 0;
    EXPECT_EQ(workbooks, 1);
    bench.Bench.Messages.Shown.clear();
    bench.Bench.Events.EveryPass = [] { throw std::runtime_error("out of memory"); };
    bench.Click("cmdCreateACUInfoDoc");
    EXPECT_EQ(Texts(bench.Bench.Messages.Shown), std::vector<std::string>{"out of memory"});
    EXPECT_EQ(WindowBench::TopLevel("frmOpenExcel"), nullptr);
    EXPECT_TRUE(bench.Find<QWidget>("cmdCreateACUInfoDoc").isEnabled());
}

/// A main window whose initialisations are watched through the stage window.
class InitialisationTest : public ::testing::Test {
  protected:
    void Open(const std::vector<std::string>& faults = {}) {
        m_Bench = std::make_unique<WindowBench>("fresh", faults);
        EnterMFCNumber(*m_Bench, "M9200302C");
        m_Bench->LookRarely([this] {
            if (WindowBench::StageWindow() == nullptr)
                return;
            m_Results.clear();
            auto& list = WindowBench::FindIn<QTreeWidget>(*WindowBench::StageWindow(), "lvwStage");
            for (int line = 0; line < list.topLevelItemCount(); ++line)
                m_Results.push_back(list.topLevelItem(line)->text(2).toStdString());
        });
    }
    std::vector<std::string> Told() const { return Texts(m_Bench->Bench.Messages.Shown); }
    void ExpectCommandsBack() {
        EXPECT_EQ(WindowBench::StageWindow(), nullptr);
        EXPECT_EQ(WindowBench::TopLevel("frmOpenExcel"), nullptr);
        EXPECT_TRUE(m_Bench->Find<QWidget>("cmdVelocity_Init").isEnabled());
    }
    void ExpectNoAir() { EXPECT_LT(m_Bench->Bench.FlowLater_bits(), TestBench::NoFlow_bits); }

    std::unique_ptr<WindowBench> m_Bench;
    /// As they were seen last.
    std::vector<std::string> m_Results;
};

TEST_F(InitialisationTest, BothListEightStagesAndRunThoseOfVelocity) {
    Open();
    m_Bench->Click("cmdACU_InitBoth");
    EXPECT_EQ(m_Results,
              (std::vector<std::string>{"Run: Passed", "Run: Passed", "Run: Passed", "Running...",
                                        "Pending", "Pending", "Pending", "Pending"}));
    EXPECT_EQ(Told().front(), "Are you sure you want to run:\r\n\r\n"
                              "  2 x Velocity System Calibrations\r\n"
                              "  2 x Velocity Audit Calibrations (PV16)\r\n"
                              "  2 x Pressure System Calibrations");
    EXPECT_EQ(Told().back(), "Pressure Not Implemented");
    EXPECT_EQ(StoredMFCNumber(*m_Bench), "M9200302C");
    for (const char* label : {"lblACUVel_System", "lblACUVel_Audit"})
        EXPECT_TRUE(m_Bench->LabelText(label).endsWith(" - QUILLON")) << label;
    EXPECT_FALSE(m_Bench->Find<QLabel>("lblIntMsg").isVisible());
    ExpectCommandsBack();
    ExpectNoAir();
}

TEST_F(InitialisationTest, CancelEndsTheSequenceAndLeavesTheRestPending) {
    Open();
    m_Bench->Bench.Events.At(100.0, [this] {
        EXPECT_GT(m_Bench->Find<QSlider>("sldDACValue_0").value(), 0);
        QTest::mouseClick(&WindowBench::FindIn<QWidget>(*WindowBench::StageWindow(), "cmdCancel"),
                          Qt::LeftButton);
    });
    m_Bench->Click("cmdVelocity_Init");
    EXPECT_LT(m_Bench->Bench.Time.Counter(), 101 * m_Bench->Bench.Time.Frequency());
    EXPECT_EQ(Told().back(), "ACU Calibration Aborted\r\n\r\nThe EPROM is as it was.");
    EXPECT_EQ(m_Bench->Find<QSlider>("sldDACValue_0").value(), 0);
    EXPECT_EQ(m_Bench->LabelText("lblACUVel_System"), "ACU Data Not Initialised");
    ExpectCommandsBack();
    ExpectNoAir();
}

TEST_F(InitialisationTest, BoardThatIsLostEndsTheSequenceWithAMessage) {
    Open({"unplug@100"});
    m_Bench->Click("cmdVelocity_Init");
    EXPECT_EQ(m_Bench->Bench.Messages.Shown.back().Icon, MessageIcon::Critical);
    ExpectCommandsBack();
}

TEST(SetUpCommands, ThePressureIsCalibratedFromTheToolsMenu) {
    WindowBench bench("plain");
    bench.LookRarely([] {});
    bench.Find<QAction>("mnuPressureSystem").trigger();
    EXPECT_EQ(Texts(bench.Bench.Messages.Shown).back(), "ACU Pressure System Caibration Passed");
    EXPECT_TRUE(bench.LabelText("lblACUPresure_System").startsWith("15/03/2024 14:06"));
    EXPECT_EQ(WindowBench::StageWindow(), nullptr);
    bench.Bench.Messages.Answers = {Answer::Cancel};
    bench.Find<QAction>("mnuPressureAudit").trigger();
    EXPECT_EQ(bench.Bench.Messages.Shown.back().Icon, MessageIcon::Question);
}

TEST(SetUpCommands, TheVelocityIsCalibratedAloneFromTheToolsMenu) {
    for (const char* action : {"mnuVelocitySystem", "mnuVelocityAudit"}) {
        WindowBench bench;
        QWidget* stages = nullptr;
        bench.LookRarely([&stages] { stages = WindowBench::StageWindow(); });
        bench.Find<QAction>(action).trigger();
        EXPECT_NE(stages, nullptr) << "shown meanwhile";
        EXPECT_EQ(WindowBench::StageWindow(), nullptr);
        const bool isAudit = std::string_view(action).ends_with("Audit");
        EXPECT_TRUE(bench.LabelText(isAudit ? "lblACUVel_Audit" : "lblACUVel_System")
                        .startsWith("15/03/2024"));
    }
}

TEST(SetUpCommands, ThePressureSensorIsDeclaredFromTheToolsMenu) {
    WindowBench bench;
    const std::string before = bench.Bench.Bench.Board(0).Eprom().Image();
    for (const char* button : {"cmdCancelSensor", "cmdDeclareSensor"}) {
        EXPECT_EQ(bench.Bench.Bench.Board(0).Eprom().Image(), before);
        QTimer::singleShot(0, [button] {
            QWidget& form = *QApplication::activeModalWidget();
            EXPECT_TRUE(WindowBench::FindIn<QAbstractButton>(form, "optSensor_1000").isChecked());
            WindowBench::FindIn<QAbstractButton>(form, "optSensor_0").click();
            WindowBench::FindIn<QAbstractButton>(form, button).click();
        });
        bench.Find<QAction>("mnuPressureSensor").trigger();
    }
    EXPECT_EQ(bench.Bench.Bench.Board(0).Eprom().Image().substr(600, 8), std::string(8, '\0'));
    EXPECT_EQ(bench.LabelText("lblACUPresure_System"), "Never") << "read anew";
}

TEST(SetUpCommands, ClosingTheProgramEndsACalibrationSafelyWithoutFurtherQuestions) {
    for (const bool initialisation : {false, true}) {
        WindowBench bench;
        // An initialisation begins with a new header for the velocity part.
        const std::size_t kept = initialisation ? ACUMemoryMap::PressurePresent : 0;
        const std::string before = bench.Bench.Bench.Board(0).Eprom().Image().substr(kept);
        const QString shown = bench.LabelText("lblACUVel_System");
        bench.Bench.Events.At(40.0, [&bench] { bench.Window.close(); });
        bench.Bench.Events.At(40.5, [&bench] {
            auto* box = bench.Window.findChild<QMessageBox*>("boxWhileRunning");
            ASSERT_NE(box, nullptr);
            QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
        });
        if (initialisation)
            bench.Click("cmdVelocity_Init");
        else
            bench.Find<QAction>("mnuPressureSystem").trigger();
        EXPECT_LT(bench.Bench.Time.Counter(), 42 * bench.Bench.Time.Frequency());
        // What was asked before 40 s; the pressure wants the hose connected as well.
        EXPECT_EQ(bench.Bench.Messages.Shown.size(), initialisation ? 1U : 2U);
        EXPECT_EQ(bench.LabelText("lblACUVel_System"), shown); // not read again
        EXPECT_LT(bench.Bench.FlowLater_bits(), TestBench::NoFlow_bits);
        EXPECT_EQ(bench.Bench.Bench.Board(0).Eprom().Image().substr(kept), before);
        QCoreApplication::processEvents();
        EXPECT_FALSE(bench.Window.isVisible());
        EXPECT_EQ(WindowBench::StageWindow(), nullptr);
    }
}

} // namespace
} // namespace ombrix
