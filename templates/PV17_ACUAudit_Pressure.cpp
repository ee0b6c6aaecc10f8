// The program writes the flows that were set. What a gauge read at each of them is entered by
// hand, up to three times over; the sheet judges it.
#include "AuditSheetParts.h"
#include "CalibrationTemplates.h"
#include "TemplateBuilder.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

constexpr int FirstPointRow = 19;
constexpr int LastPointRow = 23;
constexpr int PercentPerPoint = 20;
/// The limit of a reading in mBar, as the program writes it.
constexpr const char* Limit = "$D$11";

struct ReadingColumns {
    const char* Title;
    char Flow;
    char Recorded;
    char Result;
};
constexpr ReadingColumns Readings[] = {
    {"Reading 1", 'E', 'F', 'G'}, {"Reading 2", 'H', 'I', 'J'}, {"Reading 3", 'K', 'L', 'M'}};

std::string Cell(char column, int row) {
    return fmt::format("{}{}", column, row);
}

void LayOutHeader(SheetBuilder& sheet) {
    sheet.WithoutGrid().Pages({"PV17 Air Pressure Audit", "Ombrix"});
    sheet.OnOnePage(Orientation::Landscape).PrintArea("$A$1:$M$29");
    sheet.Column("A", 2).Column("B", 8).Column("C", 20).Column("D:M", 13);
    Look title = Heading;
    title.Size_pt = 16;
    sheet.RowHeight(2, 30).Text(
        "B2", "SUGGESTED CALIBRATION METHOD FOR AN AERATION CONTROL UNIT: PRESSURE AUDIT", title);
    LayOutFields(sheet, 7);
    constexpr const char* Fields[][2] = {
        {"Date:", "Date of audit calibration"},
        {"User:", "User who carried out the audit calibration"},
        {"Unit Serial Number:", "Serial Number of the Aeration Control Unit being calibrated"},
        {"Channel 1 Capacity:", "Capacity of Channel 1 (ml/min)"},
        {"Channel 2 Capacity:", "Capacity of Channel 2 (ml/min)"},
        {"Calibration Points:", "Number of audit calibration points"},
        {"Pass Limit:", "Largest difference from the expected value (mBar)"}};
    int row = FirstFieldRow;
    const Look explanation{.Italic = true, .Colour = Grey, .Horizontal = Align::Left};
    for (const auto& [label, meaning] : Fields) {
        sheet.Text(Cell('C', row), label, Label).Text(Cell('F', row), meaning, explanation);
        ++row;
    }
    sheet.Text("B13", "Calibration Results", Section);
    sheet.Text("B14",
               "With the open 50 mm aeration base connected the pressure is 0 mBar at any flow. "
               "Enter what was recorded at each flow into the white columns.",
               Note);
}

void LayOutPoints(SheetBuilder& sheet) {
    const Look head = With(HeadCell, BoxLines);
    sheet.RowHeight(18, 34)
        .Merge("B17:B18", head)
        .Text("B17", "Point", head)
        .Merge("C17:C18", head)
        .Text("C17", "Flow, % of Full Scale", head)
        .Merge("D17:D18", head)
        .Text("D17", "Expected Value, mBar", head);
    for (int row = FirstPointRow; row <= LastPointRow; ++row) {
        const int point = row - FirstPointRow;
        sheet.Number(Cell('B', row), point + 1, Boxed("0"))
            .Number(Cell('C', row), point * PercentPerPoint, Boxed("0"))
            .Number(Cell('D', row), 0, Boxed("0.0"));
    }
}

void LayOutReading(SheetBuilder& sheet, const ReadingColumns& reading) {
    const Look head = With(HeadCell, BoxLines);
    Look given = Boxed("0.0");
    given.Fill = SubHeadFill;
    sheet.Merge(fmt::format("{}17:{}17", reading.Flow, reading.Result), head)
        .Text(Cell(reading.Flow, 17), reading.Title, head)
        .Text(Cell(reading.Flow, 18), "Flow Set, ml/min", head)
        .Text(Cell(reading.Recorded, 18), "Recorded Value, mBar", head)
        .Text(Cell(reading.Result, 18), "Result, Pass/Fail", head);
    for (int row = FirstPointRow; row <= LastPointRow; ++row) {
        sheet.Format(Cell(reading.Flow, row), given)
            .Format(Cell(reading.Recorded, row), Boxed("0.00"));
        sheet.Formula(Cell(reading.Result, row),
                      fmt::format("IF({0}{1}=\"\",\"-\",IF(ABS({0}{1}-$D{1})<={2},\"Pass\","
                                  "\"Fail\"))",
                                  reading.Recorded, row, Limit),
                      Boxed());
    }
    HighlightResults(
        sheet, fmt::format("{0}{1}:{0}{2}", reading.Result, FirstPointRow, LastPointRow).c_str());
}

void LayOutCounts(SheetBuilder& sheet) {
    const Look head = With(HeadCell, BoxLines);
    const std::string results = fmt::format("$E${}:$M${}", FirstPointRow, LastPointRow);
    sheet.Text("B25", "Pass", head).Text("C25", "Fail", head).Text("D25", "Result", head);
    sheet.Formula("B26", fmt::format("COUNTIF({},\"Pass\")", results), Boxed("0"));
    sheet.Formula("C26", fmt::format("COUNTIF({},\"Fail\")", results), Boxed("0"));
    sheet.Formula("D26", "IF(C26>0,\"Fail\",IF(B26>0,\"Pass\",\"-\"))", Boxed());
    HighlightResults(sheet, "D26");
    sheet.Text("B28", "Carried out by:", Label)
        .Format("D28:F28", With(Look{}, BottomLine))
        .Text("H28", "Date:", Label)
        .Format("I28:J28", With(Look{}, BottomLine));
}

} // namespace

std::string MakePV17_ACUAudit_Pressure() {
    TemplateBuilder builder("PV17 Air Pressure Audit");
    SheetBuilder& sheet = builder.AddSheet("Audit");
    LayOutHeader(sheet);
    LayOutPoints(sheet);
    for (const ReadingColumns& reading : Readings)
        LayOutReading(sheet, reading);
    LayOutCounts(sheet);
    return builder.Build();
}

} // namespace ombrix::templates
