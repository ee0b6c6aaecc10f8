// Templates and files: what is read, what is kept, what happens when storing fails.
#include "support/SampleReport.h"
#include "support/WorkbookFixture.h"

#include <array>
#include <map>
#include <random>
#include <sstream>

namespace ombrix {
namespace {

TEST(WorkbookFilesTest, WhatIsNotChangedStaysAsItIs) {
    const std::string picture("\x89PNG\r\n\x1A\n\0\1\2", 11);
    const std::string settings = "<a  b='c'></a>";
    const std::string original = WithParts(
        HealthCheckTemplate(), {{"xl/media/image1.png", picture}, {"customXml/x.xml", settings}});
    WorkbookFixture fixture(original);
    FillSampleReport(*fixture.Book, ShortReport());
    WorkbookProbe saved = fixture.Saved();
    WorkbookProbe before(original);
    EXPECT_EQ(saved.Parts().at("xl/media/image1.png"), picture);
    EXPECT_EQ(saved.Parts().at("customXml/x.xml"), settings);
    for (const char* part : {"docProps/core.xml", "xl/sharedStrings.xml", "_rels/.rels"})
        EXPECT_EQ(saved.Parts().at(part), before.Parts().at(part)) << part;
    for (const char* element : {"sheetViews", "cols", "pageMargins", "pageSetup", "headerFooter"}) {
        std::ostringstream texts[2];
        before.Sheet("DataTemplate").child(element).print(texts[0]);
        saved.Sheet("Zero - Ch1").child(element).print(texts[1]);
        EXPECT_EQ(texts[1].str(), texts[0].str());
        EXPECT_FALSE(texts[0].str().empty()) << element;
    }
}

TEST(WorkbookFilesTest, ATemplateBecomesAWorkbookThatIsCalculatedOnOpening) {
    std::string original = WithParts(HealthCheckTemplate(), {{"xl/calcChain.xml", "<calcChain/>"}});
    original = WithReplaced(original, "xl/_rels/workbook.xml.rels", "</Relationships>",
                            "<Relationship Id=\"rId99\" Target=\"calcChain.xml\" Type=\"http://"
                            "schemas.openxmlformats.org/officeDocument/2006/relationships/"
                            "calcChain\"/></Relationships>");
    WorkbookFixture fixture(original);
    fixture.Application.SetCalculation(Calculation::Manual);
    WorkbookProbe manual = fixture.Saved();
    fixture.Application.SetCalculation(Calculation::Automatic);
    WorkbookProbe automatic = fixture.Saved();
    EXPECT_TRUE(manual.Xml("xl/workbook.xml").select_node("//calcPr[@calcMode='manual']"));
    EXPECT_TRUE(automatic.Xml("xl/workbook.xml")
                    .select_node("//calcPr[@fullCalcOnLoad='1' and not(@calcMode)]"));
    EXPECT_FALSE(automatic.Has("xl/calcChain.xml"));
    EXPECT_TRUE(automatic.Related("xl/workbook.xml", "/calcChain").empty());
    EXPECT_TRUE(automatic.Xml("[Content_Types].xml")
                    .select_node("//Override[@PartName='/xl/workbook.xml' and contains("
                                 "@ContentType,'sheet.main')]"));
}

std::string Repeated(std::string_view text, int times) {
    std::string repeated;
    for (int i = 0; i < times; ++i)
        repeated += text;
    return repeated;
}

/// Templates that cannot be used, by what is wrong with them.
std::map<std::string, std::string> BadTemplates() {
    const std::string& sound = HealthCheckTemplate();
    WorkbookFixture drawn;
    drawn.Sheet("Overview").AddChart(ChartType::XYScatterSmoothNoMarkers, {});
    drawn.Saved();
    const std::string report = drawn.Files.ReadFile(R"(C:\saved.xlsx)");
    std::map<std::string, std::string> bad = {
        {"damaged drawing", WithParts(report, {{"xl/drawings/drawing1.xml", "<"}})},
        {"damaged chart", WithParts(report, {{"xl/charts/chart1.xml", "<c:a xmlns:c='b'/>"}})},
        {"damaged relationships",
         WithParts(report, {{"xl/worksheets/_rels/sheet1.xml.rels", "<"}})},
        {"empty", ""},
        {"no archive", "plain text"},
        {"truncated", sound.substr(0, 9000)},
        {"binary", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 old"},
        {"another kind", WithReplaced(sound, "[Content_Types].xml", "spreadsheetml.template.main",
                                      "wordprocessingml")},
        {"bomb", WithParts(sound, {{"xl/media/a.bin", std::string(40U << 20U, '0')}})},
        {"deeply nested", WithParts(sound, {{"xl/worksheets/sheet2.xml",
                                             "<worksheet><sheetData/>" + Repeated("<a>", 300000) +
                                                 Repeated("</a>", 300000) + "</worksheet>"}})},
        {"flood of formulas",
         WithReplaced(sound, "xl/worksheets/sheet3.xml", "</sheetData>",
                      "<row r=\"7\"><c r=\"A7\"><f t=\"shared\" si=\"0\">" + Repeated("A", 8000) +
                          "</f></c>" + Repeated("<c><f t=\"shared\" si=\"0\"/></c>", 5000) +
                          "</row></sheetData>")},
        {"undeclared",
         WithReplaced(sound, "xl/worksheets/sheet2.xml", "sheetData>", "q:sheetData>")}};
    for (const char* part :
         {"[Content_Types].xml", "xl/workbook.xml", "xl/styles.xml", "xl/worksheets/sheet2.xml"})
        bad.emplace(part, WithParts(sound, {{part, ""}}));
    return bad;
}

TEST(WorkbookFilesTest, ABadTemplateIsNamedAndHowToMendItIsSaid) {
    TemporaryFolder folder;
    FolderDrive files(folder.Path());
    FakeConverter converter;
    converter.Missing = true;
    XlsxApplication application(files, converter);
    for (const auto& [fault, bytes] : BadTemplates()) {
        files.ReplaceFile(R"(C:\Bad.xltx)", bytes);
        try {
            application.Add(R"(C:\Bad.xlt)");
            ADD_FAILURE() << "was taken: " << fault;
        } catch (const SpreadsheetError& error) {
            EXPECT_NE(std::string(error.what()).find(R"(C:\Bad.xltx)"), std::string::npos) << fault;
            EXPECT_NE(std::string(error.what()).find("Put a sound copy"), std::string::npos);
        }
    }
    EXPECT_EQ(application.WorkbookCount(), 0);
}

TEST(WorkbookFilesTest, TheNameDecidesPlaceAndFormat) {
    struct SavedName {
        const char* Wanted;
        FileFormat Format;
        const char* Stored;
        const char* Begin;
    };
    for (const SavedName& name :
         {SavedName{R"(C:\a.xlsx)", FileFormat::ByExtension, R"(C:\a.xlsx)", "PK"},
          SavedName{R"(C:\a.XLS)", FileFormat::ByExtension, R"(C:\a.XLS)", "xlsx>xls:PK"},
          SavedName{R"(C:\b.xls)", FileFormat::Excel8, R"(C:\b.xls)", "xlsx>xls:PK"},
          SavedName{"c.xls", FileFormat::Excel8, R"(C:\c.xls)", "xlsx>xls:PK"}}) {
        WorkbookFixture fixture;
        fixture.Book->SaveAs(name.Wanted, name.Format);
        EXPECT_EQ(fixture.Book->FullName(), name.Stored);
        EXPECT_TRUE(fixture.Files.ReadFile(name.Stored).starts_with(name.Begin)) << name.Wanted;
    }
    WorkbookFixture fixture;
    for (const char* refused :
         {"", R"(C:\)", R"(C:\a.csv)", R"(C:\no folder\a.xlsx)", R"(C:\..\a.xlsx)"}) {
        EXPECT_THROW(fixture.Book->SaveAs(refused, FileFormat::ByExtension), SpreadsheetError);
        EXPECT_EQ(fixture.Book->FullName(), "") << refused;
    }
}

TEST(WorkbookFilesTest, AfterAFailedSaveTheOldFileStaysAndTheWorkbookIsKeptBesideItOnce) {
    WorkbookFixture fixture;
    fixture.Files.CreateFolder(R"(C:\ACUs)");
    fixture.Files.ReplaceFile(R"(C:\ACUs\report.xls)", "old");
    fixture.Files.ReplaceFile(R"(C:\ACUs\report.xlsx)", "of somebody else");
    fixture.Application.SetVisible(true);
    EXPECT_EQ(fixture.Book->FullName(), "") << "nothing was to be saved yet";
    fixture.Converter.Missing = true;
    EXPECT_THROW(fixture.Book->SaveAs(R"(C:\ACUs\report.xls)", FileFormat::Excel8),
                 SpreadsheetError);
    fixture.Sheet("Overview").SetValue("C3", std::string("after"));
    for (int shown = 0; shown < 2; ++shown)
        fixture.Application.SetVisible(true);
    EXPECT_EQ(fixture.Book->FullName(), R"(C:\ACUs\report (2).xlsx)");
    WorkbookProbe kept(fixture.Files.ReadFile(fixture.Book->FullName()));
    EXPECT_EQ(kept.Value("Overview", "C3"), "after");
    EXPECT_EQ(fixture.Files.ReadFile(R"(C:\ACUs\report.xls)"), "old");
    EXPECT_EQ(fixture.Files.ReadFile(R"(C:\ACUs\report.xlsx)"), "of somebody else");
    EXPECT_FALSE(fixture.Files.FileExists(R"(C:\ACUs\report (3).xlsx)"));
}

/// Works on whatever a template turned out to be. Refusals are fine, anything else is not.
void UseDamaged(const std::string& bytes) {
    try {
        WorkbookFixture fixture(bytes);
        for (int sheet = 1; sheet <= fixture.Book->WorksheetCount(); ++sheet)
            fixture.Book->Sheet(sheet).CopyRange("B7:O9", "B43:O45");
        FillSampleReport(*fixture.Book, {{"Once more", {0.0F, 0.2F}, 3.0F, 0.1F}});
        fixture.Saved();
    } catch (const SpreadsheetError& error) {
        EXPECT_STRNE(error.what(), "");
    }
}

constexpr int Mutations = 300;

TEST(WorkbookFuzzTest, DamagedArchivesAreRefusedOrUsed) {
    std::mt19937 random(1);
    const auto pick = [&random](std::size_t below) { return random() % below; };
    for (int i = 0; i < Mutations; ++i) {
        std::string bytes = HealthCheckTemplate();
        for (std::size_t change = pick(8) + 1; change > 0; --change)
            bytes[pick(bytes.size())] = static_cast<char>(pick(256));
        if (pick(4) == 0)
            bytes.resize(pick(bytes.size()));
        UseDamaged(bytes);
    }
}

/// Puts a text in place of an attribute's value or of a few bytes, somewhere in a part.
void Damage(std::string& part, std::mt19937& random, bool keepsXmlSound) {
    const std::array<const char*, 12> values = {
        "", "-1", "0", "99999999999", "1e999", "s", "1", "A1", "A1:B2", "'!$A", "rId1", "../../x"};
    const std::array<const char*, 4> markup = {"<", ">", "\"", "/"};
    const std::size_t begin = random() % part.size();
    const std::size_t value = part.find("=\"", begin);
    if (keepsXmlSound && value != std::string::npos)
        part.replace(value + 2, part.find('"', value + 2) - value - 2,
                     values.at(random() % values.size()));
    else
        part.replace(begin, random() % 12, markup.at(random() % markup.size()));
}

TEST(WorkbookFuzzTest, DamagedPartsAreRefusedOrUsed) {
    // A report has every kind of part.
    WorkbookFixture fixture;
    FillSampleReport(*fixture.Book, {{"Zero - Ch1", {0.0F, 0.2F}, 3.0F, 0.5F}});
    const auto parts = fixture.Saved().Parts();
    const std::string report = fixture.Files.ReadFile(R"(C:\saved.xlsx)");
    std::mt19937 random(2);
    for (int i = 0; i < Mutations; ++i) {
        auto damaged = *std::next(parts.begin(), static_cast<int>(random() % parts.size()));
        const bool keepsXmlSound = random() % 5 > 0;
        for (std::size_t change = random() % 4 + 1; change > 0; --change)
            Damage(damaged.second, random, keepsXmlSound);
        UseDamaged(WithParts(report, {damaged}));
    }
}

} // namespace
} // namespace ombrix
