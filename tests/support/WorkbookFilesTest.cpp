// Templates and files: what is read, what is kept, what happens when storing fails.
#include "support/SampleReport.h"
#include "support/WorkbookFixture.h"
#include "support/xlsx/ZipArchive.h"

#include <fmt/format.h>

#include <array>
#include <random>

namespace ombrix {
namespace {

constexpr const char* Target = R"(C:\ACUs\report.xls)";

TEST(WorkbookFilesTest, WhatIsNotChangedStaysByteForByte) {
    const std::string picture("\x89PNG\r\n\x1A\n\0\1\2", 11);
    const std::string settings = "<a  b='c'></a>";
    const std::string original = WithParts(
        HealthCheckTemplate(), {{"xl/media/image1.png", picture}, {"customXml/x.xml", settings}});
    WorkbookFixture fixture(original);
    FillSampleReport(*fixture.Book, ShortReport());
    WorkbookProbe saved = fixture.Saved();
    EXPECT_EQ(saved.Parts().at("xl/media/image1.png"), picture);
    EXPECT_EQ(saved.Parts().at("customXml/x.xml"), settings);
    for (const char* part : {"docProps/core.xml", "xl/sharedStrings.xml", "_rels/.rels"})
        EXPECT_EQ(saved.Parts().at(part), WorkbookProbe(original).Parts().at(part)) << part;
}

TEST(WorkbookFilesTest, TheRestOfAChangedSheetStays) {
    WorkbookFixture fixture;
    fixture.Sheet("DataTemplate").SetValue("A2", 1.0);
    WorkbookProbe before(HealthCheckTemplate());
    WorkbookProbe after = fixture.Saved();
    for (const char* element : {"sheetViews", "cols", "pageMargins", "pageSetup", "headerFooter"}) {
        const auto text = [&](WorkbookProbe& probe) {
            std::ostringstream out;
            probe.Sheet("DataTemplate").child(element).print(out);
            return out.str();
        };
        EXPECT_EQ(text(after), text(before));
        EXPECT_FALSE(text(after).empty()) << element;
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

struct BadTemplate {
    const char* Name;
    std::function<std::string()> Bytes;
};

class BadTemplateTest : public ::testing::TestWithParam<BadTemplate> {};

TEST_P(BadTemplateTest, IsNamedAndHowToMendItIsSaid) {
    TemporaryFolder folder;
    FolderDrive files(folder.Path());
    FakeConverter converter;
    converter.Missing = true;
    XlsxApplication application(files, converter);
    files.ReplaceFile(R"(C:\Bad.xltx)", GetParam().Bytes());
    try {
        application.Add(R"(C:\Bad.xlt)");
        FAIL() << "was taken";
    } catch (const SpreadsheetError& error) {
        EXPECT_NE(std::string(error.what()).find(R"(C:\Bad.xltx)"), std::string::npos);
        EXPECT_NE(std::string(error.what()).find("Put a sound copy"), std::string::npos);
    }
    EXPECT_EQ(application.WorkbookCount(), 0);
}

std::string TemplateWithout(const std::string& part) {
    return WithParts(HealthCheckTemplate(), {{part, ""}});
}

INSTANTIATE_TEST_SUITE_P(
    Workbook, BadTemplateTest,
    ::testing::Values(
        BadTemplate{"Empty", [] { return std::string(); }},
        BadTemplate{"NoArchive", [] { return std::string("plain text"); }},
        BadTemplate{"Truncated", [] { return HealthCheckTemplate().substr(0, 9000); }},
        BadTemplate{"Binary", [] { return std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 old"); }},
        BadTemplate{"NoContentTypes", [] { return TemplateWithout("[Content_Types].xml"); }},
        BadTemplate{"NoWorkbook", [] { return TemplateWithout("xl/workbook.xml"); }},
        BadTemplate{"NoStyles", [] { return TemplateWithout("xl/styles.xml"); }},
        BadTemplate{"NoSheet", [] { return TemplateWithout("xl/worksheets/sheet2.xml"); }},
        BadTemplate{"AnotherKind",
                    [] {
                        return WithReplaced(HealthCheckTemplate(), "[Content_Types].xml",
                                            "spreadsheetml.template.main", "wordprocessingml");
                    }},
        BadTemplate{"NestedWithoutEnd",
                    [] {
                        std::string deep = "<worksheet><sheetData/>";
                        for (int i = 0; i < 300000; ++i)
                            deep += "<a>";
                        for (int i = 0; i < 300000; ++i)
                            deep += "</a>";
                        return WithParts(HealthCheckTemplate(),
                                         {{"xl/worksheets/sheet2.xml", deep + "</worksheet>"}});
                    }},
        BadTemplate{"Bomb",
                    [] {
                        return WithParts(HealthCheckTemplate(),
                                         {{"xl/media/a.bin", std::string(40U << 20U, '0')}});
                    }},
        BadTemplate{"FormulaFlood",
                    [] {
                        std::string cells = "<row r=\"7\"><c r=\"A7\"><f t=\"shared\" si=\"0\">" +
                                            std::string(8000, 'A') + "</f></c>";
                        for (int i = 0; i < 5000; ++i)
                            cells += "<c><f t=\"shared\" si=\"0\"/></c>";
                        return WithReplaced(HealthCheckTemplate(), "xl/worksheets/sheet3.xml",
                                            "</sheetData>", cells + "</row></sheetData>");
                    }}),
    [](const auto& test) { return std::string(test.param.Name); });

TEST(WorkbookFilesTest, ATemplateIsFoundUnderItsOldNameAndMissedUnderNone) {
    WorkbookFixture fixture; // there is C:\Report.xltx
    fixture.Application.Add(R"(C:\Report.xlt)");
    EXPECT_EQ(fixture.Application.WorkbookCount(), 2);
    EXPECT_THROW(fixture.Application.Add(R"(C:\Repor.xltx)"), SpreadsheetError);
    fixture.Book->Close();
    EXPECT_EQ(fixture.Application.WorkbookCount(), 1);
    fixture.Application.Quit();
    EXPECT_EQ(fixture.Application.WorkbookCount(), 0);
    EXPECT_EQ(fixture.Application.Version(), "16.0");
}

struct SavedName {
    const char* Wanted;
    FileFormat Format;
    /// Where the file is; nothing when the name is refused.
    const char* Stored;
    bool Binary;
};

class SavedNameTest : public ::testing::TestWithParam<SavedName> {};

TEST_P(SavedNameTest, DecidesPlaceAndFormat) {
    WorkbookFixture fixture;
    const SavedName& name = GetParam();
    if (name.Stored == nullptr) {
        EXPECT_THROW(fixture.Book->SaveAs(name.Wanted, name.Format), SpreadsheetError);
        EXPECT_EQ(fixture.Book->FullName(), "");
        return;
    }
    fixture.Book->SaveAs(name.Wanted, name.Format);
    EXPECT_EQ(fixture.Book->FullName(), name.Stored);
    const std::string content = fixture.Files.ReadFile(name.Stored);
    EXPECT_TRUE(content.starts_with(name.Binary ? "xlsx>xls:PK" : "PK"));
}

INSTANTIATE_TEST_SUITE_P(
    Workbook, SavedNameTest,
    ::testing::Values(SavedName{R"(C:\a.xlsx)", FileFormat::ByExtension, R"(C:\a.xlsx)", false},
                      SavedName{R"(C:\a.XLS)", FileFormat::ByExtension, R"(C:\a.XLS)", true},
                      SavedName{R"(C:\a.xls)", FileFormat::Excel8, R"(C:\a.xls)", true},
                      SavedName{"a.xls", FileFormat::Excel8, R"(C:\a.xls)", true},
                      SavedName{"", FileFormat::Excel8, nullptr, false},
                      SavedName{R"(C:\)", FileFormat::ByExtension, nullptr, false},
                      SavedName{R"(C:\a.csv)", FileFormat::ByExtension, nullptr, false},
                      SavedName{R"(C:\no folder\a.xlsx)", FileFormat::ByExtension, nullptr, false},
                      SavedName{R"(C:\..\a.xlsx)", FileFormat::ByExtension, nullptr, false}));

TEST(WorkbookFilesTest, AFailedSaveLeavesTheOldFileAndAUsableWorkbook) {
    WorkbookFixture fixture;
    fixture.Files.CreateFolder(R"(C:\ACUs)");
    fixture.Files.ReplaceFile(Target, "old");
    fixture.Converter.Missing = true;
    EXPECT_THROW(fixture.Book->SaveAs(Target, FileFormat::Excel8), SpreadsheetError);
    EXPECT_EQ(fixture.Files.ReadFile(Target), "old");
    fixture.Sheet("Overview").SetValue("C3", std::string("after"));
    EXPECT_EQ(fixture.Saved().Value("Overview", "C3"), "after");
}

TEST(WorkbookFilesTest, ShownAfterAFailedSaveTheWorkbookIsKeptBesideTheWantedName) {
    WorkbookFixture fixture;
    fixture.Files.CreateFolder(R"(C:\ACUs)");
    fixture.Files.ReplaceFile(R"(C:\ACUs\report.xlsx)", "of somebody else");
    fixture.Converter.Missing = true;
    EXPECT_THROW(fixture.Book->SaveAs(Target, FileFormat::Excel8), SpreadsheetError);
    fixture.Application.SetVisible(true);
    EXPECT_EQ(fixture.Book->FullName(), R"(C:\ACUs\report (2).xlsx)");
    WorkbookProbe kept(fixture.Files.ReadFile(fixture.Book->FullName()));
    EXPECT_EQ(kept.Value("Overview", "B1"), "ACU Health Check");
    EXPECT_EQ(fixture.Files.ReadFile(R"(C:\ACUs\report.xlsx)"), "of somebody else");
    fixture.Application.SetVisible(true);
    EXPECT_FALSE(fixture.Files.FileExists(R"(C:\ACUs\report (3).xlsx)")) << "kept once";
}

TEST(WorkbookFilesTest, WithoutAUsableNameTheWorkbookIsKeptInTheCurrentFolder) {
    WorkbookFixture fixture;
    EXPECT_THROW(fixture.Book->SaveAs("", FileFormat::Excel8), SpreadsheetError);
    fixture.Application.SetVisible(true);
    EXPECT_EQ(fixture.Book->FullName(), R"(C:\Report.xlsx)");
    EXPECT_THROW(fixture.Book->SaveAs(R"(C:\gone\a.xls)", FileFormat::Excel8), SpreadsheetError);
    fixture.Application.SetVisible(true);
    EXPECT_EQ(fixture.Book->FullName(), R"(C:\a.xlsx)");
}

TEST(WorkbookFilesTest, AWorkbookThatWasNeverToBeSavedIsNotStored) {
    WorkbookFixture fixture;
    fixture.Application.SetVisible(true);
    fixture.Application.SetWindowState(WindowState::Maximised);
    EXPECT_EQ(fixture.Book->FullName(), "");
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
