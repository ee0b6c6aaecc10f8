#include "healthcheck/MFCSequence.h"

#include "board/procedure/HiResTimer.h"
#include "healthcheck/HealthCheckJournal.h"
#include "platform/text/Text.h"
#include "reports/layout/HealthCheckLayout.h"
#include "spreadsheet/Cells.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <vector>

namespace ombrix {

namespace {

/// Brings both air channels to zero, whatever way the run is left.
class ChannelsToZero {
  public:
    explicit ChannelsToZero(Station& station) : m_Station(station) {}
    ChannelsToZero(const ChannelsToZero&) = delete;
    ChannelsToZero& operator=(const ChannelsToZero&) = delete;
    ~ChannelsToZero() { m_Station.Outputs.ZeroAirChannels(*m_Station.CurrentAIB); }

  private:
    Station& m_Station;
};

} // namespace

void MFCSequence::AddStep(float ch1Demand, float ch2Demand, float duration_s) {
    const MFCStep* last = m_Steps.empty() ? nullptr : &m_Steps.back();
    const std::int32_t index = StepCount();
    m_Steps.emplace_back().Init(index, ch1Demand, ch2Demand, duration_s, last);
}

const MFCStep& MFCSequence::Step(std::int32_t index) const {
    return m_Steps.at(static_cast<std::size_t>(index));
}

float MFCSequence::TotalTime_s() const {
    return Step(StepCount() - 1).EndTime_s();
}

std::int32_t MFCSequence::SampleCount() const {
    std::int32_t count = 0;
    for (const MFCStep& step : m_Steps)
        count += step.DataCount();
    return count;
}

bool MFCSequence::RecordFull() const {
    return std::any_of(m_Steps.begin(), m_Steps.end(),
                       [](const MFCStep& step) { return step.RecordFull(); });
}

std::int32_t MFCSequence::EndedCount() const {
    return static_cast<std::int32_t>(std::count_if(
        m_Steps.begin(), m_Steps.end(), [](const MFCStep& step) { return step.Ended(); }));
}

std::int32_t MFCSequence::MeasuredCount() const {
    return static_cast<std::int32_t>(std::count_if(
        m_Steps.begin(), m_Steps.end(), [](const MFCStep& step) { return step.IsMeasured(); }));
}

void MFCSequence::AddSamples(std::int32_t index, std::span<const MFCStep::Sample> samples,
                             bool ended) {
    MFCStep& step = m_Steps.at(static_cast<std::size_t>(index));
    for (const MFCStep::Sample& sample : samples)
        step.AddSample(sample);
    if (ended)
        step.EndStep();
}

bool MFCSequence::RunSequence(Station& station, ProcedureWait& wait, const SequenceView& view,
                              Workbook* workbook, const std::string& sheetName,
                              std::int32_t& overviewRow) {
    if (view.Graphs != nullptr)
        DrawGraphTemplate(*view.Graphs);
    if (view.Steps != nullptr)
        FillStepList(*view.Steps);
    const auto exportRecord = [&] {
        for (std::int32_t index = EndedCount(); index < StepCount(); ++index)
            TellEnd(index, view);
        const OleDate now = station.World.Time.Now();
        if (view.Recorder != nullptr)
            view.Recorder->SequenceEnds(now, EndedCount());
        if (workbook != nullptr)
            ExportToWorkbook(station.Calibration().Unit(), now, *workbook, sheetName, overviewRow);
    };
    try {
        const bool completed = RunSteps(station, wait, view);
        exportRecord();
        return completed;
    } catch (const BoardError&) {
        exportRecord();
        throw;
    }
}

bool MFCSequence::RunSteps(Station& station, ProcedureWait& wait, const SequenceView& view) {
    const ChannelsToZero afterwards(station);
    HiResTimer timer(station.World.Time);
    std::size_t index = 0;
    const auto start = [&] {
        m_Steps[index].StartStep(timer, station);
        if (view.Steps != nullptr)
            view.Steps->ListIndex(static_cast<int>(index));
        if (view.Recorder != nullptr)
            view.Recorder->StepBegins(static_cast<std::int32_t>(index));
    };
    start();
    while (true) {
        if (static_cast<float>(timer.ElapsedTime()) >= m_Steps[index].EndTime_s()) {
            m_Steps[index].EndStep();
            TellEnd(static_cast<std::int32_t>(index), view);
            if (++index == m_Steps.size())
                return true;
            start();
        }
        MFCStep& step = m_Steps[index];
        if (step.RecordDataPoint(*station.CurrentAIB, view.Graphs, view.Labels)) {
            if (view.Recorder != nullptr)
                view.Recorder->Sample(step.LastSample());
            if (view.Progress)
                view.Progress(timer.ElapsedTime());
        }
        const double due_s = std::min<double>(step.NextSampleTime_s(), step.EndTime_s());
        if (!wait.Pass(timer, due_s))
            return false;
    }
}

void MFCSequence::TellEnd(std::int32_t index, const SequenceView& view) {
    if (view.StepEnded)
        view.StepEnded(index);
}

std::string MFCSequence::StepText(std::int32_t index) const {
    const MFCStep& step = Step(index);
    const auto percent = [&step](std::int32_t channel) {
        return FixedText(step.DemandValue_Percent(channel) * 100.0F, 1);
    };
    return fmt::format("{}.    Ch1 {}%     Ch2 {}%     for     {}s", index + 1, percent(0),
                       percent(1), GeneralText(step.Duration_s()));
}

void MFCSequence::FillStepList(StepList& steps) const {
    steps.Clear();
    for (std::int32_t index = 0; index < StepCount(); ++index)
        steps.AddItem({StepText(index),
                       {Step(index).DemandValue_Percent(0), Step(index).DemandValue_Percent(1)},
                       Step(index).Duration_s()});
}

// The empty graphs of a sequence: frames, titles, reference lines and the expected demand.

namespace {

constexpr double ReadingFullScale_bits = 65535.0;
constexpr double PressureTop = 12000.0;
/// 0.2 % of full scale.
constexpr double DifferenceLimit_bits = 131.0;
constexpr Colour ReferenceColour{222, 222, 255};
constexpr Colour ExpectedColour{222, 222, 222};

void DrawFrame(GraphSurface& surface, double right, double top, double bottom,
               std::string_view title, std::initializer_list<double> referenceLevels) {
    surface.Scale(0.0, top, right, bottom);
    surface.Cls();
    surface.Print(0.0, top, title);
    for (const double level : referenceLevels)
        surface.Line(0.0, level, right, level, ReferenceColour);
}

void PrintLevel(GraphSurface& surface, double level, std::string_view text) {
    surface.Print(0.0, level - surface.TextHeight(text), text);
}

} // namespace

void MFCSequence::DrawGraphTemplate(const GraphSurfaces& graphs) const {
    const double right = TotalTime_s() * 1.05;
    const std::string seconds = fmt::format("  ({} seconds)", GeneralText(TotalTime_s()));
    for (const std::size_t thick : {0U, 1U, 2U})
        graphs.at(thick)->DrawWidth(1);

    constexpr double flowTop = 84000.0;
    constexpr double flowBottom = -3360.0;
    DrawFrame(*graphs[0], right, flowTop, flowBottom, "Channel 1 - 5000 mL/min" + seconds,
              {ReadingFullScale_bits, 0.0});
    PrintLevel(*graphs[0], ReadingFullScale_bits, "100%");
    DrawFrame(*graphs[1], right, flowTop, flowBottom, "Channel 2 - 200 mL/min" + seconds,
              {ReadingFullScale_bits, 0.0});
    PrintLevel(*graphs[1], ReadingFullScale_bits, "100%");

    constexpr double pressureBottom = -1000.0;
    DrawFrame(*graphs[2], right, PressureTop, pressureBottom, "Pressure Measurement" + seconds,
              {0.0, PressureTop});
    PrintLevel(*graphs[2], PressureTop, "12000");

    constexpr double differenceTop = 1000.0;
    DrawFrame(*graphs[3], right, differenceTop, -differenceTop, "Ch1 - Diff (Read - Set)",
              {0.0, DifferenceLimit_bits, -DifferenceLimit_bits});
    DrawFrame(*graphs[4], right, differenceTop, -differenceTop, "Ch2 - Diff (Read - Set)",
              {0.0, DifferenceLimit_bits, -DifferenceLimit_bits});

    DrawExpectedDemand(*graphs[0], 0);
    DrawExpectedDemand(*graphs[1], 1);
    for (const std::size_t thick : {0U, 1U, 2U}) {
        graphs.at(thick)->DrawStyle(GraphSurface::Style::Solid);
        graphs.at(thick)->DrawWidth(2);
    }
}

void MFCSequence::DrawExpectedDemand(GraphSurface& surface, std::int32_t channel) const {
    surface.DrawStyle(GraphSurface::Style::Dotted);
    double x = 0.0;
    double y = Step(0).DemandValue_Percent(channel) * ReadingFullScale_bits;
    for (const MFCStep& step : m_Steps) {
        const double level = step.DemandValue_Percent(channel) * ReadingFullScale_bits;
        if (x > 0.0)
            surface.Line(x, y, x, level, ExpectedColour);
        surface.Line(x, level, step.EndTime_s(), level, ExpectedColour);
        x = step.EndTime_s();
        y = level;
    }
}

// What a sequence writes into the report workbook: its data sheet and its overview block.

namespace {

namespace Layout = HealthCheckLayout;
namespace Overview = Layout::Overview;
namespace Data = Layout::Data;

void AddChart(const Worksheet& dataSheet, Worksheet& target, const std::string& title,
              const std::string& topLeft, const std::string& bottomRight) {
    const SheetBox first = target.Box(topLeft);
    const SheetBox last = target.Box(bottomRight);
    const double left = std::trunc(first.Left);
    const double top = std::trunc(first.Top);
    const SheetBox place{left, top, std::trunc(last.Left + last.Width) - left,
                         std::trunc(last.Top + last.Height) - top};
    Chart& chart = target.AddChart(ChartType::XYScatterSmoothNoMarkers, place);
    chart.SetSourceData(dataSheet, Data::ChartColumns);
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
    std::vector<std::string> groups;
    for (const std::string_view group : Overview::Groups)
        groups.push_back(fmt::format("{}{}:{}{}", group.front(), first, group.back(), last));
    const std::string areas = fmt::format("{}", fmt::join(groups, ","));
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
    overview.ExtendPrintArea(fmt::format("A1:O{}", chartRow + Overview::ChartRows));
}

} // namespace

void MFCSequence::ExportToWorkbook(const ACU& unit, OleDate now, Workbook& workbook,
                                   const std::string& sheetName, std::int32_t& overviewRow) const {
    Worksheet& overview = workbook.Sheet(Layout::OverviewSheet);
    workbook.Sheet(Layout::GraphSheet); // a template without it is not ours
    workbook.Sheet(Layout::DataSheet).CopyAfter(workbook.Sheet(workbook.WorksheetCount() - 1));
    Worksheet& dataSheet = workbook.Sheet(workbook.WorksheetCount() - 1);

    overview.SetValue(Overview::Serial, unit.Serial);
    overview.SetValue(Overview::MFCNumber, unit.Record.MFCSerialNumber_Clean());
    overview.SetValue(Overview::Date, now);
    dataSheet.SetName(workbook.FreeName(sheetName));
    dataSheet.SetVisible(SheetVisibility::Visible); // a site may have hidden what it is copied from
    const std::string pressureHead = Cell(Data::Pressure, Data::HeadRow);
    if (unit.Record.DigitalPressureConfig == 0)
        dataSheet.SetValue(pressureHead, std::string("Pressure (Analog)"));
    else if (unit.Record.DigitalPressureConfig == 1)
        dataSheet.SetValue(pressureHead, std::string("Pressure (Digital)"));
    overview.SetValue(Overview::PressureHead, dataSheet.Value(pressureHead));

    std::int32_t row = 0;
    for (const MFCStep& step : m_Steps)
        step.ExportData(row, dataSheet);
    AddChart(dataSheet, dataSheet, sheetName, Data::ChartTopLeft, Data::ChartBottomRight);

    ExportOverviewBlock(overview, overviewRow);
    AddChart(dataSheet, overview, sheetName, Cell(Overview::Step, overviewRow),
             Cell(Overview::Description, overviewRow + Overview::ChartRows));
    overviewRow += Overview::NextBlock;
}

void MFCSequence::ExportOverviewBlock(Worksheet& overview, std::int32_t& row) const {
    const auto heads = [](std::int32_t headRow) {
        return fmt::format("B{}:O{}", headRow, headRow + Overview::HeadRows - 1);
    };
    if (row > Overview::HeadRow + Overview::HeadRows) {
        overview.CopyRange(heads(Overview::HeadRow), heads(row));
        overview.AddPageBreak(row);
    }
    row += Overview::HeadRows;
    const std::int32_t firstStep = row;
    for (const MFCStep& step : m_Steps)
        step.ExportStepData(row++, overview);
    BoxSteps(overview, firstStep, row - 1);
    const std::int32_t chart = row + StepCount() - 2;
    LayOutForPrint(overview, row, chart);
    row = chart;
}

} // namespace ombrix
