#include "calibration/report/CalibrationReport.h"

#include "calibration/report/ReportCharts.h"
#include "calibration/report/SaveFolder.h"
#include "reports/layout/VelocityReportLayout.h"
#include "spreadsheet/Cells.h"

#include <algorithm>

namespace ombrix {

namespace {

namespace Layout = VelocityReportLayout;
namespace Columns = Layout::Columns;

const char* StateText(ChannelState state, CalibrationKind kind) {
    switch (state) {
    case ChannelState::NotPresent: return "Not present";
    case ChannelState::NotMeasured: return "Not measured";
    case ChannelState::Incomplete: return "Not complete";
    case ChannelState::Failed:
        return kind == CalibrationKind::Audit ? "Audit failed" : "Data not acceptable";
    case ChannelState::Passed: break;
    }
    return kind == CalibrationKind::Audit ? "Audit passed" : "Data acceptable";
}

void WriteHeads(Worksheet& report, const VelocityResult& result, std::size_t channel) {
    const Layout::ChannelRows rows = Layout::RowsOf(channel);
    const CalibrationKind kind = result.Measured.Kind;
    const bool isAudit = kind == CalibrationKind::Audit;
    const ChannelState state = StateOf(result, channel);
    std::string text = StateText(state, kind);
    const bool isComplete = state == ChannelState::Failed || state == ChannelState::Passed;
    const auto& verdict = result.Verdicts.at(channel);
    if (isComplete && !verdict->NotFollowing.empty())
        text = std::string(StateText(ChannelState::Passed, kind)) + "; " + verdict->NotFollowing;
    else if (isComplete && !ReadingsRiseWithDemand(result.Measured.Channels.at(channel)))
        text += "; the readings do not rise with the demand";
    report.SetValue(Cell(Columns::State, rows.Title), text);
    report.SetValue(Cell(Columns::RisingDeviation, rows.Heads),
                    std::string(isAudit ? "Deviation from demand" : "Deviation from best fit"));
    report.SetValue(Cell(Columns::Segment, rows.Heads),
                    std::string(isAudit ? "Stored segments" : "New segments"));
    const std::string unit = ReadingUnit(kind);
    report.SetValue(Cell(Columns::Difference, rows.Units), unit);
    report.SetValue(Cell(Columns::RisingDeviation, rows.Units), "rising, " + unit);
    report.SetValue(Cell(Columns::FallingDeviation, rows.Units), "falling, " + unit);
}

/// Bits and flow of a sweep in two neighbouring columns.
void WriteSweep(Worksheet& report, int firstRow, const char* bits, const char* flow,
                const std::vector<PointReading>& readings) {
    std::vector<std::optional<std::int32_t>> bitValues;
    PointValues flowValues;
    for (const PointReading& reading : readings) {
        bitValues.push_back(reading.Valid ? std::optional(reading.Reading_bits) : std::nullopt);
        flowValues.push_back(reading.Valid ? std::optional(reading.Flow_ml_m) : std::nullopt);
    }
    bitValues.resize(std::min(bitValues.size(), MaxCalibrationPoints));
    flowValues.resize(std::min(flowValues.size(), MaxCalibrationPoints));
    SetColumn(report, bits, firstRow, bitValues);
    SetColumn(report, flow, firstRow, flowValues);
}

void WriteDemand(Worksheet& report, int row, const PointDemand& demand) {
    report.SetValue(Cell(Columns::DemandBits, row), demand.Bits);
    report.SetValue(Cell(Columns::DemandFlow, row), demand.Flow_ml_m);
}

void WritePoints(Worksheet& report, const VelocityResult& result, std::size_t channel) {
    const Layout::ChannelRows rows = Layout::RowsOf(channel);
    const ChannelMeasurement& measured = result.Measured.Channels.at(channel);
    const auto& verdict = result.Verdicts.at(channel);
    const VelocitySeries series = SeriesOf(result, channel);
    const int first = rows.FirstPoint;
    for (std::size_t point = 0; point < series.Demand.size(); ++point)
        WriteDemand(report, first + static_cast<int>(point), measured.Demand[point]);
    WriteSweep(report, first, Columns::RisingBits, Columns::RisingFlow, measured.Rising);
    WriteSweep(report, first, Columns::FallingBits, Columns::FallingFlow, measured.Falling);
    SetColumn(report, Columns::Difference, first, series.Difference);
    SetColumn(report, Columns::RisingDeviation, first, series.RisingDeviation);
    SetColumn(report, Columns::FallingDeviation, first, series.FallingDeviation);
    if (verdict && verdict->BestFit.Slope != 0.0F) {
        report.SetValue(Cell(Columns::FitSlope, rows.BestFit), verdict->BestFit.Slope);
        report.SetValue(Cell(Columns::FitIntercept, rows.BestFit), verdict->BestFit.Intercept);
    }
}

void WriteSteps(Worksheet& report, int firstRow, const ChannelMeasurement& measured) {
    int row = firstRow;
    for (const StepMeasurement& step : measured.Steps) {
        report.SetValue(Cell(Columns::Point, row), step.Point + 1);
        WriteDemand(report, row, step.Demand);
        if (step.Reading.Valid) {
            report.SetValue(Cell(Columns::RisingBits, row), step.Reading.Reading_bits);
            report.SetValue(Cell(Columns::RisingFlow, row), step.Reading.Flow_ml_m);
            report.SetValue(Cell(Columns::Difference, row),
                            step.Reading.Flow_ml_m - step.Demand.Flow_ml_m);
        }
        ++row;
    }
}

void WriteSegments(Worksheet& report, int firstRow, const ACUChannelCal& table,
                   std::size_t points) {
    const std::size_t segments = std::min(points, MaxCalibrationPoints) - 1;
    const PointValues slopes(table.M.begin(), table.M.begin() + static_cast<int>(segments));
    const PointValues intercepts(table.C.begin(), table.C.begin() + static_cast<int>(segments));
    SetColumn(report, Columns::Slope, firstRow, slopes);
    SetColumn(report, Columns::Intercept, firstRow, intercepts);
}

void WriteTrace(Worksheet& traces, int trace, const PointReading& reading) {
    if (reading.Trace.empty())
        return;
    namespace Traces = Layout::Traces;
    std::vector<float> samples;
    for (const TraceSample& sample : reading.Trace) {
        samples.push_back(sample.Time_s);
        samples.push_back(static_cast<float>(sample.Reading_bits));
    }
    const int column = Traces::TimeColumn(trace);
    const int lastRow = Traces::FirstRow + static_cast<int>(reading.Trace.size()) - 1;
    traces.SetValues(CellAddress(column, Traces::FirstRow) + ":" + CellAddress(column + 1, lastRow),
                     CellBlock<float>{samples, Traces::ColumnsPerTrace});
}

/// Fills a channel's part of the report sheet: points, best fit, steps and segments.
/// @param stored the channel's table in the EPROM; an audit shows it in place of a new one
void FillReportTables(Worksheet& report, std::size_t channel, const VelocityResult& result,
                      const ACUChannelCal& stored) {
    const Layout::ChannelRows rows = Layout::RowsOf(channel);
    const ChannelMeasurement& measured = result.Measured.Channels.at(channel);
    const auto& verdict = result.Verdicts.at(channel);
    WriteHeads(report, result, channel);
    if (measured.Rising.empty())
        return;
    WritePoints(report, result, channel);
    WriteSteps(report, rows.FirstStep, measured);
    if (result.Measured.Kind == CalibrationKind::Audit)
        WriteSegments(report, rows.FirstPoint, stored, measured.Demand.size());
    else if (verdict && verdict->DataAcceptable)
        WriteSegments(report, rows.FirstPoint, verdict->NewVelocityCal, measured.Demand.size());
}

/// Fills a channel's sheet of traces: times and readings of every sweep and step.
void FillTraces(Worksheet& traces, const ChannelMeasurement& measured) {
    int trace = 0;
    for (const auto* sweep : {&measured.Rising, &measured.Falling}) {
        for (std::size_t point = 0; point < Layout::Points; ++point)
            WriteTrace(traces, trace++, point < sweep->size() ? sweep->at(point) : PointReading());
    }
    for (const StepMeasurement& step : measured.Steps)
        WriteTrace(traces, trace++, step.Reading);
}

const char* Verdict(const VelocityResult& result, bool passed) {
    if (passed)
        return "PASSED";
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        if (StateOf(result, channel) == ChannelState::Failed)
            return "FAILED";
    }
    return "NOT COMPLETE";
}

void FillHeader(Worksheet& report, CalibrationKind kind, const ACU& unit, OleDate date) {
    namespace Head = Layout::Head;
    report.SetValue(Head::Kind, std::string(kind == CalibrationKind::Audit ? "Audit" : "System"));
    report.SetValue(Head::Date, date);
    report.SetValue(Head::User, std::string(CalibrationUser));
    report.SetValue(Head::CalibrationPoints, unit.Record.CalibrationPoints);
    report.SetValue(Head::SolenoidValves,
                    std::string(unit.Record.HasSolenoidValves != 0 ? "Yes" : "No"));
    report.SetValue(Head::SerialNumber, unit.SerialNumberStr());
    report.SetValue(Head::MFCNumber, unit.Record.ACUMFCNumber());
    report.SetValue(Head::FullScales[0], unit.Record.ChannelCapacity[0]);
    report.SetValue(Head::FullScales[1], unit.Record.ChannelCapacity[1]);
}

} // namespace

