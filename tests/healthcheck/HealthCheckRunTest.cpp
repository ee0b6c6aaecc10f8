#include "healthcheck/HealthCheckRun.h"

#include "spreadsheet/XlsxApplication.h"
#include "support/FullDisk.h"
#include "support/NoConverter.h"
#include "support/TestBench.h"
#include "support/WorkbookFixture.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

using Option = HealthCheckOption;

class RecordedWaitWindow final : public OpenExcelView {
  public:
    std::vector<std::string> Story;
    void Show(const std::string& message) override { Story.push_back(message); }
    void Close() override { Story.emplace_back("closed"); }
};

constexpr std::string_view Templates = R"(C:\Program Files\Ombrix\Templates)";

class HealthCheckRunTest : public ::testing::Test {
  protected:
    void UseBench(const std::vector<std::string>& faults) {
        m_Bench = std::make_unique<TestBench>("acu", faults);
        m_Board = &m_Bench->Detect();
        m_Bench->TheStation.Calibration().ReadEPROMValues();
        m_Bench->Files.Mount(Templates, TEMPLATES_FOLDER);
    }
    void SetUp() override { UseBench({}); }

    HealthCheckResult Run(const std::vector<Option>& options, const HealthCheckView& view = {}) {
        const ReportTools tools{m_Bench->TheStation,
                                [this] {
                                    Drive& files = m_FullDisk ? static_cast<Drive&>(*m_FullDisk)
                                                              : m_Bench->Files;
                                    return std::make_unique<XlsxApplication>(files, m_Converter);
                                },
                                m_Wait, std::string(Templates) + "\\"};
        HealthCheckResult result = HealthCheckRun(tools).Run(options, view);
        EXPECT_EQ(m_Board->DAC(0), 0);
        EXPECT_EQ(m_Board->DAC(1), 0);
        if (result.Ended != End::Stopped) { // a board that is gone cannot be told
            EXPECT_LT(m_Bench->FlowLater_bits(), TestBench::NoFlow_bits);
        }
        EXPECT_FALSE(m_Bench->TheStation.Procedures.Running());
        return result;
    }
    /// The saved report, opened again by the engine that wrote it.
    Workbook& Open(const std::filesystem::path& file) {
        m_Bench->Files.Mount("R:", file.parent_path());
        m_Reader = std::make_unique<XlsxApplication>(m_Bench->Files, m_Converter);
        return m_Reader->Add("R:\\" + file.filename().string());
    }
    /// Puts a template in place of the installed one that a site has changed.
    void UseTemplate(const std::function<void(Workbook&)>& change) {
        const std::filesystem::path file = m_Bench->Folder.Path() / "site.xlsx";
        WorkbookFixture fixture;
        change(*fixture.Book);
        fixture.Saved();
        ReplaceWholeFile(file, fixture.Files.ReadFile(R"(C:\saved.xlsx)"));
        m_Bench->Files.Mount(std::string(Templates) + R"(\ACUHealthCheck.xltx)", file);
    }
    std::string LastMessage() const { return m_Bench->Messages.Shown.back().Text; }

    NoConverter m_Converter;
    std::unique_ptr<FullDisk> m_FullDisk;
    RecordedWaitWindow m_Wait;
    std::unique_ptr<TestBench> m_Bench;
    AIB* m_Board = nullptr;
    std::unique_ptr<XlsxApplication> m_Reader;
};

std::string Text(Workbook& book, std::string_view sheet, std::string_view address) {
    return std::get<std::string>(book.Sheet(sheet).Value(address));
}

double Number(Workbook& book, std::string_view sheet, std::string_view address) {
    return std::get<double>(book.Sheet(sheet).Value(address));
}

