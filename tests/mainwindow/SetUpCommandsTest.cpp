// The commands that prepare the ACU, driven by clicks in the main window.
#include "board/ACUMemoryMap.h"
#include "calibration/ACUSetUp.h"
#include "mainwindow/WindowBench.h"
#include "support/Text.h"

#include <QAction>
#include <QLineEdit>
#include <QMessageBox>
#include <QSlider>
#include <QTreeWidget>

#include <algorithm>

namespace ombrix {
namespace {

/// Handles the windows' events, and looks at them, in one pass of so many: hours of a calibration
/// then take seconds, and the windows still live.
void LookRarely(WindowBench& bench, std::function<void()> look) {
    bench.Bench.Events.EveryPass = [look = std::move(look), pass = 0]() mutable {
        constexpr int passesBetween = 500;
        if (++pass % passesBetween != 0)
            return;
        QCoreApplication::processEvents();
        look();
    };
}

std::int32_t Word(WindowBench& bench, std::int32_t address) {
    std::int32_t word = 0;
    bench.Bench.Bench.Board(0).Eprom().Read(address, word);
    return word;
}

std::string StoredMFCNumber(WindowBench& bench) {
    std::int32_t address = ACUMemoryMap::MFCNumber;
    std::string text;
    bench.Bench.TheStation.g_CurrentAIB->ReadEPROMString(address, text,
                                                         ACUMemoryMap::MFCNumberLength, "");
    return Trimmed(text);
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

QWidget* StageWindow() {
    return WindowBench::TopLevel("frmACUCalibration");
}

struct IdentityCase {
    const char* Button;
    std::vector<std::string> Entered;
    std::vector<Answer> Answers;
    std::vector<std::string> Told;
    std::int32_t Code;
    std::int32_t Serial;
};

class IdentityButtons : public ::testing::TestWithParam<IdentityCase> {};

const std::string Programmed = "The AIB has been programmed - restart application to check.";
const std::string NoNumber = "Suspect Serial Number.\r\n\r\nPlease enter a number!";
const std::string TooLarge = "Suspect Serial Number.\r\n\r\nPlease enter a number below 1000!";
constexpr std::int32_t Unchanged = -1;

TEST_P(IdentityButtons, WriteWhatWasEntered) {
    const IdentityCase& c = GetParam();
    WindowBench bench;
    const AccessoryInfo before = bench.Bench.Bench.Board(0).Identity();
    bench.Bench.Messages.Texts.assign(c.Entered.begin(), c.Entered.end());
    bench.Bench.Messages.Answers.assign(c.Answers.begin(), c.Answers.end());
    bench.Click(c.Button);
    EXPECT_EQ(bench.Bench.Messages.Prompts.size(), c.Entered.size());
    EXPECT_EQ(Texts(bench.Bench.Messages.Shown), c.Told);
    const AccessoryInfo after = bench.Bench.Bench.Board(0).Identity();
    EXPECT_EQ(after.HWVersion, c.Code == Unchanged ? before.HWVersion : c.Code);
    EXPECT_EQ(after.DevSerialNum, c.Serial == Unchanged ? before.DevSerialNum : c.Serial);
    EXPECT_EQ(bench.LabelText("lblDeviceInfo_3"), "301"); // until the next detection
    EXPECT_TRUE(bench.Find<QWidget>(c.Button).isEnabled());
}

INSTANTIATE_TEST_SUITE_P(
    Answers, IdentityButtons,
    ::testing::Values(
        IdentityCase{"cmdSetSerial_0", {"12"}, {}, {Programmed}, 0, 12},
        IdentityCase{"cmdSetSerial_1", {"12"}, {}, {Programmed}, 1, 12},
        IdentityCase{"cmdSetSerial_2", {"12"}, {}, {Programmed}, 2, 12},
        IdentityCase{"cmdSetSerial_2", {"0", "-4", "999"}, {}, {Programmed}, 2, 999},
        IdentityCase{
            "cmdSetSerial_1", {"1000"}, {Answer::Cancel}, {TooLarge}, Unchanged, Unchanged},
        IdentityCase{
            "cmdSetSerial_1", {"", "8"}, {Answer::Ok, Answer::Ok}, {NoNumber, Programmed}, 1, 8}));

TEST(SetUpCommands, MFCNumberThatWasEnteredIsWrittenUnchanged) {
    WindowBench bench("fresh");
    EnterMFCNumber(bench, "M-7 b");
    bench.Bench.Messages.Answers = {Answer::No};
    bench.Click("cmdVelocity_Init");
    EXPECT_TRUE(bench.Bench.Messages.Prompts.empty());
    EXPECT_EQ(StoredMFCNumber(bench), "M-7 b");
    EXPECT_EQ(StageWindow(), nullptr);
}

TEST(SetUpCommands, PlaceholderOfTheMFCNumberIsAskedFor) {
    WindowBench bench("fresh");
    EnterMFCNumber(bench, ACUSetUp::MFCNumberPlaceholder);
    bench.Bench.Messages.Texts = {ACUSetUp::MFCNumberPlaceholder, "M9200777B"};
    bench.Bench.Messages.Answers = {Answer::No};
    bench.Click("cmdPressure_Init");
    EXPECT_EQ(bench.Bench.Messages.Prompts,
              std::vector<std::string>(2, "Please enter the MFC Number"));
    EXPECT_EQ(StoredMFCNumber(bench), "M9200777B");
}

TEST(SetUpCommands, AUnitWithoutAnMFCNumberIsAskedForOne) {
    WindowBench bench("fresh");
    bench.Bench.Messages.Texts = {"M9200777C"};
    bench.Bench.Messages.Answers = {Answer::No};
    bench.Click("cmdVelocity_Init");
    EXPECT_EQ(bench.Bench.Messages.Prompts.size(), 1U);
    EXPECT_EQ(StoredMFCNumber(bench), "M9200777C");
}

TEST(SetUpCommands, MFCNumberHasNoMoreCharactersThanTheRecord) {
    WindowBench bench;
    EnterMFCNumber(bench, "1234567890123456");
    EXPECT_EQ(bench.Find<QLineEdit>("txtMFCNumber").text(), "123456789012");
}

TEST(SetUpCommands, ClearPressureZeroesThePressurePartOnly) {
    WindowBench bench;
    const std::int32_t before = Word(bench, 596);
    const std::int32_t behind = Word(bench, 1024);
    ASSERT_NE(Word(bench, ACUMemoryMap::PressurePresent), 0);
    QString progress;
    bool locked = false;
    bench.Bench.Events.EveryPass = [&] {
        progress = bench.LabelText("lblClearProgress");
        locked = !bench.Find<QWidget>("cmdClearPV17").isEnabled();
    };
    bench.Click("cmdClearPV17");
    EXPECT_EQ(progress, "Clearing EPROM address 1020");
    EXPECT_TRUE(locked);
    EXPECT_EQ(bench.LabelText("lblClearProgress"), "");
    for (std::int32_t address = 600; address <= 1020; address += 4)
        EXPECT_EQ(Word(bench, address), 0) << address;
    EXPECT_EQ(Word(bench, 596), before);
    EXPECT_EQ(Word(bench, 1024), behind);
    EXPECT_EQ(Texts(bench.Bench.Messages.Shown),
              (std::vector<std::string>{"Are you sure you want to Clear the Pressure Calibration?",
                                        "Pressure Calibration Cleared"}));
    EXPECT_EQ(bench.LabelText("lblACUPresure_System"), "Never"); // read anew
}

TEST(SetUpCommands, ClearPressureThatIsDeclinedWritesNothing) {
    WindowBench bench;
    bench.Bench.Messages.Answers = {Answer::No};
    bench.Click("cmdClearPV17");
    EXPECT_NE(Word(bench, ACUMemoryMap::PressurePresent), 0);
    EXPECT_EQ(bench.Bench.Messages.Shown.size(), 1U);
}

TEST(SetUpCommands, InfoWorkbookIsWritten) {
    WindowBench bench;
    bench.Click("cmdCreateACUInfoDoc");
    int workbooks = 0;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(bench.Bench.Folder.Path()))
        workbooks += entry.path().extension().string().starts_with(".xls") ? 1 : 0;
    EXPECT_EQ(workbooks, 1);
    EXPECT_EQ(WindowBench::TopLevel("frmOpenExcel"), nullptr);
}

TEST(SetUpCommands, CommandThatEndsWithAnErrorLeavesNoWindow) {
    WindowBench bench;
    bench.Bench.Events.EveryPass = [] { throw std::runtime_error("out of memory"); };
    bench.Click("cmdCreateACUInfoDoc");
    EXPECT_EQ(Texts(bench.Bench.Messages.Shown), std::vector<std::string>{"out of memory"});
    EXPECT_EQ(WindowBench::TopLevel("frmOpenExcel"), nullptr);
    EXPECT_TRUE(bench.Find<QWidget>("cmdCreateACUInfoDoc").isEnabled());
}

TEST(SetUpCommands, EverythingIsLockedWhileAProcedureRuns) {
    WindowBench bench;
    const std::vector<QString> commands = {
        "cmdVelocity_Init", "cmdPressure_Init",    "cmdACU_InitBoth", "cmdClearPV17",
        "txtMFCNumber",     "cmdCreateACUInfoDoc", "cmdSetSerial_0",  "cmdSetSerial_2"};
    {
        const RunningProcedure other(bench.Bench.TheStation.Procedures, [] {});
        for (const QString& name : commands)
            EXPECT_FALSE(bench.Find<QWidget>(name).isEnabled()) << name.toStdString();
    }
    for (const QString& name : commands)
        EXPECT_TRUE(bench.Find<QWidget>(name).isEnabled()) << name.toStdString();
}

TEST(SetUpCommands, CommandsWithoutAFunctionSaySo) {
    WindowBench bench;
    for (const char* name : {"cmdVelocity_PV16", "cmdPressure_PV17", "cmdACU_PVBoth"}) {
        EXPECT_FALSE(bench.Find<QWidget>(name).isEnabled()) << name;
        EXPECT_EQ(bench.Find<QWidget>(name).toolTip(), "This button has no function.") << name;
    }
}

/// A main window whose initialisations are watched through the stage window.
class InitialisationTest : public ::testing::Test {
  protected:
    void Open(const std::vector<std::string>& faults = {}) {
        m_Bench = std::make_unique<WindowBench>("fresh", faults);
        EnterMFCNumber(*m_Bench, "M9200302C");
        LookRarely(*m_Bench, [this] {
            if (StageWindow() == nullptr)
                return;
            m_Results = Results();
            m_Unit = WindowBench::FindIn<QLabel>(*StageWindow(), "lblUnit").text();
        });
    }
    static std::vector<std::string> Results() {
        std::vector<std::string> results;
        auto& list = WindowBench::FindIn<QTreeWidget>(*StageWindow(), "lvwStage");
        for (int line = 0; line < list.topLevelItemCount(); ++line)
            results.push_back(list.topLevelItem(line)->text(2).toStdString());
        return results;
    }
    void At(double at_s, std::function<void()> action) {
        m_Bench->Bench.Events.At(at_s, std::move(action));
    }
    std::vector<std::string> Told() const { return Texts(m_Bench->Bench.Messages.Shown); }
    double Elapsed_s() const {
        return static_cast<double>(m_Bench->Bench.Time.Counter()) /
               static_cast<double>(m_Bench->Bench.Time.Frequency());
    }
    void ExpectCommandsBack() {
        EXPECT_EQ(StageWindow(), nullptr);
        EXPECT_EQ(WindowBench::TopLevel("frmOpenExcel"), nullptr);
        EXPECT_TRUE(m_Bench->Find<QWidget>("cmdVelocity_Init").isEnabled());
    }
    void ExpectNoAir() { EXPECT_LT(m_Bench->Bench.FlowLater_bits(), TestBench::NoFlow_bits); }

