// What a report finds out about its template before anything is measured.
#include "reports/TemplateCheck.h"

#include "reports/layout/HealthCheckLayout.h"
#include "spreadsheet/package/ZipArchive.h"
#include "support/ReportBench.h"
#include "support/WorkbookFixture.h"

#include <fmt/format.h>

#include <map>

namespace ombrix {
namespace {

constexpr const char* Own = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";

/// The template with a relationship more in a part; the part that it leads to is there.
std::string Relating(const std::string& part, const std::string& type) {
    const std::string& sound = HealthCheckTemplate();
    const auto parts = xlsx::ReadZip(sound);
    std::string list =
        parts.contains(part)
            ? parts.at(part)
            : "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/"
              "relationships\"></Relationships>";
    list.insert(list.rfind("</"), fmt::format("<Relationship Id=\"rId77\" Type=\"{}\" "
                                              "Target=\"/xl/other.xml\"/>",
                                              type));
    return WithParts(sound, {{part, list}, {"xl/other.xml", "<other/>"}});
}

class TemplateCheckTest : public ::testing::Test {
  protected:
    std::string ReasonFor(const std::string& bytes) {
        m_Bench.Bench.Files.ReplaceFile(R"(C:\ACUHealthCheck.xltx)", bytes);
        m_Bench.Reports.Templates = "C:\\";
        return OpenWorkbookFromTemplate(m_Bench.Reports, HealthCheckLayout::Template).Error;
    }

    ReportBench m_Bench{"acu"};
};

/// @param pieces what the reason names: features, sheets, remedies
void ExpectPieces(const std::string& reason, const std::vector<std::string>& pieces) {
    for (const std::string& piece : pieces)
        EXPECT_NE(reason.find(piece), std::string::npos) << piece << " in: " << reason;
    EXPECT_NE(reason.find(R"(C:\ACUHealthCheck.xltx)"), std::string::npos);
    EXPECT_EQ(reason.find("Put a sound copy"), std::string::npos) << "it is no damage";
}

TEST_F(TemplateCheckTest, WhatNoReportKeepsIsRefusedByName) {
    const std::string& sound = HealthCheckTemplate();
    const std::string workbook = "xl/_rels/workbook.xml.rels";
    const std::string encrypted("E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0", 32);
    const std::string compound = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
    for (const auto& [bytes, piece] : std::vector<std::pair<std::string, const char*>>{
             {Relating(workbook, "http://schemas.microsoft.com/office/2006/relationships/"
                                 "vbaProject"),
              "macros"},
             {Relating("_rels/.rels", "http://schemas.openxmlformats.org/package/2006/"
                                      "relationships/digital-signature/origin"),
              "signed"},
             {Relating(workbook, std::string(Own) + "revisionHeaders"), "Unshare"},
             {WithReplaced(sound, "xl/workbook.xml",
                           "http://schemas.openxmlformats.org/spreadsheetml/2006/main",
                           "http://purl.oclc.org/ooxml/spreadsheetml/main"),
              "strict"},
             {WithReplaced(sound, "[Content_Types].xml",
                           "application/vnd.openxmlformats-officedocument.spreadsheetml."
                           "template.main+xml",
                           "application/vnd.ms-excel.sheet.binary.macroEnabled.main"),
              ".xlsb"},
             {WithParts(sound, {{"[Content_Types].xml", ""}, {"META-INF/manifest.xml", "x"}}),
              "OpenDocument"},
             {compound + encrypted, "password"}})
        ExpectPieces(ReasonFor(bytes), {piece});
}

TEST_F(TemplateCheckTest, WhatACopyCannotHaveIsRefusedWhereASheetIsCopiedAndKeptElsewhere) {
    const std::string microsoft = "http://schemas.microsoft.com/office/2007/relationships/";
    for (const auto& [type, piece] : std::map<std::string, const char*>{
             {std::string(Own) + "pivotTable", "a pivot table"},
             {std::string(Own) + "table", "range of cells"},
             {std::string(Own) + "queryTable", "outside source"},
             {std::string(Own) + "ctrlProp", "form control"},
             {std::string(Own) + "oleObject", "embedded object"},
             {microsoft + "slicer", "slicer"},
             {microsoft + "somethingNew", "unknown kind (somethingNew)"}}) {
        ExpectPieces(ReasonFor(Relating("xl/worksheets/_rels/sheet3.xml.rels", type)),
                     {piece, "\"DataTemplate\"", "another sheet"});
        WorkbookFixture filled(Relating("xl/worksheets/_rels/sheet1.xml.rels", type));
        EXPECT_TRUE(
            ReasonOf(CheckTemplate(filled.Book->Contents(), HealthCheckLayout::Template)).empty());
        EXPECT_EQ(filled.Saved().Related("xl/worksheets/sheet1.xml", type).size(), 1U);
        EXPECT_THROW(filled.Sheet("Overview").CopyAfter(filled.Sheet("Overview")),
                     SpreadsheetError);
    }
}

TEST_F(TemplateCheckTest, EverySheetThatIsMissingIsNamed) {
    const std::string lacking = WithReplaced(
        WithReplaced(HealthCheckTemplate(), "xl/workbook.xml", "name=\"All Graphs\"",
                     "name=\"Graphs\""),
        "xl/_rels/workbook.xml.rels", "relationships/worksheet\" Target=\"worksheets/sheet1",
        "relationships/chartsheet\" Target=\"worksheets/sheet1");
    ExpectPieces(ReasonFor(lacking),
                 {"no sheet \"All Graphs\"", "its sheet \"Overview\" has no cells"});
}

} // namespace
} // namespace ombrix
