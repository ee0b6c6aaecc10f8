// Templates that other programs have made (templates/README.md), filled as the program fills its
// own.
#include "spreadsheet/LibreOfficeConverter.h"
#include "support/SampleReport.h"
#include "support/WorkbookFixture.h"

#include <map>

namespace ombrix {
namespace {

std::string OtherTemplate(const std::string& name) {
    return ReadWholeFile(std::filesystem::path(OTHER_TEMPLATES) / name);
}

std::string At(const pugi::xml_node& node, const std::string& path) {
    return pugi::xpath_query(("string(" + path + ")").c_str()).evaluate_string(node);
}

/// A report of two sequences; the second one's block on the overview begins at row 39.
class TemplatesOfOthers : public ::testing::TestWithParam<const char*> {
  protected:
    /// What stands somewhere in the sheet of the second sequence.
    std::string OnCopy(const std::string& path) { return At(m_Saved.Sheet("Long"), path); }
    /// The only part of a kind that a sheet refers to.
    const std::string& Related(const char* sheet, const char* kind) {
        const auto parts = m_Saved.Related(m_Saved.SheetPart(sheet), kind);
        EXPECT_EQ(parts.size(), 1U) << sheet << kind;
        return m_Saved.Parts().at(parts.at(0));
    }

    WorkbookFixture m_Fixture{OtherTemplate(GetParam())};
    WorkbookProbe m_Saved = [this] {
        FillSampleReport(*m_Fixture.Book,
                         {{"Short", {0.2F}, 3.0F, 0.5F}, {"Long", {0.0F, 0.6F}, 3.0F, 0.5F}});
        return m_Fixture.Saved();
    }();
};

TEST_P(TemplatesOfOthers, CalculateOnEveryCopyWithItsOwnSamples) {
    WorkbookProbe report(LibreOfficeConverter().Convert(
        m_Fixture.Files.ReadFile(R"(C:\saved.xlsx)"), "xlsx", "xlsx"));
    for (const auto& [sheet, samples, highest] :
         {std::tuple("Short", "6", "0.2"), std::tuple("Long", "12", "0.6"),
          std::tuple("DataTemplate", "0", "0")}) {
        EXPECT_EQ(report.Cell(sheet, "K1").child("v").text().get(), std::string(samples)) << sheet;
        EXPECT_NEAR(report.Cell(sheet, "L1").child("v").text().as_double(), std::stod(highest),
                    1e-4);
    }
    EXPECT_EQ(report.Value("Overview", "B1"), "Health check of our site");
    EXPECT_EQ(report.Value("Overview", "L43"), "CH1 to 60.0%");
}

using Places = std::vector<std::pair<std::string, std::string>>;

TEST_P(TemplatesOfOthers, KeepOnEveryCopyWhatLeadsToTheSheetItself) {
    const Places everywhere = {{"//hyperlink/@location", "'Long'!A2"},
                               {"//dataValidation[@sqref='K2']/formula1", "'Long'!$A$1:$J$1"}};
    const Places extensions = {{"//x14:sparkline/xm:f", "'Long'!G2:G600"},
                               {"//conditionalFormatting//x14:id", OnCopy("//x14:cfRule/@id")}};
    std::map<std::string, Places> alone = {{"libreoffice.xltx", extensions},
                                           {"xlsxwriter.xlsx", extensions}};
    alone["xlsxwriter.xlsx"].emplace_back("//c[@r='K3'][f/@t='array']/@cm", "1");
    for (const Places& places : {everywhere, alone[GetParam()]})
        for (const auto& [path, expected] : places)
            EXPECT_EQ(OnCopy(path), expected) << path;
    EXPECT_EQ(OnCopy("//x14:id") == At(m_Saved.Sheet("DataTemplate"), "//x14:id"),
              alone[GetParam()].empty());
    EXPECT_NE(Related("Long", "/comments").find("Samples of this sheet"), std::string::npos);
    EXPECT_NE(Related("Long", "/vmlDrawing").find("Note"), std::string::npos);
    EXPECT_NE(m_Saved.Related(m_Saved.SheetPart("Long"), "/comments"),
              m_Saved.Related(m_Saved.SheetPart("DataTemplate"), "/comments"));
}

TEST_P(TemplatesOfOthers, KeepTheirChartsPicturesAndThreads) {
    const std::string program = GetParam();
    for (const char* sheet : {"Long", "DataTemplate"}) {
        if (program == "libreoffice.xltx")
            continue;
        const std::string chart = m_Saved.Charts(sheet).at(0);
        const pugi::xml_node root = m_Saved.Xml(chart).document_element();
        const std::string own = std::string(sheet) == "Long" ? "'Long'!" : "";
        EXPECT_TRUE(At(root, "//*[local-name()='yVal']//*[local-name()='f']")
                        .ends_with(own + "$G$2:$G$600"));
        if (program == "openxml.xlsx") {
            EXPECT_EQ(At(root, "//*[local-name()='xVal']//*[local-name()='f']"),
                      own.empty() ? "[0]!Times" : "'Long'!Times");
        }
    }
    if (program == "openpyxl.xlsx") {
        EXPECT_TRUE(m_Saved.Has("xl/media/image1.png"));
        EXPECT_EQ(m_Saved.Related("xl/drawings/drawing1.xml", "/image").size(), 1U);
        EXPECT_EQ(m_Saved.Related("xl/drawings/drawing1.xml", "/chart").size(), 2U);
    } else if (program == "xlsxwriter.xlsx") {
        EXPECT_NE(Related("Long", "/drawing").find("textlink=\"'Long'!$K$1\""), std::string::npos);
    } else if (program == "openxml.xlsx") {
        const std::string id = "{4D2C8E5A-1B7F-4E0B-9C5E-7A1B2C3D4E5F}";
        EXPECT_NE(Related("DataTemplate", "/threadedComment").find(id), std::string::npos);
        const std::string threads = Related("Long", "/threadedComment");
        EXPECT_EQ(threads.find(id), std::string::npos);
        const std::string own = threads.substr(threads.find(" id=\"") + 5, id.size());
        EXPECT_NE(threads.find("parentId=\"" + own), std::string::npos);
        EXPECT_NE(Related("Long", "/comments").find("tc=" + own), std::string::npos);
    }
}

TEST_P(TemplatesOfOthers, PrintTheRowsThatWereAddedInTheirOwnColumns) {
    const std::map<std::string, std::string> own = {{"openpyxl.xlsx", "'Overview'!$A$1:$P$69"},
                                                    {"libreoffice.xltx", "Overview!$A$1:$P$69"}};
    const auto found = own.find(GetParam());
    EXPECT_EQ(At(m_Saved.Xml(m_Saved.WorkbookPart()),
                 "//definedName[@name='_xlnm.Print_Area' and @localSheetId='0']"),
              found == own.end() ? "'Overview'!$A$1:$O$69" : found->second);
}

INSTANTIATE_TEST_SUITE_P(Programs, TemplatesOfOthers,
                         ::testing::Values("openpyxl.xlsx", "xlsxwriter.xlsx", "libreoffice.xltx",
                                           "openxml.xlsx"));

TEST(CopiedOverlays, MoveAlongAndGiveWay) {
    WorkbookFixture fixture(OtherTemplate("xlsxwriter.xlsx"));
    Worksheet& overview = fixture.Sheet("Overview");
    for (int twice = 0; twice < 2; ++twice)
        overview.CopyRange("B7:O9", "B39:O41");
    WorkbookProbe saved = fixture.Saved();
    const pugi::xml_node sheet = saved.Sheet("Overview");
    for (const auto& [path, expected] : std::vector<std::pair<std::string, std::string>>{
             {"//c[@r='C40']/f[@ref='C40:D40']", "C42:D42*2"},
             {"//dataValidation[@sqref='E40']/formula1", "$B$7:$B$9"},
             {"//dataValidations/@count", "2"},
             {"//x14:sparkline[xm:sqref='K40']/xm:f", "Overview!F40:J40"},
             {"count(//x14:sparkline)", "2"},
             {"count(//x14:cfRule[@id=//cfRule//x14:id])", "2"},
             {"count(//x14:conditionalFormatting[xm:sqref='F39:G41'])", "1"},
             {"//conditionalFormatting[@sqref='F39:G41']//x14:id",
              At(sheet, "//x14:conditionalFormatting[xm:sqref='F39:G41']/x14:cfRule/@id")}})
        EXPECT_EQ(At(sheet, path), expected) << path;
    EXPECT_THROW(overview.CopyRange("C7:C9", "Q7:Q9"), SpreadsheetError) << "half an array";
    EXPECT_THROW(overview.CopyRange("Q7:Q9", "D7:D9"), SpreadsheetError);
    for (const char* area : {"B7:O9", "B39:O41"})
        overview.CopyRange("B20:O22", area);
    EXPECT_FALSE(fixture.Saved().Sheet("Overview").child("extLst")) << "nothing is left of it";
}

/// The second sheet of the template in words of our own.
std::string WithSecondSheet(const std::string& xml) {
    return WithParts(HealthCheckTemplate(), {{"xl/worksheets/sheet2.xml", xml}});
}

TEST(NamesInXml, UnknownOnesKeepTheirMeaningWhateverTheirPrefixes) {
    WorkbookFixture fixture(WithSecondSheet(
        "<s:worksheet xmlns:s='http://schemas.openxmlformats.org/spreadsheetml/2006/main' "
        "xmlns:c='urn:site' xmlns:kept='urn:kept' xmlns:v='http://schemas.openxmlformats.org/"
        "markup-compatibility/2006' v:Ignorable='c  kept gone'><s:sheetData/><s:extLst>"
        "<s:ext c:a='1'><own xmlns='urn:own'><kept:b/><x/></own><c:d/></s:ext></s:extLst>"
        "</s:worksheet>"));
    WorkbookProbe saved = fixture.Saved();
    const pugi::xml_node sheet = saved.Sheet("All Graphs");
    EXPECT_STREQ(sheet.attribute("mc:Ignorable").value(), "ns1 kept");
    EXPECT_STREQ(sheet.attribute("xmlns:ns1").value(), "urn:site");
    EXPECT_STREQ(sheet.attribute("xmlns:ns2").value(), "urn:own");
    EXPECT_TRUE(sheet.select_node("extLst/ext[@ns1:a][ns2:own[kept:b][ns2:x]]/ns1:d"));
}
} // namespace
} // namespace ombrix
