// Sheets as a whole: copying, names, visibility, printing; ranges with their formats.
#include "support/SampleReport.h"
#include "support/WorkbookFixture.h"

#include <array>
#include <map>

namespace ombrix {
namespace {

using Names = std::vector<std::string>;

TEST(WorkbookSheetsTest, AReportListsItsPartsAndItsSheetsInRunOrderBeforeTheHiddenTemplate) {
    WorkbookFixture fixture;
    FillSampleReport(*fixture.Book, ShortReport());
    WorkbookProbe saved = fixture.Saved();
    EXPECT_EQ(saved.SheetNames(), (Names{"Overview", "All Graphs", "Zero - Ch1", "Zero - Ch1 (2)",
                                         "Low - Ch1", "Zero - Ch2", "DataTemplate"}));
    const auto& workbook = saved.Xml("xl/workbook.xml");
    EXPECT_TRUE(workbook.select_node("//sheet[@name='DataTemplate' and @state='hidden']"));
    EXPECT_EQ(workbook.select_nodes("//sheet[@state]").size(), 1U);
    EXPECT_EQ(workbook.select_node("//workbookView/@activeTab").attribute().as_int(-1), 0);
    int selected = 0;
    for (const std::string& sheet : saved.SheetNames())
        selected += static_cast<int>(saved.Sheet(sheet).select_nodes("//@tabSelected").size());
    EXPECT_EQ(selected, 1);
    // Print areas go with their sheets and with the copies.
    std::map<std::string, std::string> areas;
    for (const auto& found : workbook.select_nodes("//definedName"))
        areas[saved.SheetNames().at(found.node().attribute("localSheetId").as_uint())] =
            found.node().text().get();
    EXPECT_EQ(areas.at("Zero - Ch2"), "'Zero - Ch2'!$M$1:$AD$37");
    EXPECT_EQ(areas.at("DataTemplate"), "'DataTemplate'!$M$1:$AD$37");
    EXPECT_EQ(areas.at("Overview"), "'Overview'!$A$1:$O$147");
    EXPECT_EQ(areas.size(), 6U);
    // Every part is listed with its kind.
    for (const auto& [part, content] : saved.Parts()) {
        const std::string listed = "//Override[@PartName='/" + part + "']/@ContentType";
        const std::string type =
            saved.Xml("[Content_Types].xml").select_node(listed.c_str()).attribute().value();
        EXPECT_EQ(type.empty(), part.ends_with(".rels") || part == "[Content_Types].xml") << part;
        EXPECT_EQ(type.ends_with("drawingml.chart+xml"), part.starts_with("xl/charts/")) << part;
    }
    EXPECT_EQ(saved.Charts("Overview").size(), 4U);
}

TEST(WorkbookSheetsTest, ACopyIsIndependentOfItsOriginal) {
    WorkbookFixture fixture;
    Worksheet& original = fixture.Sheet("DataTemplate");
    original.SetFormula("A5", "=DataTemplate!A1&Overview!C2");
    original.CopyAfter(fixture.Sheet("Overview"));
    Worksheet& copy = fixture.Book->Sheet(2);
    EXPECT_EQ(copy.Name(), "DataTemplate (2)");
    copy.SetValue("A2", std::int32_t{1});
    original.SetValue("A2", std::int32_t{2});
    original.CopyAfter(copy);
    WorkbookProbe saved = fixture.Saved();
    EXPECT_EQ(saved.SheetNames(), (Names{"Overview", "DataTemplate (2)", "DataTemplate (3)",
                                         "All Graphs", "DataTemplate"}));
    EXPECT_EQ(saved.Value("DataTemplate (2)", "A2"), "1");
    EXPECT_EQ(saved.Value("DataTemplate (3)", "A2"), "2");
    EXPECT_EQ(saved.Value("DataTemplate (2)", "A5"), "='DataTemplate (2)'!A1&Overview!C2");
    EXPECT_FALSE(saved.Xml("xl/workbook.xml")
                     .select_node("//sheet[@sheetId=preceding-sibling::sheet/@sheetId]"));
}

TEST(WorkbookSheetsTest, ASheetsNewNameIsFollowedWhereverTheOldOneStood) {
    WorkbookFixture fixture;
    fixture.Sheet("Overview")
        .SetFormula("C3", "='DataTemplate'!A2+datatemplate!B2+\"DataTemplate!\"");
    fixture.Sheet("DataTemplate").SetName("It's");
    WorkbookProbe saved = fixture.Saved();
    EXPECT_EQ(saved.Formula("Overview", "C3"), "'It''s'!A2+'It''s'!B2+\"DataTemplate!\"");
    EXPECT_STREQ(saved.Xml("xl/workbook.xml").select_node("//definedName").node().text().get(),
                 "'It''s'!$M$1:$AD$37");
}

TEST(WorkbookSheetsTest, ASheetNameMayHave31CharactersHoweverManyBytesButNotAll) {
    WorkbookFixture fixture;
    for (const char* refused : {"", "overview", "a/b", "a\\b", "a?b", "a*b", "[a]", "a:b", "'a",
                                "a'", "12345678901234567890123456789012", "a\x01"})
        EXPECT_THROW(fixture.Sheet("DataTemplate").SetName(refused), SpreadsheetError) << refused;
    EXPECT_EQ(fixture.Book->Sheet(3).Name(), "DataTemplate");
    std::string name;
    for (int i = 0; i < 31; ++i)
        name += "µ";
    fixture.Sheet("DataTemplate").SetName(name);
    fixture.Sheet(name).CopyAfter(fixture.Sheet("Overview"));
    EXPECT_EQ(fixture.Book->Sheet(2).Name(), name.substr(0, 54) + " (2)");
}

TEST(WorkbookSheetsTest, AWorkbookNeverShowsAHiddenSheetNorNone) {
    WorkbookFixture fixture;
    fixture.Sheet("DataTemplate").Select();
    fixture.Sheet("DataTemplate").SetVisible(SheetVisibility::Hidden);
    EXPECT_THROW(fixture.Sheet("DataTemplate").Select(), SpreadsheetError);
    fixture.Sheet("Overview").SetVisible(SheetVisibility::Hidden);
    EXPECT_THROW(fixture.Sheet("All Graphs").SetVisible(SheetVisibility::Hidden), SpreadsheetError);
    WorkbookProbe saved = fixture.Saved();
    EXPECT_EQ(saved.Xml("xl/workbook.xml").select_node("//@activeTab").attribute().as_int(), 1);
    EXPECT_EQ(saved.Xml("xl/workbook.xml").select_nodes("//sheet[@state='hidden']").size(), 2U);
}

TEST(WorkbookSheetsTest, SheetsAreFoundByPositionAndByNameWithoutRegardToCase) {
    WorkbookFixture fixture;
    EXPECT_EQ(fixture.Book->WorksheetCount(), 3);
    EXPECT_EQ(&fixture.Book->Sheet("ALL graphs"), &fixture.Book->Sheet(2));
    for (const int position : {0, -1, 4})
        EXPECT_THROW(fixture.Book->Sheet(position), SpreadsheetError);
    EXPECT_THROW(fixture.Book->Sheet("Nowhere"), SpreadsheetError);
}

TEST(WorkbookSheetsTest, ACopiedRangeBringsValuesFormatsMergesHeightsAndConditions) {
    WorkbookFixture fixture;
    Worksheet& overview = fixture.Sheet("Overview");
    overview.SetRowHeight(8, 8, 33.0);
    overview.CopyRange("B7:O10", "B43:O46");
    overview.SetValue("N7", std::string("changed"));
    WorkbookProbe saved = fixture.Saved();
    EXPECT_EQ(saved.Value("Overview", "N43"), "Pressure");
    EXPECT_EQ(saved.Value("Overview", "C44"), "Ch1");
    EXPECT_EQ(saved.Format("Overview", "B43"), saved.Format("Overview", "B7"));
    EXPECT_EQ(saved.Format("Overview", "M44"), saved.Format("Overview", "M8"));
    const pugi::xml_node sheet = saved.Sheet("Overview");
    EXPECT_TRUE(sheet.select_node("mergeCells/mergeCell[@ref='B43:B45']"));
    EXPECT_EQ(sheet.select_node("mergeCells/@count").attribute().as_uint(),
              sheet.select_nodes("mergeCells/mergeCell").size());
    EXPECT_EQ(sheet.select_node("sheetData/row[@r='44']/@ht").attribute().as_double(), 33.0);
    EXPECT_EQ(saved.Formula("Overview", "N46").substr(0, 14), "IF(LEFT($B46,5");
    EXPECT_EQ(saved.Value("Overview", "N44"), "Evaluation") << "lies over the judging formula";
}

TEST(WorkbookSheetsTest, ConditionsMoveWithARangeAndGiveWayWhereItGoes) {
    WorkbookFixture fixture(WithReplaced(
        HealthCheckTemplate(), "xl/worksheets/sheet2.xml", "<printOptions",
        "<conditionalFormatting sqref=\"B2:C3 E5\"><cfRule type=\"expression\" dxfId=\"0\" "
        "priority=\"1\"><formula>$A2&gt;B$1</formula></cfRule></conditionalFormatting>"
        "<printOptions"));
    fixture.Sheet("All Graphs").CopyRange("C2:C3", "E5:E6");
    WorkbookProbe saved = fixture.Saved();
    std::map<std::string, std::string> conditions;
    for (const auto& found :
         saved.Sheet("All Graphs").select_nodes("conditionalFormatting[cfRule/@dxfId='0']"))
        conditions[found.node().attribute("sqref").value()] =
            found.node().child("cfRule").child("formula").text().get();
    const std::map<std::string, std::string> expected = {{"B2:C3", "$A2>B$1"},
                                                         {"E5:E6", "$A5>E$1"}};
    EXPECT_EQ(conditions, expected);
}

TEST(WorkbookSheetsTest, ARangeMayOverlapItsOwnCopy) {
    WorkbookFixture fixture;
    Worksheet& data = fixture.Sheet("DataTemplate");
    const std::array<std::int32_t, 3> block = {1, 2, 3};
    data.SetValues("B2:B4", CellBlock<std::int32_t>{block, 1});
    data.CopyRange("B2:B4", "B3:B5");
    WorkbookProbe saved = fixture.Saved();
    const auto shown = [&](const char* address) { return saved.Value("DataTemplate", address); };
    EXPECT_EQ(shown("B2") + shown("B3") + shown("B4") + shown("B5"), "1123");
    EXPECT_THROW(data.CopyRange("B2:B4", "C2:D4"), SpreadsheetError);
    EXPECT_THROW(data.CopyRange("A1:XFD1048576", "A1:XFD1048576"), SpreadsheetError);
}

/// Which of a border's lines are drawn.
std::string LinesOf(const pugi::xml_node& border) {
    std::string lines;
    for (const char* side : {"left", "right", "top", "bottom"}) {
        if (*border.child(side).attribute("style").value() != '\0')
            lines += *side;
    }
    if (border.child("diagonal").attribute("style"))
        lines += border.attribute("diagonalUp").as_bool() ? "/" : "\\";
    return lines + " ";
}

TEST(WorkbookSheetsTest, BordersAreDrawnAndTakenAwayByEdge) {
    WorkbookFixture fixture;
    Worksheet& data = fixture.Sheet("DataTemplate");
    const auto lines = [&](WorkbookProbe saved) {
        const auto of = [&](const char* cell) {
            return LinesOf(saved.Border("DataTemplate", cell));
        };
        return of("B20") + of("C20") + of("B21") + of("C21");
    };
    const std::map<BorderEdge, const char*> edges = {{BorderEdge::Left, "l  l  "},
                                                     {BorderEdge::Right, " r  r "},
                                                     {BorderEdge::Top, "t t   "},
                                                     {BorderEdge::Bottom, "  b b "},
                                                     {BorderEdge::InsideVertical, "r l r l "},
                                                     {BorderEdge::InsideHorizontal, "b b t t "},
                                                     {BorderEdge::DiagonalUp, "/ / / / "},
                                                     {BorderEdge::DiagonalDown, "\\ \\ \\ \\ "}};
    for (const auto& [edge, drawn] : edges) {
        data.SetBorder("B20:C21,E20", edge, LineStyle::Continuous);
        WorkbookProbe once = fixture.Saved();
        EXPECT_EQ(lines(fixture.Saved()), drawn);
        EXPECT_EQ(once.NumberFormat("DataTemplate", "C21"), "0") << "the rest of the format stays";
        data.SetBorder("B20:C21,E20", edge, LineStyle::Continuous);
        EXPECT_EQ(fixture.Saved().Parts().at("xl/styles.xml"), once.Parts().at("xl/styles.xml"))
            << "no format is entered twice";
        data.SetBorder("B20:C21,E20", edge, LineStyle::None);
        EXPECT_EQ(lines(fixture.Saved()), "    ");
    }
}

TEST(WorkbookSheetsTest, BoxesFollowWidthsHeightsAndWhatIsHidden) {
    WorkbookFixture fixture(
        WithReplaced(WithReplaced(HealthCheckTemplate(), "xl/worksheets/sheet3.xml", "<cols>",
                                  "<cols><col min=\"12\" max=\"12\" hidden=\"1\" width=\"20\"/>"),
                     "xl/worksheets/sheet3.xml", "</sheetData>",
                     "<row r=\"3\" ht=\"40\"/><row r=\"4\" hidden=\"1\"/></sheetData>"));
    const SheetBox box = fixture.Sheet("DataTemplate").Box("B2:M5");
    EXPECT_DOUBLE_EQ(box.Left, 52.5);                 // column A: 10 digits, 70 pixels
    EXPECT_DOUBLE_EQ(box.Top, 32.0);                  // row 1
    EXPECT_DOUBLE_EQ(box.Height, 15.0 + 40.0 + 15.0); // row 4 is hidden
    // B to E, F to I, J, K and M; L is hidden.
    EXPECT_DOUBLE_EQ(box.Width, 4 * 52.5 + 4 * 68.25 + 99.75 + 2 * 48.0);
}

TEST(WorkbookSheetsTest, PagesBreakOnceBeforeARow) {
    WorkbookFixture fixture;
    Worksheet& overview = fixture.Sheet("Overview");
    for (const int row : {43, 79, 43, 1})
        overview.AddPageBreak(row);
    EXPECT_THROW(overview.AddPageBreak(0), SpreadsheetError);
    EXPECT_THROW(overview.SetRowHeight(5, 6, 500.0), SpreadsheetError);
    WorkbookProbe saved = fixture.Saved();
    const auto breaks = saved.Sheet("Overview").select_nodes("rowBreaks[@count='2']/brk/@id");
    ASSERT_EQ(breaks.size(), 2U);
    EXPECT_STREQ(breaks[0].attribute().value(), "42");
    EXPECT_STREQ(breaks[1].attribute().value(), "78");
}

} // namespace
} // namespace ombrix
