// The converter, and what LibreOffice makes of our workbooks.
#include "spreadsheet/LibreOfficeConverter.h"
#include "support/SampleReport.h"
#include "support/WorkbookFixture.h"
#include "support/WorkbookProbe.h"

#include <fstream>

namespace ombrix {
namespace {

/// A program made of a shell script.
std::string Script(const TemporaryFolder& folder, const std::string& text) {
    const std::filesystem::path path = folder.Path() / "office";
    std::ofstream(path) << "#!/bin/sh\n" << text << "\n";
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path.string();
}

std::string Refusal(const LibreOfficeSettings& settings) {
    try {
        LibreOfficeConverter(settings).Convert("workbook", "xlsx", "xls");
    } catch (const SpreadsheetError& error) {
        return error.what();
    }
    return "";
}

TEST(LibreOfficeTest, AProgramThatIsMissingOrFailsOrGivesNothingIsAnErrorWithTheRemedy) {
    const TemporaryFolder scratch;
    const std::string missing = Refusal({"/nonexistent/soffice", scratch.Path()});
    EXPECT_NE(missing.find("/nonexistent/soffice"), std::string::npos);
    EXPECT_NE(missing.find("Install LibreOffice"), std::string::npos);
    EXPECT_NE(Refusal({"false", scratch.Path()}).find("failed"), std::string::npos);
    EXPECT_NE(Refusal({"true", scratch.Path()}).find("could not convert"), std::string::npos);
    EXPECT_NE(Refusal({"true", scratch.Path() / "gone"}), "");
    EXPECT_TRUE(std::filesystem::is_empty(scratch.Path()));
}

TEST(LibreOfficeTest, AProgramThatHangsIsEnded) {
    const TemporaryFolder programs;
    const TemporaryFolder scratch;
    const std::string program = Script(programs, "sleep 60 & wait");
    const auto started = std::chrono::steady_clock::now();
    EXPECT_NE(
        Refusal({program, scratch.Path(), std::chrono::milliseconds(50)}).find("did not finish"),
        std::string::npos);
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(30));
    EXPECT_TRUE(std::filesystem::is_empty(scratch.Path()));
}

TEST(LibreOfficeTest, PathsReachTheProgramAsTheyAreWithoutAShell) {
    const TemporaryFolder programs;
    const TemporaryFolder odd;
    const std::filesystem::path scratch = odd.Path() / "a b;$(touch injected)'\"";
    std::filesystem::create_directory(scratch);
    // The last argument is the source; the one after --outdir the folder for the result.
    const std::string program =
        Script(programs, "mkdir -p \"$8\"; for last; do :; done; cp \"$last\" \"$8/workbook.xls\"");
    EXPECT_EQ(LibreOfficeConverter({program, scratch}).Convert("content", "xlsx", "xls"),
              "content");
    EXPECT_TRUE(std::filesystem::is_empty(scratch));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(odd.Path()), {}), 1);
}

TEST(LibreOfficeTest, BinaryWorkbooksAreWrittenAndTakenAsTemplates) {
    WorkbookFixture fixture;
    LibreOfficeConverter converter;
    XlsxApplication application(fixture.Files, converter);
    Workbook& report = application.Add(R"(C:\Report.xltx)");
    report.Sheet("Overview").SetValue("C3", std::string("M9200123Z"));
    report.SaveAs(R"(C:\Old.xlt.xls)", FileFormat::Excel8);
    const std::string binary = fixture.Files.ReadFile(R"(C:\Old.xlt.xls)");
    ASSERT_TRUE(binary.starts_with(BinaryWorkbook));

    fixture.Files.ReplaceFile(R"(C:\Old.xlt)", binary);
    Workbook& again = application.Add(R"(C:\Old.xlt)");
    EXPECT_EQ(again.Sheet("Overview").Value("C3"), CellValue(std::string("M9200123Z")));
    again.Sheet("Overview").SetValue("C2", std::int32_t{301});
    again.SaveAs(R"(C:\again.xlsx)", FileFormat::ByExtension);
    WorkbookProbe saved(fixture.Files.ReadFile(R"(C:\again.xlsx)"));
    EXPECT_EQ(saved.Value("Overview", "C2"), "301");
    EXPECT_EQ(saved.SheetNames().size(), 3U);
}

/// What a spreadsheet program calculates for the overview, by cell.
auto Calculated(const std::vector<SampleSequence>& sequences) {
    WorkbookFixture fixture;
    FillSampleReport(*fixture.Book, sequences);
    fixture.Saved();
    const auto report = std::make_shared<WorkbookProbe>(
        LibreOfficeConverter().Convert(fixture.Files.ReadFile(R"(C:\saved.xlsx)"), "xlsx", "xlsx"));
    return [report](const std::string& address) {
        return std::string(report->Cell("Overview", address).child("v").text().get());
    };
}

TEST(CalculatedReportTest, JudgesEveryStepAndSumsUp) {
    std::vector<SampleSequence> sequences = ShortReport();
    sequences.push_back({"Limit", {0.5F, 0.0F}, 10.0F, 0.05F, 0.0098F});
    const auto result = Calculated(sequences);
    EXPECT_EQ(result("N11") + result("O11"), "PassPass");
    EXPECT_EQ(result("N47") + result("O47"), "FailPass") << "2 % below its demand";
    EXPECT_EQ(result("N46") + result("O46"), "PassPass") << "demand and flow are zero";
    EXPECT_EQ(result("N119") + result("O119"), "--")
        << "too short to be judged by what it ends with";
    EXPECT_EQ(result("N154") + result("O154"), "PassPass") << "just within the limit";
    EXPECT_EQ(result("N13") + result("O13"), "") << "no step stands there";
    EXPECT_EQ(result("I2") + "," + result("I3"), "14,10");
    EXPECT_EQ(result("I4") + "," + result("I5"), "1,3");
    EXPECT_EQ(result("L2"), "FAIL");
}

TEST(CalculatedReportTest, GivesTheVerdictOfASoundOrAnUnjudgedUnit) {
    EXPECT_EQ(Calculated({{"Zero - Ch1", {0.0F, 0.2F, 0.0F}}})("L2"), "PASS");
    const auto unjudged = Calculated({{"Zero - Ch1", {0.0F, 0.2F, 0.0F}, 2.0F}});
    EXPECT_EQ(unjudged("L2"), "NO RESULT");
    EXPECT_EQ(unjudged("L5"), "Steps of up to 2 s are not evaluated.");
}

TEST(CalculatedReportTest, JudgesTheLastStepOfTheLongestProgramme) {
    std::vector<SampleSequence> programme;
    for (const std::size_t steps : {3U, 3U, 3U, 3U, 9U, 9U, 36U, 36U, 24U, 24U})
        programme.push_back({"Sequence " + std::to_string(programme.size() + 1),
                             std::vector<float>(steps, 0.3F), 3.0F, 0.5F});
    const auto result = Calculated(programme);
    EXPECT_EQ(result("I2") + "," + result("I3"), "150,150");
}

} // namespace
} // namespace ombrix
