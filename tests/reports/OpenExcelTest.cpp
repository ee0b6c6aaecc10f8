#include "reports/ReportFile.h"
#include "support/TestBench.h"
#include "support/WorkbookFixture.h"

namespace ombrix {
namespace {

class WaitStory final : public OpenExcelView {
  public:
    std::vector<std::string> Calls;
    void Show(const std::string& message) override { Calls.push_back(message); }
    void Close() override { Calls.emplace_back("closed"); }
};

class OpenExcelTest : public ::testing::Test {
  protected:
    TestBench m_Bench;
    FakeConverter m_Converter;
    SpreadsheetLauncher m_Launcher = [this] {
        return std::make_unique<XlsxApplication>(m_Bench.Files, m_Converter);
    };

    OpenedWorkbook Open(const std::string& path) {
        return OpenWorkbookFromTemplate(m_Bench.World, m_Launcher, path);
    }
};

TEST_F(OpenExcelTest, TheWaitWindowIsPaintedBeforeTheTemplateIsOpened) {
    WaitStory wait;
    m_Bench.Files.ReplaceFile(R"(C:\Audit.xltx)", HealthCheckTemplate());
    std::vector<std::string> shownWhenPumped;
    m_Bench.Events.EveryPass = [&] { shownWhenPumped = wait.Calls; };
    const OpenedWorkbook opened =
        OpenExcel(wait, m_Bench.World, m_Launcher, "Starting Excel", R"(C:\Audit.xlt)");
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened.Sheet, &opened.Book->Sheet(1));
    EXPECT_EQ(shownWhenPumped, std::vector<std::string>{"Starting Excel"});
    EXPECT_EQ(wait.Calls.size(), 1U) << "the caller closes it";
    EXPECT_TRUE(m_Bench.Messages.Shown.empty());
}

TEST_F(OpenExcelTest, AMissingTemplateGivesOneBoxAndNoWorkbook) {
    const OpenedWorkbook opened = Open(R"(C:\Audit.xlt)");
    EXPECT_FALSE(opened);
    EXPECT_TRUE(opened.Application);
    ASSERT_EQ(m_Bench.Messages.Shown.size(), 1U);
    EXPECT_EQ(m_Bench.Messages.Shown[0].Text, "Unable to find File: \r\n\r\n  C:\\Audit.xlt");
    EXPECT_EQ(m_Bench.Messages.Shown[0].Icon, MessageIcon::Information);
    EXPECT_EQ(m_Bench.Messages.Shown[0].Buttons, MessageButtons::Ok);
}

TEST_F(OpenExcelTest, OtherErrorsGiveNoBoxButAReason) {
    m_Bench.Files.ReplaceFile(R"(C:\Audit.xltx)", "damaged");
    const OpenedWorkbook damaged = Open(R"(C:\Audit.xltx)");
    EXPECT_FALSE(damaged);
    EXPECT_NE(damaged.Error.find(R"(C:\Audit.xltx)"), std::string::npos);
    m_Launcher = []() -> std::unique_ptr<SpreadsheetApplication> {
        throw SpreadsheetError("not installed");
    };
    EXPECT_EQ(Open(R"(C:\Audit.xltx)").Error, "not installed");
    EXPECT_TRUE(m_Bench.Messages.Shown.empty());
}

TEST_F(OpenExcelTest, AFailedSaveStillCountsAsDoneAndKeepsTheWorkbook) {
    m_Bench.Files.ReplaceFile(R"(C:\Audit.xltx)", HealthCheckTemplate());
    const OpenedWorkbook opened = Open(R"(C:\Audit.xltx)");
    EXPECT_TRUE(SaveWorkbookAs(*opened.Book, R"(C:\first.xls)"));
    EXPECT_TRUE(m_Bench.Files.ReadFile(R"(C:\first.xls)").starts_with("xlsx>xls:"));
    m_Converter.Missing = true;
    EXPECT_TRUE(SaveWorkbookAs(*opened.Book, R"(C:\second.xls)"));
    EXPECT_EQ(opened.Book->FullName(), R"(C:\second.xlsx)");
}

} // namespace
} // namespace ombrix
