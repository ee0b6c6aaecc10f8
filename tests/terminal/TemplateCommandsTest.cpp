#include "support/WorkbookFixture.h"
#include "terminal/OmbrixctlTest.h"

namespace ombrix {
namespace {

TEST_F(OmbrixctlTest, TemplateCheckTellsWhatAReportWouldKeepLackOrRefuse) {
    const Outcome usable = Run("template check '" OTHER_TEMPLATES "/openpyxl.xlsx'");
    EXPECT_EQ(usable.Status, 0) << Errors();
    EXPECT_EQ(usable.Result["usable"], true);
    EXPECT_EQ(usable.Result["report"], "ACUHealthCheck.xltx") << "told by its sheets";
    EXPECT_EQ(usable.Result["sheets"][2],
              json({{"name", "DataTemplate"}, {"worksheet", true}, {"use", "copied"}}));
    EXPECT_EQ(usable.Result["findings"][0], json({{"sheet", "Overview"},
                                                  {"feature", "pictures"},
                                                  {"result", "kept"},
                                                  {"text", nullptr}}));

    const std::string file = (m_Folder.Path() / "site.xltx").string();
    ReplaceWholeFile(file, WithParts(WithReplaced(HealthCheckTemplate(), "xl/workbook.xml",
                                                  "All Graphs", "Graphs"),
                                     {{"xl/worksheets/_rels/sheet3.xml.rels",
                                       "<Relationships xmlns='http://schemas.openxmlformats.org/"
                                       "package/2006/relationships'><Relationship Id='a' "
                                       "Type='x/pivotTable' Target='a.xml'/></Relationships>"}}));
    const Outcome refused = Run("template check '" + file + "'");
    EXPECT_EQ(refused.Status, 1);
    EXPECT_EQ(refused.Result["usable"], false);
    EXPECT_EQ(refused.Result["missing"], json({"All Graphs"}));
    const std::string error = refused.Result["error"];
    EXPECT_NE(error.find("no sheet \"All Graphs\""), std::string::npos) << error;
    EXPECT_NE(error.find("\"DataTemplate\" is copied, and holds a pivot table"), std::string::npos);

    ReplaceWholeFile(file, "no workbook");
    EXPECT_EQ(Run("template check '" + file + "'").Status, 1);
    EXPECT_EQ(Run("template check nowhere.xltx").Status, 4);
    EXPECT_EQ(Run("template check").Status, 2);
    EXPECT_EQ(Run("template").Status, 2);
}

} // namespace
} // namespace ombrix
