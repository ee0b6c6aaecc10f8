#include "calibration/CalibrationBench.h"
#include "calibration/MeasuredChannels.h"
#include "calibration/report/AuditSheets.h"
#include "calibration/report/CalibrationReport.h"
#include "platform/text/OleDate.h"
#include "reports/ReportFile.h"
#include "reports/layout/AuditSheetLayout.h"
#include "reports/layout/VelocityReportLayout.h"
#include "support/FullDisk.h"
#include "support/NoConverter.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

constexpr const char* ViewQuestion = "Would you like to view the results now?";
constexpr const char* RetryQuestion =
    "There was en error saving the Audit Data. The error is shown below.\r\n\r\n"
    "Please check that the file is not already open in Excel.\r\n\r\n"
    "Would you like to retry saving the data?";
const std::array<float, 5> Flows = {0.0F, 1000.0F, 2000.0F, 3000.0F, 4000.0F};

class CalibrationWorkbooksTest : public ::testing::Test {
  protected:
    StoredReport Save(bool autoSave) {
        return CreateAuditSheet_PV17(m_Bench.Reports, m_Bench.Record().Unit(),
                                     m_Bench.Bench.Time.Now(), Flows, autoSave);
    }
    OpenedWorkbook Open() {
        return OpenFilled(m_Bench.Reports, "Opening", AuditSheetLayout::PV17::Template,
                          [](Workbook&) {});
    }
    std::filesystem::path Root() const { return m_Bench.Bench.Folder.Path(); }
    std::vector<Message>& Shown() { return m_Bench.Bench.Messages.Shown; }
    std::string Stamp() { return DateText(m_Bench.Bench.Time.Now(), "yymmdd_hhnnss"); }

    CalibrationBench m_Bench{"acu"};
};

TEST_F(CalibrationWorkbooksTest, TwoAutomaticSavesShareTheFolderOfTheFirst) {
    const std::string first = Stamp();
    const StoredReport pressure = Save(true);
    m_Bench.Bench.Time.Advance(70.0);
    const std::string second = Stamp();
    const StoredReport velocity =
        CreateAuditSheet_PV16(m_Bench.Reports, m_Bench.Record().Unit(), m_Bench.Bench.Time.Now(),
                              GoodRun(CalibrationKind::Audit).Measured, true);
    EXPECT_TRUE(pressure.WhereItBelongs && velocity.WhereItBelongs);
    const auto folder = Root() / "ACU00301" / ("M9200301A_" + first);
    EXPECT_EQ(pressure.File, folder / ("ACU_SU_ACU00301_M9200301A_" + first + "_Audit_PV17.xls"));
    EXPECT_EQ(velocity.File, folder / ("ACU_ACU00301_M9200301A_" + second + "_Audit_PV16.xls"));
    EXPECT_TRUE(Shown().empty()) << "an automatic save asks nothing";
    EXPECT_EQ(m_Bench.Wait.Story.back(), "closed");
}

TEST(CalibrationFolders, NoMFCNumberLeadsOutOfItsFolder) {
    const std::array<std::pair<const char*, const char*>, 5> numbers = {
        {{"   ", "UNKNOWN"},
         {"M1.5", "M1_5"},
         {R"(..\..\etc)", "______etc"},
         {"a/b:c*?\"<>|", "a_b_c______"},
         {"a\tb\x7F", "a_b_"}}};
    for (const auto& [number, folder] : numbers) {
        CalibrationBench bench("acu");
        ACU unit = bench.Record().Unit();
        unit.Record.MFCNumber = number;
        const std::string stamp = DateText(bench.Bench.Time.Now(), "yymmdd_hhnnss");
        const auto saved =
            CreateAuditSheet_PV17(bench.Reports, unit, bench.Bench.Time.Now(), Flows, true);
        EXPECT_EQ(saved.File.value().parent_path(),
                  bench.Bench.Folder.Path() / "ACU00301" / (folder + ("_" + stamp)));
    }
}

