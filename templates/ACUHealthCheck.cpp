// The program writes the measured values; the sheets here give them their form and judge them:
// a step passes when each channel's end value is near enough to its demand.
#include "ReportLook.h"
#include "ReportTemplates.h"
#include "TemplateBuilder.h"
#include "reports/layout/HealthCheckLayout.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

namespace Layout = HealthCheckLayout;
namespace Overview = Layout::Overview;
namespace Data = Layout::Data;

/// All ten sequences together reach to row 607.
constexpr int FirstStepRow = Overview::HeadRow + Overview::HeadRows;
constexpr int LastStepRow = 700;

const PageTexts Pages{"ACU Health Check", "Ombrix"};

void LayOutColumns(SheetBuilder& sheet) {
    sheet.Column("A", 2).Column("B", 15, {.Horizontal = Align::Left, .Indent = 1});
    sheet.Column("C:D", 10, Values("0.0%")).Column("E", 10, Values("0.0"));
    sheet.Column("F:K", 10, Values("0")).Column("L", 40, {.Horizontal = Align::Left, .Indent = 1});
    sheet.Column("M", 2).Column("N:O", 12, {.Horizontal = Align::Centre});
}

void LayOutUnit(SheetBuilder& sheet) {
    const Look value = FieldValue();
    const Look date = FieldValue(DateAndTime);
    sheet.RowHeight(1, 34).Text("B1", "ACU Health Check", Heading);
    sheet.Text("B2", "Board serial", Label).Merge("C2:E2", value);
    sheet.Text("B3", "MFC number", Label).Merge("C3:E3", value);
    sheet.Text("B5", "Date and time", Label).Merge("C5:E5", date);
    sheet.RowHeight(6, 24).Text("B6", "Outcome", Label).Merge("C6:O6", value);
}

void LayOutSummary(SheetBuilder& sheet) {
    const auto column = [](char letter) {
        return fmt::format("${0}${1}:${0}${2}", letter, FirstStepRow, LastStepRow);
    };
    const std::string steps = column(Overview::Step);
    const std::string first = column(Overview::Ch1Evaluation);
    const std::string second = column(Overview::Ch2Evaluation);
    const Look count = FieldValue("0");
    const auto line = [&](int row, const char* text, const std::string& formula) {
        sheet.Merge(fmt::format("G{0}:H{0}", row), Label)
            .Text(fmt::format("G{}", row), text, Label)
            .Formula(fmt::format("I{}", row), formula, count);
    };
    line(2, "Steps", fmt::format("SUMPRODUCT(--(LEFT({},5)=\"Step \"))", steps));
    line(3, "Steps passed",
         fmt::format("SUMPRODUCT((({0}=\"Pass\")+({1}=\"Pass\")>0)*({0}<>\"Fail\")*"
                     "({1}<>\"Fail\"))",
                     first, second));
    line(4, "Steps failed",
         fmt::format("SUMPRODUCT(--(({}=\"Fail\")+({}=\"Fail\")>0))", first, second));
    line(5, "Not evaluated", "I2-I3-I4");
}

void LayOutVerdict(SheetBuilder& sheet) {
    sheet.Merge("L2:L4", VerdictCell)
        .Formula("L2",
                 fmt::format("IF({}<>\"{}\",\"INCOMPLETE\",IF(I4>0,\"FAIL\",IF(I3>0,\"PASS\","
                             "\"NO RESULT\")))",
                             Overview::Outcome, Overview::Completed),
                 VerdictCell)
        .HighlightText("L2:L4", "PASS", Good)
        .HighlightText("L2:L4", "FAIL", Bad)
        .HighlightText("L2:L4", "INCOMPLETE", Bad);
    sheet.Formula("L5",
                  fmt::format("IF(I2=0,\"\",IF(I5=0,\"Every step was evaluated.\",IF({}<>\"{}\","
                              "\"Steps with a dash were not evaluated.\","
                              "\"Steps of up to {} s are not evaluated.\")))",
                              Overview::Outcome, Overview::Completed, Overview::EndWindow_s),
                  Note);
    sheet.Text("N2", "Limit", Label)
        .Number(Overview::Limit, Overview::UsualLimit_share,
                {.Bold = true, .Number = "0.0%", .Horizontal = Align::Right});
    sheet.Text("N3", "Full scale", Label)
        .Number(Overview::FullScale, Overview::UsualFullScale_bits,
                {.Bold = true, .Number = "0", .Horizontal = Align::Right});
    Look explanation = Note;
    explanation.Wrapped = true;
    sheet.Merge("N4:O5", explanation)
        .Text("N4", "End value against demand, of full scale", explanation);
}