bool CalibrationReport::Open(CalibrationKind kind, const ACU& unit, OleDate date) {
    m_Unit = unit;
    m_Workbook =
        OpenFilled(m_Tools, "Initialising Excel Report", Layout::Template, [&](Workbook& book) {
            FillHeader(book.Sheet(Layout::ReportSheet), kind, unit, date);
        });
    return IsOpen();
}

void CalibrationReport::Fill(const VelocityResult& result, bool passed) {
    Workbook& book = *m_Workbook.Book;
    Worksheet& report = book.Sheet(Layout::ReportSheet);
    report.SetValue(Layout::Head::Verdict, std::string(Verdict(result, passed)));
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const ChannelMeasurement& measured = result.Measured.Channels.at(channel);
        FillReportTables(report, channel, result, m_Unit.Record.VelocityCal.at(channel));
        Worksheet& traces = book.Sheet(Layout::TraceSheets.at(channel));
        FillTraces(traces, measured);
        Worksheet& charts = book.Sheet(Layout::ChartSheet);
        DrawReportCharts(charts, book.Sheet(Layout::ChartDataSheet), channel, result);
        DrawStepCharts(charts, traces, channel, measured);
    }
}

void CalibrationReport::SayNotStored(const std::string& text) {
    m_Workbook.Book->Sheet(Layout::ReportSheet).SetValue(Layout::Head::NotStored, text);
}

StoredReport CalibrationReport::Save(CalibrationKind kind) {
    const std::string name =
        AutoSaveName(m_Tools.TheStation, m_Unit, "ACU_",
                     kind == CalibrationKind::Audit ? "_Audit.xls" : "_System.xls");
    return SaveCalibrationExcelWorkbook(m_Tools, m_Workbook, name, true);
}

} // namespace ombrix
