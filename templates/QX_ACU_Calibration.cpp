// The general report of a velocity run. The program writes units, readings and verdicts; the
// report is to be printed: tables on one page, charts on another.
#include "ReportLook.h"
#include "ReportTemplates.h"
#include "TemplateBuilder.h"
#include "reports/layout/VelocityReportLayout.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

namespace Layout = VelocityReportLayout;
namespace Columns = Layout::Columns;

const PageTexts Pages{"ACU Velocity Calibration", "Ombrix"};

void LayOutColumns(SheetBuilder& sheet) {
    sheet.Column("A", 1.5).Column("B", 11).Column("C:H", 10).Column("I:K", 11);
    sheet.Column("L", 1.5).Column("M", 10).Column("N", 12).Column("O", 12);
}

void LayOutHeader(SheetBuilder& sheet) {
    sheet.RowHeight(1, 34).Text("B1", "ACU Velocity Calibration", Heading);
    namespace Head = Layout::Head;
    /// A value reaches over some columns; its label stands at the beginning of them.
    const auto field = [&sheet](const char* value, const char* text, const std::string& number) {
        const bool isLeft = value[0] == Head::Kind[0];
        const std::string row = value + 1;
        sheet.Text((isLeft ? "B" : "H") + row, text, Label)
            .Merge(value + (":" + std::string(isLeft ? "F" : "K")) + row, FieldValue(number));
    };
    field(Head::Kind, "Calibration", "");
    field(Head::Date, "Date and time", DateAndTime);
    field(Head::User, "User", "");
    field(Head::CalibrationPoints, "Calibration points", "0");
    field(Head::SerialNumber, "Serial number", "");
    field(Head::MFCNumber, "MFC number", "");
    field(Head::FullScales[0], "Channel 1 (ml/min)", "0.0");
    field(Head::FullScales[1], "Channel 2 (ml/min)", "0.0");
    field(Head::SolenoidValves, "Solenoid valves", "");
    sheet.Merge("M3:O5", VerdictCell)
        .HighlightText("M3:O5", "PASSED", Good)
        .HighlightText("M3:O5", "FAILED", Bad)
        .Merge("M6:O7",
               {.Bold = true, .Colour = Bad.Colour, .Horizontal = Align::Centre, .Wrapped = true});
}

struct HeadText {
    const char* Columns;
    const char* Text;
};

/// The heads of a channel's tables. Units that depend on the kind of run are the program's.
void LayOutHeads(SheetBuilder& sheet, const Layout::ChannelRows& rows) {
    const Look head = With(HeadCell, BoxLines);
    const Look unit = With(UnitCell, BoxLines);
    constexpr HeadText Groups[] = {{"B:B", "Point"},   {"C:D", "Demand"},     {"E:F", "Rising"},
                                   {"G:H", "Falling"}, {"I:I", "Difference"}, {"J:K", ""},
                                   {"M:O", ""}};
    for (const HeadText& group : Groups) {
        const char first = group.Columns[0];
        const char last = group.Columns[2];
        if (first != last)
            sheet.Merge(fmt::format("{0}{2}:{1}{2}", first, last, rows.Heads), head);
        sheet.Text(Cell(first, rows.Heads), group.Text, head);
    }
    constexpr HeadText Units[] = {{Columns::Point, ""},
                                  {Columns::DemandBits, "bits"},
                                  {Columns::DemandFlow, "ml/min"},
                                  {Columns::RisingBits, "bits"},
                                  {Columns::RisingFlow, "ml/min"},
                                  {Columns::FallingBits, "bits"},
                                  {Columns::FallingFlow, "ml/min"},
                                  {Columns::Difference, ""},
                                  {Columns::RisingDeviation, ""},
                                  {Columns::FallingDeviation, ""},
                                  {Columns::Segment, "Segment"},
                                  {Columns::Slope, "Slope M"},
                                  {Columns::Intercept, "Intercept C (bits)"}};
    for (const HeadText& entry : Units)
        sheet.Text(Cell(entry.Columns, rows.Units), entry.Text, unit);
}

void LayOutRow(SheetBuilder& sheet, int row) {
    for (const char* column : {Columns::DemandBits, Columns::RisingBits, Columns::FallingBits})
        sheet.Format(Cell(column, row), Boxed("0"));
    for (const char* column :
         {Columns::DemandFlow, Columns::RisingFlow, Columns::FallingFlow, Columns::Difference,
          Columns::RisingDeviation, Columns::FallingDeviation})
        sheet.Format(Cell(column, row), Boxed("0.00"));
}

