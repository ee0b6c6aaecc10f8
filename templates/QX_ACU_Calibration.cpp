// The general report of a velocity run. The program writes units, readings and verdicts; the
// report is to be printed: tables on one page, charts on another.
#include "CalibrationTemplates.h"
#include "ReportLook.h"
#include "TemplateBuilder.h"
#include "spreadsheet/Cells.h"
#include "spreadsheet/sheet/CellArea.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

constexpr int Points = 10;
constexpr int Steps = 2;
constexpr int FirstBlockRow = 10;
constexpr int RowsPerBlock = 19;
const PageTexts Pages{"ACU Velocity Calibration", "Ombrix"};

void LayOutColumns(SheetBuilder& sheet) {
    sheet.Column("A", 1.5).Column("B", 11).Column("C:H", 10).Column("I:K", 11);
    sheet.Column("L", 1.5).Column("M", 10).Column("N", 12).Column("O", 12);
}

void LayOutHeader(SheetBuilder& sheet) {
    sheet.RowHeight(1, 34).Text("B1", "ACU Velocity Calibration", Heading);
    struct Field {
        const char* Label;
        const char* Value;
        const char* Number;
    };
    constexpr Field Fields[] = {{"B3", "D3:F3", ""},    {"B4", "D4:F4", "yyyy-mm-dd hh:mm:ss"},
                                {"B5", "D5:F5", ""},    {"B6", "D6:F6", "0"},
                                {"H3", "J3:K3", ""},    {"H4", "J4:K4", ""},
                                {"H5", "J5:K5", "0.0"}, {"H6", "J6:K6", "0.0"},
                                {"B7", "D7:F7", ""}};
    constexpr const char* Labels[] = {
        "Calibration",        "Date and time",      "User",
        "Calibration points", "Serial number",      "MFC number",
        "Channel 1 (ml/min)", "Channel 2 (ml/min)", "Solenoid valves"};
    std::size_t index = 0;
    for (const Field& field : Fields)
        sheet.Text(field.Label, Labels[index++], Label)
            .Merge(field.Value, FieldValue(field.Number));
    sheet.Merge("M3:O5", VerdictCell)
        .HighlightText("M3:O5", "PASSED", Good)
        .HighlightText("M3:O5", "FAILED", Bad);
}

struct Head {
    const char* Columns;
    const char* Text;
};

/// The heads of a channel's tables. Units that depend on the kind of run are the program's.
void LayOutHeads(SheetBuilder& sheet, int row) {
    const Look head = With(HeadCell, BoxLines);
    const Look unit = With(UnitCell, BoxLines);
    constexpr Head Groups[] = {{"B:B", "Point"},   {"C:D", "Demand"},     {"E:F", "Rising"},
                               {"G:H", "Falling"}, {"I:I", "Difference"}, {"J:K", ""},
                               {"M:O", ""}};
    for (const Head& group : Groups) {
        const char first = group.Columns[0];
        const char last = group.Columns[2];
        if (first != last)
            sheet.Merge(fmt::format("{}{}:{}{}", first, row, last, row), head);
        sheet.Text(fmt::format("{}{}", first, row), group.Text, head);
    }
    constexpr Head Units[] = {{"B", ""},
                              {"C", "bits"},
                              {"D", "ml/min"},
                              {"E", "bits"},
                              {"F", "ml/min"},
                              {"G", "bits"},
                              {"H", "ml/min"},
                              {"I", ""},
                              {"J", ""},
                              {"K", ""},
                              {"M", "Segment"},
                              {"N", "Slope M"},
                              {"O", "Intercept C (bits)"}};
    for (const Head& entry : Units)
        sheet.Text(fmt::format("{}{}", entry.Columns, row + 1), entry.Text, unit);
}

void LayOutRow(SheetBuilder& sheet, int row) {
    for (const char column : {'C', 'E', 'G'})
        sheet.Format(fmt::format("{}{}", column, row), Boxed("0"));
    for (const char column : {'D', 'F', 'H', 'I', 'J', 'K'})
        sheet.Format(fmt::format("{}{}", column, row), Boxed("0.00"));
}

/// A step is made once, so there is nothing to stand beside its one reading.
void LayOutStep(SheetBuilder& sheet, int row) {
    for (const char column : {'C', 'E'})
        sheet.Format(fmt::format("{}{}", column, row), Boxed("0"));
    for (const char column : {'D', 'F', 'I'})
        sheet.Format(fmt::format("{}{}", column, row), Boxed("0.00"));
}

void LayOutSegments(SheetBuilder& sheet, int firstRow) {
    for (int segment = 0; segment < Points - 1; ++segment) {
        const int row = firstRow + segment;
        sheet.Number(fmt::format("M{}", row), segment + 1, Boxed("0"))
            .Format(fmt::format("N{}", row), Boxed("0.000000"))
            .Format(fmt::format("O{}", row), Boxed("0.00"));
    }
}

