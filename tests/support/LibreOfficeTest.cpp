// The converter, and what LibreOffice makes of our workbooks.
#include "support/LibreOfficeConverter.h"
#include "support/SampleReport.h"
#include "support/WorkbookFixture.h"

#include <fstream>

namespace ombrix {
namespace {

constexpr std::string_view BinaryWorkbook = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";

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

TEST(LibreOfficeTest, AMissingProgramIsNamedWithTheRemedy) {
    const TemporaryFolder folder;
    const std::string refusal = Refusal({"/nonexistent/soffice", folder.Path()});
    EXPECT_NE(refusal.find("/nonexistent/soffice"), std::string::npos);
    EXPECT_NE(refusal.find("Install LibreOffice"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(LibreOfficeTest, AProgramThatFailsOrGivesNothingIsAnError) {
    const TemporaryFolder scratch;
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

/// What a spreadsheet program calculates for the report.
class CalculatedReportTest : public ::testing::Test {
  protected:
    static WorkbookProbe Calculate(const std::vector<SampleSequence>& sequences) {
        WorkbookFixture fixture;
        FillSampleReport(*fixture.Book, sequences);
        fixture.Saved();
        return WorkbookProbe(LibreOfficeConverter().Convert(
            fixture.Files.ReadFile(R"(C:\saved.xlsx)"), "xlsx", "xlsx"));
    }
    static std::string Result(WorkbookProbe& report, const std::string& address) {
        return report.Cell("Overview", address).child("v").text().get();
    }
};

TEST_F(CalculatedReportTest, JudgesEveryStepAndSumsUp) {
    std::vector<SampleSequence> sequences = ShortReport();
    sequences.push_back({"Limit", {0.5F, 0.0F}, 10.0F, 0.05F, 0.0098F});
    WorkbookProbe report = Calculate(sequences);
    const auto results = [&](int row) {
        return Result(report, "N" + std::to_string(row)) +
               Result(report, "O" + std::to_string(row));
    };
    EXPECT_EQ(results(11), "PassPass");
    EXPECT_EQ(results(47), "FailPass") << "2 % below its demand";
    EXPECT_EQ(results(46), "PassPass") << "demand and flow are zero";
    EXPECT_EQ(results(119), "--") << "too short to have an end value";
    EXPECT_EQ(results(154), "PassPass") << "just within the limit";
    EXPECT_EQ(results(13), "") << "no step stands there";
    EXPECT_EQ(Result(report, "I2"), "14");
    EXPECT_EQ(Result(report, "I3"), "10");
    EXPECT_EQ(Result(report, "I4"), "1");
    EXPECT_EQ(Result(report, "I5"), "3");
    EXPECT_EQ(Result(report, "L2"), "FAIL");
}

TEST_F(CalculatedReportTest, GivesTheVerdictOfASoundOrAnUnjudgedUnit) {
    WorkbookProbe sound = Calculate({{"Zero - Ch1", {0.0F, 0.2F, 0.0F}}});
    EXPECT_EQ(Result(sound, "L2"), "PASS");
    WorkbookProbe unjudged = Calculate({{"Zero - Ch1", {0.0F, 0.2F, 0.0F}, 2.0F}});
    EXPECT_EQ(Result(unjudged, "L2"), "NO RESULT");
    EXPECT_EQ(Result(unjudged, "L5"), "Steps of up to 2 s are not evaluated.");
}

TEST_F(CalculatedReportTest, JudgesTheLastStepOfTheLongestProgramme) {
    std::vector<SampleSequence> programme;
    const auto add = [&](std::size_t steps) {
        programme.push_back({"Sequence " + std::to_string(programme.size() + 1),
                             std::vector<float>(steps, 0.3F), 3.0F, 0.5F});
    };
    for (const std::size_t steps : {3, 3, 3, 3, 9, 9, 36, 36, 24, 24})
        add(steps);
    WorkbookProbe report = Calculate(programme);
    EXPECT_EQ(Result(report, "I2"), "150");
    EXPECT_EQ(Result(report, "I3"), "150");
}

} // namespace
} // namespace ombrix