/// The block header that the program copies for every further sequence.
void LayOutBlockHeader(SheetBuilder& sheet) {
    const Look top = With(HeadCell, LeftLine | RightLine | TopLine);
    const Look boxed = With(HeadCell, BoxLines);
    sheet.RowHeight(7, 18).Merge("B7:B9", boxed).Text("B7", "Step", boxed);
    sheet.Text("E7", "Duration", top).Format("E8", With(HeadCell, LeftLine | RightLine));
    sheet.Text("E9", "s", With(UnitCell, LeftLine | RightLine | BottomLine));
    sheet.Merge("L7:L9", boxed).Text("L7", "Description", boxed);
    const auto pair = [&](char left, char right, const char* title, const char* leftName,
                          const char* rightName, const char* unit) {
        sheet.Merge(fmt::format("{}7:{}7", left, right), top)
            .Text(fmt::format("{}7", left), title, top)
            .Text(fmt::format("{}8", left), leftName, With(HeadCell, LeftLine))
            .Text(fmt::format("{}8", right), rightName, With(HeadCell, RightLine))
            .Text(fmt::format("{}9", left), unit, With(UnitCell, LeftLine | BottomLine))
            .Text(fmt::format("{}9", right), unit, With(UnitCell, RightLine | BottomLine));
    };
    pair('C', 'D', "Demand", "Ch1", "Ch2", "% of full scale");
    pair('F', 'G', "Ch1 reading", "Min", "Max", "bits");
    pair('H', 'I', "Ch2 reading", "Min", "Max", "bits");
    pair('J', 'K', "End value", "Ch1", "Ch2", "bits");
    sheet.Merge("N7:O7", top).Text("N7", "Pressure", top);
    sheet.Merge("N8:O8", With(HeadCell, LeftLine | RightLine))
        .Text("N8", "Evaluation", With(HeadCell, LeftLine | RightLine));
    sheet.Text("N9", "Ch1", With(UnitCell, LeftLine | BottomLine))
        .Text("O9", "Ch2", With(UnitCell, RightLine | BottomLine));
}

/// Steps may lie in any row, so every row judges itself and shows nothing where there is no
/// step. A step that is no longer than what its end value is the mean of, shows nothing settled,
/// whatever that mean has come to.
void LayOutEvaluation(SheetBuilder& sheet) {
    const Look result{.Horizontal = Align::Centre};
    for (int row = FirstStepRow; row <= LastStepRow; ++row) {
        const auto judge = [&](char column, char demand, char value) {
            sheet.Formula(Cell(column, row),
                          fmt::format("IF(LEFT(${3}{0},5)<>\"Step \",\"\",IF(${4}{0}<={5},\"{6}\","
                                      "IF(ABS({2}{0}-{1}{0}*$O$3)<=$O$2*$O$3,\"Pass\",\"Fail\")))",
                                      row, demand, value, Overview::Step, Overview::Duration,
                                      Overview::EndWindow_s, Overview::NotEvaluated),
                          result);
        };
        judge(Overview::Ch1Evaluation, Overview::Ch1Demand, Overview::Ch1End);
        judge(Overview::Ch2Evaluation, Overview::Ch2Demand, Overview::Ch2End);
    }
    const std::string area = fmt::format("{}{}:{}{}", Overview::Ch1Evaluation, FirstStepRow,
                                         Overview::Ch2Evaluation, LastStepRow);
    sheet.HighlightText(area, "Pass", Good).HighlightText(area, "Fail", Bad);
    // Nobody is to take for an end value what is none.
    sheet.HighlightWhere(
        fmt::format("{}{}:{}{}", Overview::Ch1End, FirstStepRow, Overview::Ch2End, LastStepRow),
        fmt::format("AND(LEFT(${}{},5)=\"Step \",${}{}<={})", Overview::Step, FirstStepRow,
                    Overview::Duration, FirstStepRow, Overview::EndWindow_s),
        {.Number = fmt::format("\"{}\"", Overview::NotEvaluated)});
}