    std::unique_ptr<WindowBench> m_Bench;
    /// As they were seen last.
    std::vector<std::string> m_Results;
    QString m_Unit;
};

TEST_F(InitialisationTest, FreshUnitIsInitialisedFromTheClickToTheEprom) {
    Open();
    m_Bench->Click("cmdVelocity_Init");
    EXPECT_EQ(m_Results, (std::vector<std::string>{"Run: Passed", "Run: Passed", "Run: Passed",
                                                   "Running..."}));
    EXPECT_EQ(m_Unit, "ACU00302   MFC number M9200302C");
    EXPECT_EQ(Word(*m_Bench, ACUMemoryMap::VelocitySystemPassed), -1);
    EXPECT_EQ(Word(*m_Bench, ACUMemoryMap::VelocityAuditPassed), -1);
    EXPECT_EQ(StoredMFCNumber(*m_Bench), "M9200302C");
    for (const char* label : {"lblACUVel_System", "lblACUVel_Audit"}) {
        EXPECT_TRUE(m_Bench->LabelText(label).endsWith(" - QUILLON")) << label;
        EXPECT_EQ(m_Bench->Find<QLabel>(label).palette().color(QPalette::WindowText),
                  QColor(0, 0, 255));
    }
    EXPECT_FALSE(m_Bench->Find<QLabel>("lblIntMsg").isVisible());
    EXPECT_EQ(m_Bench->Find<QLineEdit>("txtMFCNumber").text(), "M9200302C");
    ExpectCommandsBack();
    ExpectNoAir();
}

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
    ExpectCommandsBack();
    ExpectNoAir();
}

TEST_F(InitialisationTest, CancelEndsTheSequenceAndLeavesTheRestPending) {
    Open();
    constexpr double midway_s = 100.0;
    At(midway_s, [this] {
        EXPECT_GT(m_Bench->Find<QSlider>("sldDACValue_0").value(), 0);
        EXPECT_FALSE(m_Bench->Find<QWidget>("cmdVelocity_Init").isEnabled());
        QTest::mouseClick(&WindowBench::FindIn<QWidget>(*StageWindow(), "cmdCancel"),
                          Qt::LeftButton);
    });
    m_Bench->Click("cmdVelocity_Init");
    EXPECT_LT(Elapsed_s(), midway_s + 1.0);
    EXPECT_EQ(Told().back(), "ACU Calibration Aborted");
    EXPECT_EQ(m_Bench->Find<QSlider>("sldDACValue_0").value(), 0);
    EXPECT_EQ(m_Bench->LabelText("lblACUVel_System"), "Never"); // the header alone is there
    ExpectCommandsBack();
    ExpectNoAir();
}

TEST_F(InitialisationTest, BoardThatIsLostEndsTheSequenceWithAMessage) {
    Open({"unplug@100"});
    m_Bench->Click("cmdVelocity_Init");
    const std::vector<Message>& shown = m_Bench->Bench.Messages.Shown;
    EXPECT_TRUE(std::any_of(shown.begin(), shown.end(), [](const Message& message) {
        return message.Icon == MessageIcon::Critical;
    }));
    ExpectCommandsBack();
}

TEST_F(InitialisationTest, MainWindowThatIsClosedInMidRunEndsItWithoutFurtherQuestions) {
    Open();
    At(100.0, [this] {
        m_Bench->Window.close();
        auto* box = m_Bench->Window.findChild<QMessageBox*>("boxWhileRunning");
        ASSERT_NE(box, nullptr);
        QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
    });
    m_Bench->Click("cmdVelocity_Init");
    EXPECT_EQ(Told().size(), 1U); // the question at the start
    EXPECT_EQ(m_Bench->LabelText("lblACUVel_System"), "ACU Data Not Initialised"); // not read again
    QCoreApplication::processEvents();
    EXPECT_EQ(StageWindow(), nullptr);
    EXPECT_FALSE(m_Bench->Window.isVisible());
    ExpectNoAir();
}

TEST(SetUpCommands, ThePressureIsCalibratedFromTheToolsMenu) {
    WindowBench bench("plain");
    std::string seen;
    LookRarely(bench, [&seen] {
        if (QWidget* window = StageWindow(); window != nullptr && seen.empty()) {
            const QString line = WindowBench::FindIn<QLabel>(*window, "lblAccessoryCal5").text();
            if (line.startsWith("Current pressure: "))
                seen =
                    WindowBench::FindIn<QLabel>(*window, "lblAccessoryCal4").text().toStdString();
        }
    });
    bench.Find<QAction>("mnuPressureSystem").trigger();
    EXPECT_EQ(seen, "Flow rate: 0 ml/min");
    EXPECT_EQ(Texts(bench.Bench.Messages.Shown).back(), "ACU Pressure System Caibration Passed");
    EXPECT_TRUE(bench.LabelText("lblACUPresure_System").startsWith("15/03/2024 14:06"));
    EXPECT_EQ(StageWindow(), nullptr);
    bench.Bench.Messages.Answers = {Answer::Cancel};
    bench.Find<QAction>("mnuPressureAudit").trigger();
    EXPECT_EQ(bench.Bench.Messages.Shown.back().Icon, MessageIcon::Question);
}

TEST(SetUpCommands, ClosingTheProgramEndsACalibrationSafely) {
    WindowBench bench;
    const auto before = bench.Bench.Bench.Board(0).Eprom().Image();
    bench.Bench.Events.At(40.0, [&bench] { bench.Window.close(); });
    bench.Bench.Events.At(40.5, [&bench] {
        auto* box = bench.Window.findChild<QMessageBox*>("boxWhileRunning");
        ASSERT_NE(box, nullptr);
        QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
    });
    bench.Find<QAction>("mnuPressureSystem").trigger();
    EXPECT_LT(bench.Bench.Time.Counter(), 42 * bench.Bench.Time.Frequency());
    EXPECT_LT(bench.Bench.FlowLater_bits(), TestBench::NoFlow_bits);
    EXPECT_EQ(bench.Bench.Bench.Board(0).Eprom().Image(), before);
    QCoreApplication::processEvents();
    EXPECT_FALSE(bench.Window.isVisible());
    EXPECT_EQ(StageWindow(), nullptr);
}

} // namespace
} // namespace ombrix