TEST_F(HealthCheckRunTest, TheShortTestFillsItsReport) {
    const HealthCheckResult result = Run({Option::Short});
    EXPECT_EQ(result.Ended, End::Passed);
    ASSERT_EQ(result.Files.size(), 1U);
    EXPECT_EQ(result.Files[0], m_Bench->Folder.Path() / "ACUs" / "ACU00301_M9200301A" /
                                   "M9200301A_ACU301_20240315_140533.xlsx");
    EXPECT_EQ(LastMessage(), "The file has been saved:\r\n\r\n   "
                             "C:\\ACUs\\ACU00301_M9200301A\\M9200301A_ACU301_20240315_140533.xlsx"
                             "\r\n\r\nNO RESULT: 0 of 12 steps passed, 0 failed, 12 not evaluated");
    EXPECT_EQ(m_Bench->Messages.Shown.size(), 1U);
    EXPECT_EQ(m_Wait.Story.back(), "closed");

    Workbook& book = Open(result.Files[0]);
    ASSERT_EQ(book.WorksheetCount(), 7);
    for (int position = 3; position <= 6; ++position)
        EXPECT_EQ(book.Sheet(position).Name(), "Zero - Ch" + std::to_string(position - 2));
    EXPECT_EQ(book.Sheet(7).Name(), "DataTemplate");
    EXPECT_EQ(Number(book, "Overview", "C2"), 301.0);
    EXPECT_EQ(Text(book, "Overview", "C3"), "M9200301A");
    EXPECT_EQ(Text(book, "Overview", "N7"), "Pressure (Analog)");
    EXPECT_EQ(Text(book, "Overview", "B10"), "Step 1");
    EXPECT_EQ(Text(book, "Overview", "L10"), "First in Sequence");
    EXPECT_EQ(Text(book, "Overview", "L11"), "CH1 to 20.0%");
    EXPECT_EQ(Text(book, "Overview", "L12"), "To Zero from 20.0");
    EXPECT_NEAR(Number(book, "Overview", "C11"), 0.2, 1e-6);
    EXPECT_EQ(Number(book, "Overview", "E11"), 2.0);
    EXPECT_EQ(Text(book, "Overview", "B43"), Text(book, "Overview", "B7"))
        << "the second block has its own header, from row 43 on";
    EXPECT_EQ(Text(book, "Overview", "L47"), "CH2 to 20.0% from Zero");
    EXPECT_EQ(Number(book, "Zero - Ch1", "A2"), 0.0);
    EXPECT_EQ(Text(book, "Zero - Ch1", "J1"), "Pressure (Analog)");
}

TEST_F(HealthCheckRunTest, EverythingChosenGetsADistinctSheet) {
    const HealthCheckResult result = Run({Option::Short, Option::PressureCheck, Option::LongCh1,
                                          Option::LongCh2, Option::LowCh1, Option::LowCh2});
    std::vector<std::string> sheets;
    double seconds = 0.0;
    for (const SequenceResult& sequence : result.Sequences) {
        sheets.push_back(sequence.Sheet);
        seconds += sequence.Seconds;
        EXPECT_NEAR(sequence.Samples, sequence.Seconds * 50.0, sequence.Steps);
    }
    EXPECT_EQ(sheets,
              (std::vector<std::string>{"Zero - Ch1", "Zero - Ch2", "Zero - Ch3", "Zero - Ch4",
                                        "Zero - Ch1 (2)", "Zero - Ch1 (3)", "Zero - Ch1 (4)",
                                        "Zero - Ch2 (2)", "Low - Ch1", "Low - Ch2"}));
    EXPECT_DOUBLE_EQ(seconds, 1220.0);
    EXPECT_EQ(Open(result.Files.at(0)).WorksheetCount(), 13);
}

