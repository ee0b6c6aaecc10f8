// Values, formulas and formats of cells.
#include "spreadsheet/Cells.h"
#include "support/WorkbookFixture.h"

#include <array>
#include <limits>
#include <map>

namespace ombrix {
namespace {

struct WrittenValue {
    CellValue Value;
    const char* Type;
    const char* Text;
};

TEST(Cells, ColumnLettersCarry) {
    const std::vector<std::pair<int, const char*>> cases = {
        {0, "A"}, {25, "Z"}, {26, "AA"}, {51, "AZ"}, {52, "BA"}, {701, "ZZ"}, {16383, "XFD"}};
    for (const auto& [column, letters] : cases)
        EXPECT_EQ(ColumnLetters(column), letters);
    EXPECT_EQ(CellAddress(0, 5), "A5");
}

TEST(WorkbookCellsTest, ValuesArriveInTheFile) {
    WorkbookFixture fixture;
    for (const auto& [value, type, text] : std::initializer_list<WrittenValue>{
             {std::int32_t{-2147483647}, "", "-2147483647"},
             {0.2F, "", "0.2"}, // in shortest form
             {0.1 + 0.2, "", "0.30000000000000004"},
             {std::numeric_limits<double>::quiet_NaN(), "e", "#NUM!"},
             {-std::numeric_limits<float>::infinity(), "e", "#NUM!"},
             {true, "b", "1"},
             {OleDate::FromCivil({2026, 1, 16, 12, 0, 0}), "", "46038.5"},
             {OleDate(), "", "0"},
             {OleDate(-5.0), "e", "#NUM!"}, // before the first day of workbooks
             {OleDate(1e200), "e", "#NUM!"},
             {CellValue(), "", ""},
             {std::string("<a & \"b\">"), "inlineStr", "<a & \"b\">"},
             {std::string("=1+1"), "inlineStr", "=1+1"},
             {std::string("  x "), "inlineStr", "  x "},
             {std::string("a\x01\r\nb"), "inlineStr", "a_x0001__x000D_\nb"},
             {std::string("_x0041_"), "inlineStr", "_x005F_x0041_"},
             {std::string("\xC3(\xED\xA0\x80"), "inlineStr",
              "\uFFFD(\uFFFD\uFFFD\uFFFD"},                                    // no UTF-8
             {std::string("\xEF\xBF\xBF"), "inlineStr", "\uFFFD\uFFFD\uFFFD"}, // not for XML
             {std::string("µΩ\U0001F600"), "inlineStr", "µΩ\U0001F600"}}) {
        fixture.Sheet("All Graphs").SetValue("C20", value);
        WorkbookProbe saved = fixture.Saved();
        EXPECT_STREQ(saved.Cell("All Graphs", "C20").attribute("t").value(), type) << text;
        EXPECT_EQ(saved.Value("All Graphs", "C20"), text);
    }
}

TEST(WorkbookCellsTest, FormatsAreTheTemplatesAndADatesOwnWhereItHasNone) {
    WorkbookFixture fixture;
    const OleDate date = OleDate::FromCivil({2026, 1, 16, 14, 30, 5});
    const std::array<float, 2> block = {0.2F, 0.4F};
    fixture.Sheet("All Graphs").SetValue("G20", date);
    fixture.Sheet("Overview").SetValue("C5", date);
    fixture.Sheet("Overview").SetValue("C12", 0.2F);
    fixture.Sheet("DataTemplate").SetValues("F2:F3", CellBlock<float>{block, 1});
    WorkbookProbe saved = fixture.Saved();
    EXPECT_EQ(saved.NumberFormat("All Graphs", "G20"), "22");
    EXPECT_EQ(saved.NumberFormat("Overview", "C5"), "yyyy-mm-dd hh:mm:ss");
    EXPECT_EQ(saved.NumberFormat("Overview", "C12"), "0.0%");
    EXPECT_EQ(saved.NumberFormat("DataTemplate", "F3"), "0.00%");
}

TEST(WorkbookCellsTest, DatesFollowTheTemplatesCountOfDays) {
    WorkbookFixture fixture(WithReplaced(HealthCheckTemplate(), "xl/workbook.xml", "<bookViews>",
                                         "<workbookPr date1904=\"1\"/><bookViews>"));
    fixture.Sheet("Overview").SetValue("C5", OleDate(46038.5));
    EXPECT_EQ(fixture.Saved().Value("Overview", "C5"), "44576.5");
}

TEST(WorkbookCellsTest, ValuesReadBackAsTheyWereWrittenAndAsTheTemplateHasThem) {
    WorkbookFixture fixture;
    Worksheet& data = fixture.Sheet("DataTemplate");
    const std::array<float, 4> block = {1.5F, 2.5F, 3.5F, 4.5F};
    data.SetValues("F2:G3", CellBlock<float>{block, 2});
    data.SetValue("A2", std::string("a\rb"));
    EXPECT_EQ(data.Value("J1"), CellValue(std::string("Pressure")));
    EXPECT_EQ(data.Value("G3"), CellValue(4.5F));
    EXPECT_EQ(data.Value("A2"), CellValue(std::string("a\rb")));
    EXPECT_EQ(data.Value("Z99"), CellValue());
    EXPECT_EQ(fixture.Sheet("Overview").Value("O3"), CellValue(65535.0));
    EXPECT_EQ(fixture.Sheet("Overview").Value("I2"), CellValue()) << "a formula's result";
}

TEST(WorkbookCellsTest, LaterValuesLieOverEarlierOnes) {
    WorkbookFixture fixture;
    Worksheet& data = fixture.Sheet("DataTemplate");
    const std::array<std::int32_t, 6> lower = {1, 2, 3, 4, 5, 6};
    const std::array<std::int32_t, 2> upper = {70, 80};
    data.SetValue("B3", std::int32_t{99});
    data.SetValues("B2:C4", CellBlock<std::int32_t>{lower, 2});
    data.SetValues("C3:C4", CellBlock<std::int32_t>{upper, 1});
    data.SetValue("B2", std::int32_t{11});
    data.SetValue("C2", CellValue());
    WorkbookProbe saved = fixture.Saved();
    const auto shown = [&](const char* address) { return saved.Value("DataTemplate", address); };
    EXPECT_EQ(shown("B2") + shown("C2") + "," + shown("B3") + shown("C3"), "11,370");
    EXPECT_EQ(shown("B4") + shown("C4"), "580");
}

TEST(WorkbookCellsTest, ABlockOfAnotherShapeThanItsAreaIsRefused) {
    WorkbookFixture fixture;
    const std::array<float, 6> block = {};
    for (const char* area :
         {"A2:B3", "A2:A7", "A2:C3", "A2", "A:A", "2:3", "", "A0:B2", "XFE1:XFF3"})
        EXPECT_THROW(fixture.Sheet("DataTemplate").SetValues(area, CellBlock<float>{block, 2}),
                     SpreadsheetError)
            << area;
}

TEST(WorkbookCellsTest, ACopiedFormulaMovesItsRelativeReferences) {
    const std::map<const char*, const char*> threeDownAndTwoRight = {
        {"=A1+$A1+A$1+$A$1", "=C4+$A4+C$1+$A$1"},
        {"=SUM(A1:B2,C:D,4:5,$C:D)", "=SUM(C4:D5,E:F,7:8,$C:F)"},
        {"=IF(A1=\"A1 \"\"B2\"\"\",LOG10(B2),TRUE)", "=IF(C4=\"A1 \"\"B2\"\"\",LOG10(D5),TRUE)"},
        {"='It''s A1'!B2+Data1!B2", "='It''s A1'!D5+Data1!D5"},
        {"=[1]Data!B2+Table1[A1]", "=[1]Data!D5+Table1[A1]"},
        {"=1E5+A1048575+XFD1", "=1E5+#REF!+#REF!"},
        {"=A1_total+Größe1+\"unclosed", "=A1_total+Größe1+\"unclosed"}};
    WorkbookFixture fixture;
    Worksheet& sheet = fixture.Sheet("All Graphs");
    for (const auto& [before, after] : threeDownAndTwoRight) {
        sheet.SetFormula("G30", before);
        sheet.CopyRange("G30", "I33");
        EXPECT_EQ(fixture.Saved().Value("All Graphs", "I33"), after);
    }
}

TEST(WorkbookCellsTest, AFormulaBeginsWithAnEqualsSignAndFitsItsCellAsTextsMust) {
    WorkbookFixture fixture;
    EXPECT_THROW(fixture.Sheet("Overview").SetValue("C3", std::string(32768, 'x')),
                 SpreadsheetError);
    for (const std::string& formula :
         {std::string("1+1"), std::string(), std::string("="), "=" + std::string(8192, '1')})
        EXPECT_THROW(fixture.Sheet("Overview").SetFormula("C3", formula), SpreadsheetError);
}

/// The template with a row of cells more on its overview.
std::string WithRow6(const std::string& cells) {
    return WithReplaced(HealthCheckTemplate(), "xl/worksheets/sheet1.xml", "<row r=\"7\"",
                        "<row r=\"6\">" + cells + "</row><row r=\"7\"");
}

TEST(WorkbookCellsTest, FormulasOfTheTemplateLoseTheirResultsAndTheirSharing) {
    WorkbookFixture fixture(
        WithRow6("<c r=\"Q6\"><f t=\"shared\" si=\"3\" ref=\"Q6:R6\">$B7+P6</f><v>5</v></c>"
                 "<c r=\"R6\"><f t=\"shared\" si=\"3\"/><v>6</v></c>"
                 "<c r=\"S6\" t=\"str\"><f>T6</f><v>stale</v></c>"));
    WorkbookProbe saved = fixture.Saved();
    EXPECT_EQ(saved.Value("Overview", "Q6"), "=$B7+P6");
    EXPECT_EQ(saved.Value("Overview", "R6"), "=$B7+Q6");
    EXPECT_EQ(saved.Value("Overview", "S6"), "=T6");
    EXPECT_TRUE(saved.Sheet("Overview").select_nodes("//c[f][v or @t]").empty());
}

TEST(WorkbookCellsTest, WhatTheEngineDoesNotKnowOfACellStaysAsItIs) {
    WorkbookFixture fixture(
        WithRow6("<c r=\"Q6\" t=\"inlineStr\"><is><r><rPr><b/></rPr><t>fat</t></r></is></c>"
                 "<c r=\"R6\"><f t=\"dataTable\" ref=\"R6:R6\" r1=\"A1\"/></c>"
                 "<c r=\"T6\" vm=\"7\" t=\"e\"><v>#VALUE!</v></c>"
                 "<c r=\"S6\" t=\"e\"><v>#DIV/0!</v></c>"));
    WorkbookProbe saved = fixture.Saved();
    EXPECT_STREQ(saved.Cell("Overview", "Q6").select_node("is/r/t").node().text().get(), "fat");
    EXPECT_STREQ(saved.Cell("Overview", "R6").child("f").attribute("r1").value(), "A1");
    EXPECT_STREQ(saved.Cell("Overview", "T6").attribute("vm").value(), "7");
    EXPECT_EQ(saved.Value("Overview", "S6"), "#DIV/0!");
    EXPECT_THROW(fixture.Sheet("Overview").CopyRange("R6", "R8"), SpreadsheetError);
}

} // namespace
} // namespace ombrix