TEST_F(CalibrationWorkbooksTest, YesOpensTheFileNoClosesWorkbookAndApplication) {
    OpenedWorkbook opened = Open();
    m_Bench.Bench.Messages.Answers = {Answer::No};
    const StoredReport report =
        SaveCalibrationExcelWorkbook(m_Bench.Reports, opened, "Bare.xls", false);
    EXPECT_TRUE(report.WhereItBelongs);
    EXPECT_EQ(report.File, Root() / "Bare.xls");
    ASSERT_EQ(Shown().size(), 1U);
    EXPECT_EQ(Shown()[0].Text, ViewQuestion);
    EXPECT_EQ(Shown()[0].Icon, MessageIcon::Question);
    EXPECT_FALSE(opened);
    EXPECT_EQ(opened.Application->WorkbookCount(), 0);
    EXPECT_TRUE(m_Bench.Bench.Documents.Opened.empty());

    const std::string before = ReadWholeFile(Root() / "Bare.xls");
    opened = Open();
    const StoredReport second =
        SaveCalibrationExcelWorkbook(m_Bench.Reports, opened, "Bare.xls", false);
    EXPECT_TRUE(second.WhereItBelongs);
    EXPECT_EQ(second.File, Root() / "Bare (2).xls");
    EXPECT_EQ(ReadWholeFile(Root() / "Bare.xls"), before) << "of the first one nothing is lost";
    EXPECT_EQ(m_Bench.Bench.Documents.Opened, std::vector{second.File.value()});
    EXPECT_EQ(opened.Application->WorkbookCount(), 1);
}

TEST_F(CalibrationWorkbooksTest, AProgramThatIsBeingClosedAsksNothing) {
    m_Bench.Bench.Events.EndProgram();
    m_Bench.Bench.Messages.Answers = {Answer::No, Answer::No, Answer::No, Answer::No};
    EXPECT_TRUE(Save(false).WhereItBelongs);
    FullDisk full(m_Bench.Bench.Files);
    m_Bench.WorkbookFiles = &full;
    const StoredReport kept = Save(false);
    EXPECT_FALSE(kept.WhereItBelongs);
    EXPECT_TRUE(std::filesystem::exists(kept.File.value()));
    EXPECT_TRUE(Shown().empty());
    EXPECT_TRUE(m_Bench.Bench.Documents.Opened.empty());
}

TEST_F(CalibrationWorkbooksTest, WithoutLibreOfficeTheWorkbookLiesBesideAndTheReasonIsTold) {
    NoConverter noConverter;
    m_Bench.Reports.Launcher = [&] {
        return std::make_unique<XlsxApplication>(m_Bench.Bench.Files, noConverter);
    };
    const StoredReport report = Save(true);
    EXPECT_FALSE(report.WhereItBelongs);
    EXPECT_EQ(report.File.value().extension(), ".xlsx");
    EXPECT_EQ(ProbeOf(report.File).Value("Audit", "D7"), "ACU00301");
    ASSERT_EQ(Shown().size(), 1U);
    EXPECT_EQ(Shown()[0].Icon, MessageIcon::Warning);
    EXPECT_NE(Shown()[0].Text.find("no conversion is expected"), std::string::npos);
    EXPECT_TRUE(Shown()[0].Text.ends_with("\r\n\r\n   " + report.File->string()));
}

TEST_F(CalibrationWorkbooksTest, AFolderThatCannotBeMadeLeavesTheWorkbookInTheCurrentOne) {
    ReplaceWholeFile(Root() / "ACU00301", "a file in the way");
    const StoredReport report = Save(true);
    EXPECT_EQ(report.File, Root() / "PV17_ACUAudit_Pressure.xlsx");
    ASSERT_EQ(Shown().size(), 1U);
    EXPECT_TRUE(Shown()[0].Text.ends_with(report.File->string()));
}