TEST_F(HealthCheckRunTest, GaugePromptsSkipOrEnd) {
    m_Bench->Messages.Answers = {Answer::No, Answer::Yes};
    const HealthCheckResult second = Run({Option::PressureCheck});
    EXPECT_EQ(second.Ended, End::Passed);
    ASSERT_EQ(second.Sequences.size(), 1U);
    EXPECT_EQ(second.Sequences[0].Sheet, "Zero - Ch1");
    EXPECT_EQ(m_Bench->Messages.Shown[0].Buttons, MessageButtons::YesNoCancel);

    m_Bench->Messages.Answers = {Answer::Yes, Answer::Cancel};
    const HealthCheckResult ended = Run({Option::PressureCheck, Option::LowCh1});
    EXPECT_EQ(ended.Ended, End::Cancelled);
    EXPECT_EQ(ended.Sequences.size(), 1U);
    EXPECT_EQ(ended.Files.size(), 1U) << "what there is is saved";

    m_Bench->Messages.Answers = {Answer::No, Answer::No};
    EXPECT_EQ(Run({Option::PressureCheck}).Ended, End::Cancelled) << "nothing was measured";
}

TEST_F(HealthCheckRunTest, CancelStillSavesWhatWasMeasured) {
    m_Bench->Events.At(7.0, [this] { m_Bench->TheStation.Procedures.Cancel(); });
    const HealthCheckResult result = Run({Option::Short});
    EXPECT_EQ(result.Ended, End::Cancelled);
    ASSERT_EQ(result.Sequences.size(), 2U);
    EXPECT_NEAR(result.Sequences[1].Samples, 50, 2);
    EXPECT_EQ(Open(result.Files.at(0)).WorksheetCount(), 5);
}

TEST_F(HealthCheckRunTest, ClosingTheProgramEndsItWithoutMoreMessages) {
    m_Bench->Events.At(3.0, [this] { m_Bench->Events.EndProgram(); });
    const HealthCheckResult result = Run({Option::Short});
    EXPECT_EQ(result.Ended, End::Cancelled);
    EXPECT_EQ(result.Files.size(), 1U);
    EXPECT_TRUE(m_Bench->Messages.Shown.empty());
}

TEST_F(HealthCheckRunTest, ALostBoardIsToldAndWhatWasMeasuredIsSaved) {
    UseBench({"unplug@8"});
    const HealthCheckResult result = Run({Option::Short});
    EXPECT_EQ(result.Ended, End::Stopped);
    ASSERT_EQ(m_Bench->Messages.Shown.size(), 2U) << "that air may flow comes first";
    EXPECT_TRUE(LastMessage().starts_with(
        "The health check has been stopped.\r\n\r\nThe board does not answer: AIB Generic "
        "Hardware Error.\r\n\r\nPlease check its cable and its power, then detect the "
        "boards again.\r\n\r\nThe file has been saved:"))
        << LastMessage();
    EXPECT_EQ(result.Sequences.size(), 2U);
    EXPECT_EQ(result.Files.size(), 1U);
}

TEST_F(HealthCheckRunTest, AMissingTemplateRunsNothing) {
    m_Bench->Files.Mount(std::string(Templates) + R"(\ACUHealthCheck.xltx)",
                         m_Bench->Folder.Path() / "gone.xltx");
    const HealthCheckResult result = Run({Option::Short});
    EXPECT_EQ(result.Ended, End::NotStored);
    ASSERT_EQ(m_Bench->Messages.Shown.size(), 1U);
    EXPECT_EQ(LastMessage(), "Unable to find File: \r\n\r\n  "
                             "C:\\Program Files\\Ombrix\\Templates\\ACUHealthCheck.xltx");
}

TEST_F(HealthCheckRunTest, ADamagedTemplateIsNamed) {
    const auto damaged = m_Bench->Folder.Path() / "damaged.xltx";
    ReplaceWholeFile(damaged, "this is no workbook");
    m_Bench->Files.Mount(std::string(Templates) + R"(\ACUHealthCheck.xltx)", damaged);
    EXPECT_EQ(Run({Option::Short}).Ended, End::NotStored);
    EXPECT_NE(LastMessage().find("ACUHealthCheck.xltx"), std::string::npos) << LastMessage();
}