/// A step is made once, so there is nothing to stand beside its one reading.
void LayOutStep(SheetBuilder& sheet, int row) {
    for (const char* column : {Columns::DemandBits, Columns::RisingBits})
        sheet.Format(Cell(column, row), Boxed("0"));
    for (const char* column : {Columns::DemandFlow, Columns::RisingFlow, Columns::Difference})
        sheet.Format(Cell(column, row), Boxed("0.00"));
}

void LayOutSegments(SheetBuilder& sheet, int firstRow) {
    for (int segment = 0; segment < Layout::Segments; ++segment) {
        const int row = firstRow + segment;
        sheet.Number(Cell(Columns::Segment, row), segment + 1, Boxed("0"))
            .Format(Cell(Columns::Slope, row), Boxed("0.000000"))
            .Format(Cell(Columns::Intercept, row), Boxed("0.00"));
    }
}

void LayOutChannel(SheetBuilder& sheet, std::size_t channel) {
    const Layout::ChannelRows rows = Layout::RowsOf(channel);
    sheet.Text(Cell("B", rows.Title), fmt::format("Channel {}", channel + 1), Section)
        .Format(Cell(Columns::State, rows.Title), {.Bold = true});
    LayOutHeads(sheet, rows);
    for (int point = 0; point < Layout::Points; ++point) {
        const int row = rows.FirstPoint + point;
        sheet.Number(Cell(Columns::Point, row), point + 1, Boxed("0"));
        LayOutRow(sheet, row);
    }
    LayOutSegments(sheet, rows.FirstPoint);
    sheet.Text(Cell("B", rows.BestFit), "Best fit", Boxed())
        .Text(Cell("C", rows.BestFit), "Slope M", Label)
        .Format(Cell(Columns::FitSlope, rows.BestFit), FieldValue("0.000000"))
        .Text(Cell("E", rows.BestFit), "Intercept C", Label)
        .Format(Cell(Columns::FitIntercept, rows.BestFit), FieldValue("0.00"));
    sheet.Text(Cell("B", rows.StepNote),
               "Set from zero air; the difference is that to the demand in ml/min", Note);
    for (int step = 0; step < Layout::Steps; ++step) {
        const int row = rows.FirstStep + step;
        sheet.Format(Cell(Columns::Point, row), Boxed("\"Point \"0"));
        LayOutStep(sheet, row);
    }
}

void LayOutReport(SheetBuilder& sheet) {
    sheet.WithoutGrid().Pages(Pages).OnOnePage(Orientation::Portrait).PrintArea("$A$1:$O$46");
    LayOutColumns(sheet);
    constexpr int lastRow = 46;
    for (int row = Layout::RowsOf(0).Title; row <= lastRow; ++row)
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
void LayOutTraces(SheetBuilder& sheet, std::size_t channel) {
    namespace Traces = Layout::Traces;
    sheet.Pages({fmt::format("ACU Velocity Calibration, channel {}", channel + 1), "Ombrix"});
    sheet.FreezeRows(1).RepeatRows("$1:$1").RowHeight(1, 48);
    sheet.PrintArea("$A:$T,$U:$AN,$AO:$AR");
    int traces = 0;
    const auto trace = [&](const std::string& name) {
        const Look head = With(HeadCell, BoxLines);
        const int column = Traces::TimeColumn(traces++);
        const std::string time = ColumnLetters(column);
        const std::string reading = ColumnLetters(column + 1);
        sheet.Column(time, 9, Values("0.00")).Column(reading, 10, Values("0"));
        sheet.Text(Cell(time, Traces::HeadRow), name + ", time (s)", head);
        sheet.Text(Cell(reading, Traces::HeadRow), name + " (bits)", head);
    };
    for (const char* sweep : {"rising", "falling"})
        for (int point = 1; point <= Layout::Points; ++point)
            trace(fmt::format("Point {} {}", point, sweep));
    for (int step = 1; step <= Layout::Steps; ++step)
        trace(fmt::format("Step {} from zero", step));
}

/// What the charts are drawn from: a set of columns for each channel.
void LayOutChartData(SheetBuilder& sheet) {
    sheet.Pages(Pages).FreezeRows(1).RowHeight(1, 34);
    sheet.Column("A:R", 12, Values("0.00")).Format("A1:R1", HeadCell);
}

} // namespace

std::string MakeQX_ACU_Calibration() {
    TemplateBuilder builder("ACU Velocity Calibration");
    LayOutReport(builder.AddSheet(Layout::ReportSheet));
    LayOutCharts(builder.AddSheet(Layout::ChartSheet));
    for (const std::size_t channel : {0U, 1U})
        LayOutTraces(builder.AddSheet(Layout::TraceSheets.at(channel)), channel);
    LayOutChartData(builder.AddSheet(Layout::ChartDataSheet));
    return builder.Build();
}

} // namespace ombrix::templates