TEST_F(CalibrationWorkbooksTest, AFullDiskLosesNothing) {
    FullDisk full(m_Bench.Bench.Files);
    m_Bench.WorkbookFiles = &full;
    ReplaceWholeFile(Root() / "Kept" / "PV17_ACU00301_PressureAudit_40315_XX.xlsx", "kept before");
    m_Bench.Bench.Messages.Answers = {Answer::Yes, Answer::No};
    const StoredReport report = Save(false);
    EXPECT_FALSE(report.WhereItBelongs);
    EXPECT_EQ(report.File, Root() / "Kept" / "PV17_ACU00301_PressureAudit_40315_XX (2).xlsx");
    EXPECT_EQ(ProbeOf(report.File).Value("Audit", "E23"), "4000");
    ASSERT_EQ(Shown().size(), 4U);
    for (const std::size_t attempt : {0U, 1U}) {
        EXPECT_EQ(Shown()[attempt].Text, RetryQuestion);
        EXPECT_TRUE(Shown()[attempt].DeclinedUnattended);
        EXPECT_EQ(Shown()[attempt].Buttons, MessageButtons::YesNo);
    }
    EXPECT_NE(Shown()[2].Text.find("No space left on device"), std::string::npos);
    EXPECT_NE(Shown()[3].Text.find(report.File->string()), std::string::npos);
}

TEST_F(CalibrationWorkbooksTest, AMissingTemplateIsToldOnce) {
    m_Bench.Reports.Templates = R"(C:\Nowhere\)";
    const StoredReport report = Save(false);
    EXPECT_FALSE(report.WhereItBelongs || report.File);
    EXPECT_EQ(m_Bench.Told(), std::vector<std::string>{"Unable to find File: \r\n\r\n  "
                                                       "C:\\Nowhere\\PV17_ACUAudit_Pressure.xlt"});
    EXPECT_EQ(
        m_Bench.Wait.Story,
        (std::vector<std::string>{"Starting Excel and creating ACU Audit Spreadsheet", "closed"}));
    CalibrationReport system(m_Bench.Reports);
    EXPECT_FALSE(system.Open(CalibrationKind::System, m_Bench.Record().Unit(), {}));
    EXPECT_FALSE(system.IsOpen());
    EXPECT_EQ(Shown().size(), 2U);
}

TEST_F(CalibrationWorkbooksTest, TemplatesThatCannotBeUsedAreTold) {
    m_Bench.Reports.Templates = R"(C:\)";
    m_Bench.Bench.Files.ReplaceFile(R"(C:\PV17_ACUAudit_Pressure.xltx)", "damaged");
    EXPECT_FALSE(Save(false).File);
    ASSERT_EQ(Shown().size(), 1U);
    EXPECT_TRUE(Shown()[0].Text.starts_with("The report could not be opened.\r\n\r\n"));
    EXPECT_EQ(Shown()[0].Icon, MessageIcon::Critical);
    const OpenedWorkbook unfilled =
        OpenFilled(CalibrationBench("acu").Reports, "Opening", VelocityReportLayout::Template,
                   [](Workbook& book) { book.Sheet("No such sheet"); });
    EXPECT_FALSE(unfilled);
}

TEST_F(CalibrationWorkbooksTest, AnAuditTellsOfItsSheetsTemplateBeforeAirFlows) {
    const std::filesystem::path damaged = Root() / "damaged.xltx";
    ReplaceWholeFile(damaged, "damaged");
    for (const char* name : {"PV16_ACUAudit_Velocity.xltx", "PV17_ACUAudit_Pressure.xltx"})
        m_Bench.Bench.Files.Mount(m_Bench.Reports.Templates + name, damaged);
    bool first = true;
    for (const char* name : {"PV16_ACUAudit_Velocity.xltx", "PV17_ACUAudit_Pressure.xltx"}) {
        Shown().clear();
        first ? m_Bench.SetUp.RunVelocity(CalibrationKind::Audit)
              : m_Bench.SetUp.RunPressure(CalibrationKind::Audit);
        first = false;
        EXPECT_NE(Shown().at(1).Text.find(name), std::string::npos) << "behind the first question";
    }
}

} // namespace
} // namespace ombrix