TEST_F(HealthCheckRunTest, ATemplateThatLacksASheetRunsNothing) {
    UseTemplate([](Workbook& book) { book.Sheet("DataTemplate").SetName("Data"); });
    const HealthCheckResult result = Run({Option::Short});
    EXPECT_EQ(result.Ended, End::NotStored);
    EXPECT_TRUE(result.Sequences.empty());
    EXPECT_NE(LastMessage().find("ACUHealthCheck.xltx\" cannot be used: it has no sheet "
                                 "\"DataTemplate\""),
              std::string::npos)
        << LastMessage();
}

TEST_F(HealthCheckRunTest, NamesThatTheTemplateHasTakenGetANumberAndItsHiddenSheetsShow) {
    UseTemplate([](Workbook& book) {
        book.Sheet("All Graphs").CopyAfter(book.Sheet("Overview"));
        book.Sheet(2).SetName("zero - ch1");
        book.Sheet("DataTemplate").SetVisible(SheetVisibility::Hidden);
        book.Sheet("Overview").SetVisible(SheetVisibility::Hidden);
    });
    const HealthCheckResult result = Run({Option::Short});
    EXPECT_EQ(result.Sequences.at(0).Sheet, "Zero - Ch1 (2)");
    EXPECT_EQ(Number(Open(result.Files.at(0)), "Zero - Ch1 (2)", "A2"), 0.0);
    WorkbookProbe report(ReadWholeFile(result.Files.at(0)));
    EXPECT_EQ(report.Xml("xl/workbook.xml").select_nodes("//sheet[@state]").size(), 1U)
        << "what the site has hidden shows, but for the template of the data";
}

TEST_F(HealthCheckRunTest, WithoutAFolderTheReportIsKeptAndSaidWhere) {
    ReplaceWholeFile(m_Bench->Folder.Path() / "ACUs", "a file in the way");
    const HealthCheckResult result = Run({Option::Short});
    EXPECT_EQ(result.Ended, End::NotStored);
    const auto& shown = m_Bench->Messages.Shown;
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[0].Text, "Unable to Save Excel File in following locations:\r\n\r\n"
                             "   'S:\\Production\\ACUs\\_Initial Tests\\00301_M9200301A\\'\r\n\r\n"
                             "'C:\\ACUs\\00301_M9200301A\\'.\r\n\r\n"
                             "You will need to do this manually.");
    ASSERT_EQ(result.Files.size(), 1U);
    EXPECT_EQ(result.Files[0].parent_path(), m_Bench->Folder.Path() / "Kept");
    EXPECT_EQ(Open(result.Files[0]).WorksheetCount(), 7);
}

TEST_F(HealthCheckRunTest, ACancelledRunStaysCancelledWithoutAFolder) {
    ReplaceWholeFile(m_Bench->Folder.Path() / "ACUs", "a file in the way");
    m_Bench->Events.At(7.0, [this] { m_Bench->TheStation.Procedures.Cancel(); });
    const HealthCheckResult result = Run({Option::Short});
    EXPECT_EQ(result.Ended, End::Cancelled);
    EXPECT_NE(result.Error, "");
}

TEST_F(HealthCheckRunTest, AFullDiskLosesNothing) {
    m_FullDisk = std::make_unique<FullDisk>(m_Bench->Files);
    const HealthCheckResult result = Run({Option::Short});
    EXPECT_EQ(result.Ended, End::NotStored);
    EXPECT_NE(m_Bench->Messages.Shown[0].Text.find("No space left on device"), std::string::npos);
    ASSERT_EQ(result.Files.size(), 1U);
    EXPECT_EQ(result.Files[0].parent_path(), m_Bench->Folder.Path() / "Kept");
    EXPECT_EQ(Open(result.Files[0]).WorksheetCount(), 7);
    EXPECT_TRUE(std::filesystem::is_empty(m_Bench->Folder.Path() / "ACUs/ACU00301_M9200301A"))
        << "nothing half-written";
}

} // namespace
} // namespace ombrix