void LayOutOverview(SheetBuilder& sheet) {
    sheet.WithoutGrid().Pages(Pages);
    LayOutColumns(sheet);
    LayOutUnit(sheet);
    LayOutSummary(sheet);
    LayOutVerdict(sheet);
    LayOutBlockHeader(sheet);
    LayOutEvaluation(sheet);
}

void LayOutGraphs(SheetBuilder& sheet) {
    const Look text{.Wrapped = true};
    const Look cell{.Horizontal = Align::Left, .Indent = 1, .Edges = BoxLines};
    sheet.WithoutGrid().Pages(Pages).Column("A", 2).Column("B", 5).Column("C", 16).Column("D", 62);
    sheet.Column("E", 18);
    sheet.RowHeight(1, 34).Text("B1", "All Graphs", Heading);
    sheet.RowHeight(2, 48)
        .Merge("B2:E2", text)
        .Text("B2",
              "Every sequence has its graph twice: on \"Overview\", below the table of its steps, "
              "and "
              "on the sheet that carries its name, beside the samples it is drawn from. All graphs "
              "use "
              "the same lines:",
              text);
    const Look head = With(HeadCell, BoxLines);
    sheet.Format("B4", head).Text("C4", "Line", head).Text("D4", "Meaning", head);
    sheet.Text("E4", "Scale", head);
    struct LineMeaning {
        const char* Colour;
        const char* Name;
        const char* Meaning;
        const char* Scale;
    };
    constexpr LineMeaning Lines[] = {
        {"A9B8CE", "Ch1 Demand", "What channel 1 was told to deliver", "left, %"},
        {"1F5FBF", "Ch1 Reading", "What channel 1 delivered", "left, %"},
        {"B4CDA6", "Ch2 Demand", "What channel 2 was told to deliver", "left, %"},
        {"2B8A3E", "Ch2 Reading", "What channel 2 delivered", "left, %"},
        {"E8790B", "Pressure", "Reading of the pressure sensor, as it came", "right, bits"}};
    int row = 5;
    for (const LineMeaning& line : Lines) {
        sheet.Format(fmt::format("B{}", row), {.Fill = line.Colour, .Edges = BoxLines})
            .Text(fmt::format("C{}", row), line.Name, cell)
            .Text(fmt::format("D{}", row), line.Meaning, cell)
            .Text(fmt::format("E{}", row), line.Scale, cell);
        ++row;
    }
}

/// Copied for every sequence and filled with its samples; its graph lies beside them.
void LayOutData(SheetBuilder& sheet) {
    // The graph is what is worth paper; the samples would fill hundreds of pages.
    sheet.Pages(Pages).FreezeRows(1).PrintArea("$M$1:$AD$37");
    sheet.Column("A", 10, Values("0.00")).Column("B:E", 10, Values("0"));
    sheet.Column("F:I", 13, Values("0.00%")).Column("J", 19, Values("0"));
    const Look head = With(HeadCell, BoxLines);
    sheet.RowHeight(1, 32);
    constexpr const char* Names[] = {Data::TimeHead, "Ch1 DAC",    "Ch1 ADC",     "Ch2 DAC",
                                     "Ch2 ADC",      "Ch1 Demand", "Ch1 Reading", "Ch2 Demand",
                                     "Ch2 Reading",  "Pressure"};
    char column = Data::Time;
    for (const char* name : Names)
        sheet.Text(Cell(column++, Data::HeadRow), name, head);
}

} // namespace

std::string MakeACUHealthCheck() {
    TemplateBuilder builder("ACU Health Check");
    LayOutOverview(builder.AddSheet(Layout::OverviewSheet));
    LayOutGraphs(builder.AddSheet(Layout::GraphSheet));
    LayOutData(builder.AddSheet(Layout::DataSheet));
    return builder.Build();
}

} // namespace ombrix::templates