void LayOutChannel(SheetBuilder& sheet, int channel) {
    const int title = FirstBlockRow + channel * RowsPerBlock;
    sheet.Text(fmt::format("B{}", title), fmt::format("Channel {}", channel + 1), Section)
        .Format(fmt::format("D{}", title), {.Bold = true});
    LayOutHeads(sheet, title + 1);
    const int firstPoint = title + 3;
    for (int point = 0; point < Points; ++point) {
        sheet.Number(fmt::format("B{}", firstPoint + point), point + 1, Boxed("0"));
        LayOutRow(sheet, firstPoint + point);
    }
    LayOutSegments(sheet, firstPoint);
    const int fit = firstPoint + Points;
    sheet.Text(fmt::format("B{}", fit), "Best fit", Boxed())
        .Text(fmt::format("C{}", fit), "Slope M", Label)
        .Format(fmt::format("D{}", fit), FieldValue("0.000000"))
        .Text(fmt::format("E{}", fit), "Intercept C", Label)
        .Format(fmt::format("F{}", fit), FieldValue("0.00"));
    const int steps = fit + 1;
    sheet.Text(fmt::format("B{}", steps),
               "Set from zero air; the difference is that to the demand in ml/min", Note);
    for (int step = 1; step <= Steps; ++step) {
        sheet.Format(fmt::format("B{}", steps + step), Boxed("\"Point \"0"));
        LayOutStep(sheet, steps + step);
    }
}

void LayOutReport(SheetBuilder& sheet) {
    sheet.WithoutGrid().Pages(Pages).OnOnePage(Orientation::Portrait).PrintArea("$A$1:$O$46");
    LayOutColumns(sheet);
    constexpr int lastRow = 46;
    for (int row = FirstBlockRow; row <= lastRow; ++row)
        sheet.RowHeight(row, 19);
    LayOutHeader(sheet);
    LayOutChannel(sheet, 0);
    LayOutChannel(sheet, 1);
}

/// The charts lie over rows 3 to 70, a column of them for each channel.
void LayOutCharts(SheetBuilder& sheet) {
    sheet.WithoutGrid().Pages(Pages).OnOnePage(Orientation::Portrait).PrintArea("$A$1:$R$71");
    // Charts keep their shape only over rows whose height is given.
    constexpr int lastRow = 71;
    for (int row = 2; row <= lastRow; ++row)
        sheet.RowHeight(row, 18.5);
    sheet.Column("A", 2).Column("B:R", 8);
    sheet.RowHeight(1, 34).Text("B1", "Readings, deviations and steps", Heading);
}

/// A pair of columns a trace: when a reading was taken, and the reading.
void LayOutTraces(SheetBuilder& sheet, int channel) {
    sheet.Pages({fmt::format("ACU Velocity Calibration, channel {}", channel + 1), "Ombrix"});
    sheet.FreezeRows(1).RepeatRows("$1:$1").RowHeight(1, 48);
    sheet.PrintArea("$A:$T,$U:$AN,$AO:$AR");
    int column = 0;
    const auto trace = [&](const std::string& name) {
        const Look head = With(HeadCell, BoxLines);
        const std::string time = ColumnLetters(++column);
        const std::string reading = ColumnLetters(++column);
        sheet.Column(time, 9, Values("0.00")).Column(reading, 10, Values("0"));
        sheet.Text(time + "1", name + ", time (s)", head);
        sheet.Text(reading + "1", name + " (bits)", head);
    };
    for (const char* sweep : {"rising", "falling"})
        for (int point = 1; point <= Points; ++point)
            trace(fmt::format("Point {} {}", point, sweep));
    for (int step = 1; step <= Steps; ++step)
        trace(fmt::format("Step {} from zero", step));
}

/// What the charts are drawn from: a set of columns for each channel.
void LayOutChartData(SheetBuilder& sheet) {
    sheet.Pages(Pages).FreezeRows(1).RowHeight(1, 34);
    sheet.Column("A:Q", 12, Values("0.00")).Format("A1:H1", HeadCell).Format("J1:Q1", HeadCell);
}

} // namespace

std::string MakeQX_ACU_Calibration() {
    TemplateBuilder builder("ACU Velocity Calibration");
    LayOutReport(builder.AddSheet("Report"));
    LayOutCharts(builder.AddSheet("Charts"));
    LayOutTraces(builder.AddSheet("Traces Ch1"), 0);
    LayOutTraces(builder.AddSheet("Traces Ch2"), 1);
    LayOutChartData(builder.AddSheet("Chart Data"));
    return builder.Build();
}

} // namespace ombrix::templates
