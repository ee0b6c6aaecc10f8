// The program writes the flows that were set. What a gauge read at each of them is entered by
// hand, up to three times over; the sheet judges it.
#include "AuditSheetParts.h"
#include "ReportTemplates.h"
#include "TemplateBuilder.h"
#include "reports/layout/AuditSheetLayout.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

using namespace AuditSheetLayout::PV17;

constexpr int PercentPerPoint = 20;

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
    int row = AuditSheetLayout::Head::FirstRow;
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
    sheet.RowHeight(HeadRow + 1, 34);
    const auto column = [&](char letter, const char* text) {
        sheet.Merge(fmt::format("{0}{1}:{0}{2}", letter, HeadRow, HeadRow + 1), head)
            .Text(Cell(letter, HeadRow), text, head);
    };
    column('B', "Point");
    column('C', "Flow, % of Full Scale");
    column('D', "Expected Value, mBar");
    for (int row = FirstPointRow; row <= LastPointRow; ++row) {
        const int point = row - FirstPointRow;
        sheet.Number(Cell('B', row), point + 1, Boxed("0"))
            .Number(Cell('C', row), point * PercentPerPoint, Boxed("0"))
            .Number(Cell('D', row), 0, Boxed("0.0"));
    }
}

void LayOutReading(SheetBuilder& sheet, const std::string& title, const ReadingColumns& reading) {
    const Look head = With(HeadCell, BoxLines);
    Look given = Boxed("0.0");
    given.Fill = SubHeadFill;
    constexpr int unitRow = HeadRow + 1;
    sheet.Merge(fmt::format("{0}{2}:{1}{2}", reading.Flow, reading.Result, HeadRow), head)
        .Text(Cell(reading.Flow, HeadRow), title, head)
        .Text(Cell(reading.Flow, unitRow), "Flow Set, ml/min", head)
        .Text(Cell(reading.Recorded, unitRow), "Recorded Value, mBar", head)
        .Text(Cell(reading.Result, unitRow), "Result, Pass/Fail", head);
    constexpr const char* cell = AuditSheetLayout::Head::PressureLimit;
    const std::string limit = fmt::format("${}${}", cell[0], cell + 1);
    for (int row = FirstPointRow; row <= LastPointRow; ++row) {
        sheet.Format(Cell(reading.Flow, row), given)
            .Format(Cell(reading.Recorded, row), Boxed("0.00"));
        sheet.Formula(Cell(reading.Result, row),
                      fmt::format("IF({0}{1}=\"\",\"-\",IF(ABS({0}{1}-$D{1})<={2},\"Pass\","
                                  "\"Fail\"))",
                                  reading.Recorded, row, limit),
                      Boxed());
    }
    HighlightResults(
        sheet, fmt::format("{0}{1}:{0}{2}", reading.Result, FirstPointRow, LastPointRow).c_str());
}

void LayOutCounts(SheetBuilder& sheet) {
    const Look head = With(HeadCell, BoxLines);
    const std::string results = fmt::format("${}${}:${}${}", Readings.front().Flow, FirstPointRow,
                                            Readings.back().Result, LastPointRow);
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
    int number = 0;
    for (const ReadingColumns& reading : Readings)
        LayOutReading(sheet, fmt::format("Reading {}", ++number), reading);
    LayOutCounts(sheet);
    return builder.Build();
}

} // namespace ombrix::templates
