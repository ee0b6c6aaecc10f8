// What a sequence writes into the report workbook: its data sheet and its overview block.
#include "board/AIBTools.h"
#include "healthcheck/HealthCheckReport.h"
#include "healthcheck/MFCSequence.h"
#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>

#include <cmath>

namespace ombrix {

namespace {

/// From the first to the last row of an overview chart.
constexpr std::int32_t ChartRows = 25;

void AddChart(const Worksheet& dataSheet, Worksheet& target, const std::string& title,
              const std::string& topLeft, const std::string& bottomRight) {
    const SheetBox first = target.Box(topLeft);
    const SheetBox last = target.Box(bottomRight);
    const double left = std::trunc(first.Left);
    const double top = std::trunc(first.Top);
    const SheetBox place{left, top, std::trunc(last.Left + last.Width) - left,
                         std::trunc(last.Top + last.Height) - top};
    Chart& chart = target.AddChart(ChartType::XYScatterSmoothNoMarkers, place);
    chart.SetSourceData(dataSheet, "A:A,F:J");
    chart.SetElement(ChartElement::TitleAboveChart);
    chart.SetTitle(title);
    for (const int demand : {1, 3})
        chart.SetSeriesLineWeight(demand, 1.0);
    constexpr int pressure = 5;
    for (int series = 1; series <= pressure; ++series)
        chart.SetSeriesSmooth(series, false);
    chart.SetSeriesAxisGroup(pressure, AxisGroup::Secondary);
}

/// Boxes each group of columns on its own, with no lines between the steps.
void BoxSteps(Worksheet& overview, std::int32_t first, std::int32_t last) {
    const std::string areas = ReplaceAll(
        ReplaceAll("B#:B@,C#:E@,F#:G@,H#:I@,J#:K@,L#:L@,N#:O@", "#", std::to_string(first)), "@",
        std::to_string(last));
    for (const BorderEdge edge :
         {BorderEdge::Left, BorderEdge::Top, BorderEdge::Bottom, BorderEdge::Right})
        overview.SetBorder(areas, edge, LineStyle::Continuous);
    for (const BorderEdge edge : {BorderEdge::DiagonalDown, BorderEdge::DiagonalUp,
                                  BorderEdge::InsideVertical, BorderEdge::InsideHorizontal})
        overview.SetBorder(areas, edge, LineStyle::None);
}

/// Long blocks leave as many rows free as they have steps: these close up, and a chart that
/// would not fit below its steps goes onto a page of its own.
void LayOutForPrint(Worksheet& overview, std::int32_t freeRow, std::int32_t chartRow) {
    constexpr double closed_points = 2.0;
    constexpr std::int32_t rowsThatFit = 10;
    if (chartRow - freeRow > 1)
        overview.SetRowHeight(freeRow, chartRow - 2, closed_points);
    if (chartRow - freeRow > rowsThatFit)
        overview.AddPageBreak(chartRow);
    overview.SetPrintArea(fmt::format("A1:O{}", chartRow + ChartRows));
}

} // namespace

void clsMFCSequence::ExportToWorkbook(const ReportUnit& unit, OleDate now, Workbook& workbook,
                                      const std::string& sheetName,
                                      std::int32_t& overviewRow) const {
    Worksheet& overview = workbook.Sheet("Overview");
    workbook.Sheet("All Graphs"); // a template without it is not ours
    workbook.Sheet("DataTemplate").CopyAfter(workbook.Sheet(workbook.WorksheetCount() - 1));
    Worksheet& dataSheet = workbook.Sheet(workbook.WorksheetCount() - 1);

    overview.SetValue("C2", unit.Serial);
    overview.SetValue("C3", unit.MFCNumber);
    overview.SetValue("C5", now);
    dataSheet.SetName(sheetName);
    if (unit.PressureConfig == 0)
        dataSheet.SetValue("J1", std::string("Pressure (Analog)"));
    else if (unit.PressureConfig == 1)
        dataSheet.SetValue("J1", std::string("Pressure (Digital)"));
    overview.SetValue("N7", dataSheet.Value("J1"));

    std::int32_t row = 0;
    for (const clsMFCStep& step : m_Steps)
        step.ExportData(row, dataSheet);
    AddChart(dataSheet, dataSheet, sheetName, "M2", "AD36");

    ExportOverviewBlock(overview, overviewRow);
    AddChart(dataSheet, overview, sheetName, fmt::format("B{}", overviewRow),
             fmt::format("L{}", overviewRow + ChartRows));
    constexpr std::int32_t nextBlock = 29;
    overviewRow += nextBlock;
}

void clsMFCSequence::ExportOverviewBlock(Worksheet& overview, std::int32_t& row) const {
    constexpr std::int32_t headerRows = 3;
    constexpr std::int32_t firstBlockEnd = 10;
    if (row > firstBlockEnd) {
        overview.CopyRange("B7:O9", fmt::format("B{}:O{}", row, row + headerRows - 1));
        overview.AddPageBreak(row);
    }
    row += headerRows;
    const std::int32_t firstStep = row;
    for (const clsMFCStep& step : m_Steps)
        step.ExportStepData(row++, overview);
    BoxSteps(overview, firstStep, row - 1);
    const std::int32_t chart = row + StepCount() - 2;
    LayOutForPrint(overview, row, chart);
    row = chart;
}

} // namespace ombrix
