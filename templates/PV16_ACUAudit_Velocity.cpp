// The program writes the fixed texts, demands, recorded flows and criteria; the sheet works out
// what was expected and by how much the unit missed it. Channel 1 has columns D to I, channel 2
// columns J to O.
#include "AuditSheetParts.h"
#include "ReportTemplates.h"
#include "TemplateBuilder.h"
#include "reports/layout/AuditSheetLayout.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

using namespace AuditSheetLayout::PV16;

void LayOutHeader(SheetBuilder& sheet) {
    sheet.WithoutGrid().Pages({"PV16 Air Velocity Audit", "Ombrix"});
    sheet.OnOnePage(Orientation::Landscape).PrintArea("$A$1:$O$36");
    sheet.Column("A", 2).Column("B", 8, Values("0")).Column("C", 20, Values("0"));
    sheet.Column("D:O", 14);
    Look title = Heading;
    title.Size_pt = 16;
    sheet.RowHeight(2, 30).Format("B2", title);
    LayOutFields(sheet, 6);
    sheet.Format("D13", Section);
}

/// Differences show nothing until something has been recorded. Percentages are of the reading,
/// which the run judges by.
void LayOutDifference(SheetBuilder& sheet, const ChannelColumns& channel, int row) {
    const std::string recorded = Cell(channel.Recorded, row);
    const std::string expected = Cell(channel.Expected, row);
    sheet.Formula(Cell(channel.Difference, row),
                  fmt::format("IF({0}=\"\",\"\",ABS({0}-{1}))", recorded, expected),
                  Boxed("0.000"));
    sheet.Formula(Cell(channel.Percent, row),
                  fmt::format("IF({0}=\"\",\"\",IF({0}=0,\"-\",{1}/{0}*100))", recorded,
                              Cell(channel.Difference, row)),
                  Boxed("0.00"));
    sheet.Format(recorded,
                 WithNumber(With({.Bold = true, .Horizontal = Align::Centre}, BoxLines), "0.000"));
}

/// The columns of results are lettered from A on; criteria name them so.
constexpr char LetterOf(char column) {
    return static_cast<char>('A' + (column - Channels.front().Expected));
}
static_assert(LetterOf(Channels[0].Percent) == Channels[0].PercentName &&
              LetterOf(Channels[1].Difference) == Channels[1].DifferenceName);

void LayOutPoints(SheetBuilder& sheet, const std::string& title, const ChannelColumns& channel) {
    const Look head = With(HeadCell, BoxLines);
    const auto across = [&channel](int row) {
        return fmt::format("{0}{2}:{1}{2}", channel.Expected, channel.Result, row);
    };
    sheet.Merge(across(TitleRow), head).Text(Cell(channel.Expected, TitleRow), title, head);
    sheet.Format(across(HeadRow), head);
    for (char column = channel.Expected; column <= channel.Result; ++column)
        sheet.Text(Cell(column, LetterRow), std::string(1, LetterOf(column)), Boxed());
    for (int row = FirstPointRow; row <= LastPointRow; ++row) {
        sheet.Formula(
            Cell(channel.Expected, row),
            fmt::format("IF({0}=\"\",\"\",{0}*{1}/100)", Cell(PointColumn, row), channel.FullScale),
            Boxed("0.000"));
        LayOutDifference(sheet, channel, row);
        sheet.Format(Cell(channel.Criterion, row), Boxed())
            .Format(Cell(channel.Result, row), Boxed());
    }
    HighlightResults(
        sheet, fmt::format("{0}{1}:{0}{2}", channel.Result, FirstPointRow, LastPointRow).c_str());
}

/// How many points passed and failed; the program writes the heads of the first three columns.
void LayOutCounts(SheetBuilder& sheet) {
    const Look head = With(HeadCell, BoxLines);
    sheet.Format(fmt::format("B{0}:D{0}", CountHeadRow), head)
        .Text(fmt::format("E{}", CountHeadRow), "Result", head);
    int row = CountHeadRow;
    for (const ChannelColumns& channel : Channels) {
        ++row;
        const std::string results =
            fmt::format("{0}{1}:{0}{2}", channel.Result, FirstPointRow, LastPointRow);
        sheet.Formula(Cell('B', row), fmt::format("COUNTIF({},\"Pass\")", results), Boxed("0"));
        sheet.Formula(Cell('C', row), fmt::format("COUNTIF({},\"Fail\")", results), Boxed("0"));
        sheet.Number(Cell('D', row), row - CountHeadRow, Boxed("0"));
        sheet.Formula(Cell('E', row),
                      fmt::format("IF(C{0}>0,\"Fail\",IF(B{0}>0,\"Pass\",\"-\"))", row), Boxed());
    }
    HighlightResults(sheet, fmt::format("E{}:E{}", CountHeadRow + 1, row).c_str());
    sheet.Format(Cell('N', CountHeadRow), Label)
        .Number(Cell('O', CountHeadRow), 1, FieldValue("0"));
}

void LayOutSteps(SheetBuilder& sheet) {
    const Look head = With(HeadCell, BoxLines);
    sheet.Text(Cell('B', StepTitleRow), "Flow set from zero air", Section);
    sheet.RowHeight(StepHeadRow, 34)
        .Text(Cell('B', StepHeadRow), "Step", head)
        .Text(Cell('C', StepHeadRow), "Point", head);
    for (int row = FirstStepRow; row <= LastStepRow; ++row)
        sheet.Number(Cell(NumberColumn, row), row - FirstStepRow + 1, Boxed("0"))
            .Format(Cell(PointColumn, row), Boxed("0"));
    for (const ChannelColumns& channel : Channels) {
        sheet.Text(Cell(channel.Expected, StepHeadRow), "Demand, ml/min", head)
            .Text(Cell(channel.Recorded, StepHeadRow), "Reading, ml/min", head)
            .Text(Cell(channel.Difference, StepHeadRow), "Difference, ml/min", head)
            .Text(Cell(channel.Percent, StepHeadRow), "% Difference", head);
        for (int row = FirstStepRow; row <= LastStepRow; ++row) {
            sheet.Format(Cell(channel.Expected, row), Boxed("0.000"));
            LayOutDifference(sheet, channel, row);
        }
    }
}

} // namespace

std::string MakePV16_ACUAudit_Velocity() {
    TemplateBuilder builder("PV16 Air Velocity Audit");
    SheetBuilder& sheet = builder.AddSheet("Audit");
    LayOutHeader(sheet);
    sheet.RowHeight(HeadRow, 34)
        .Format(fmt::format("B{0}:C{0}", HeadRow), With(HeadCell, BoxLines));
    for (int row = FirstPointRow; row <= LastPointRow; ++row)
        sheet.Number(Cell(NumberColumn, row), row - FirstPointRow + 1, Boxed("0"))
            .Format(Cell(PointColumn, row), Boxed("0"));
    int number = 0;
    for (const ChannelColumns& channel : Channels)
        LayOutPoints(sheet, fmt::format("Channel {}", ++number), channel);
    LayOutCounts(sheet);
    LayOutSteps(sheet);
    return builder.Build();
}

} // namespace ombrix::templates
