#include "reports/ReportFile.h"
#include "support/ReportBench.h"
#include "support/WorkbookFixture.h"

namespace ombrix {
namespace {

class OpenExcelTest : public ::testing::Test {
  protected:
    TestBench m_Bench;
    FakeConverter m_Converter;
    RecordedWait m_Wait;
    ReportTools m_Tools{
        m_Bench.TheStation,
        [this] { return std::make_unique<XlsxApplication>(m_Bench.Files, m_Converter); }, m_Wait,
        "C:\\"};
    static constexpr ReportTemplate Audit{.File = "Audit.xlt", .Report = "an audit"};

    OpenedWorkbook Open() { return OpenWorkbookFromTemplate(m_Tools, Audit); }
};

TEST_F(OpenExcelTest, TheWaitWindowIsPaintedBeforeTheTemplateIsOpened) {
    m_Bench.Files.ReplaceFile(R"(C:\Audit.xltx)", HealthCheckTemplate());
    std::vector<std::string> shownWhenPumped;
    m_Bench.Events.EveryPass = [&] { shownWhenPumped = m_Wait.Story; };
    const OpenedWorkbook opened = OpenExcel(m_Tools, "Starting Excel", Audit);
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened.Sheet, &opened.Book->Sheet(1));
    EXPECT_EQ(shownWhenPumped, std::vector<std::string>{"Starting Excel"});
    EXPECT_EQ(m_Wait.Story.size(), 1U) << "the caller closes it";
    EXPECT_TRUE(m_Bench.Messages.Shown.empty());
}

TEST_F(OpenExcelTest, AMissingTemplateGivesOneBoxAndNoWorkbook) {
    const OpenedWorkbook opened = Open();
    EXPECT_FALSE(opened);
    EXPECT_TRUE(opened.Application);
    ASSERT_EQ(m_Bench.Messages.Shown.size(), 1U);
    EXPECT_EQ(m_Bench.Messages.Shown[0].Text, "Unable to find File: \r\n\r\n  C:\\Audit.xlt");
    EXPECT_EQ(m_Bench.Messages.Shown[0].Icon, MessageIcon::Information);
    EXPECT_EQ(m_Bench.Messages.Shown[0].Buttons, MessageButtons::Ok);
}

TEST_F(OpenExcelTest, OtherErrorsGiveNoBoxButAReason) {
    m_Bench.Files.ReplaceFile(R"(C:\Audit.xltx)", "damaged");
    const OpenedWorkbook damaged = Open();
    EXPECT_FALSE(damaged);
    EXPECT_NE(damaged.Error.find(R"(C:\Audit.xltx)"), std::string::npos);
    m_Tools.Launcher = []() -> std::unique_ptr<SpreadsheetApplication> {
        throw SpreadsheetError("not installed");
    };
    EXPECT_EQ(Open().Error, "not installed");
    EXPECT_TRUE(m_Bench.Messages.Shown.empty());
}

TEST_F(OpenExcelTest, AFailedSaveStillCountsAsDoneAndKeepsTheWorkbook) {
    m_Bench.Files.ReplaceFile(R"(C:\Audit.xltx)", HealthCheckTemplate());
    const OpenedWorkbook opened = Open();
    EXPECT_TRUE(SaveWorkbookAs(*opened.Book, R"(C:\first.xls)"));
    EXPECT_TRUE(m_Bench.Files.ReadFile(R"(C:\first.xls)").starts_with("xlsx>xls:"));
    m_Converter.Missing = true;
    EXPECT_TRUE(SaveWorkbookAs(*opened.Book, R"(C:\second.xls)"));
    EXPECT_EQ(opened.Book->FullName(), R"(C:\second.xlsx)");
}

} // namespace
} // namespace ombrix
