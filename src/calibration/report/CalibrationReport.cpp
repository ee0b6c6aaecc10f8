#include "calibration/report/CalibrationReport.h"

#include "calibration/report/ReportCharts.h"
#include "calibration/report/SaveFolder.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>

namespace ombrix {

namespace {

/// Rows of a channel's part of the sheet, counted from its title.
constexpr int FirstTitleRow = 10;
constexpr int RowsPerChannel = 19;
constexpr int HeadRow = 1;
constexpr int UnitRow = 2;
constexpr int PointRow = 3;
constexpr int FitRow = 13;
constexpr int StepRow = 15;

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

void WriteHeads(Worksheet& report, int title, const VelocityResult& result, std::size_t channel) {
    const CalibrationKind kind = result.Measured.Kind;
    const bool isAudit = kind == CalibrationKind::Audit;
    const ChannelState state = StateOf(result, channel);
    std::string text = StateText(state, kind);
    const bool isComplete = state == ChannelState::Failed || state == ChannelState::Passed;
    if (isComplete && !ReadingsRiseWithDemand(result.Measured.Channels.at(channel)))
        text += "; the readings do not rise with the demand";
    report.SetValue(Cell("D", title), text);
    report.SetValue(Cell("J", title + HeadRow),
                    std::string(isAudit ? "Deviation from demand" : "Deviation from best fit"));
    report.SetValue(Cell("M", title + HeadRow),
                    std::string(isAudit ? "Stored segments" : "New segments"));
    const std::string unit = ReadingUnit(kind);
    report.SetValue(Cell("I", title + UnitRow), unit);
    report.SetValue(Cell("J", title + UnitRow), "rising, " + unit);
    report.SetValue(Cell("K", title + UnitRow), "falling, " + unit);
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
    report.SetValue(Cell("C", row), demand.Bits);
    report.SetValue(Cell("D", row), demand.Flow_ml_m);
}

void WritePoints(Worksheet& report, int title, const VelocityResult& result, std::size_t channel) {
    const ChannelMeasurement& measured = result.Measured.Channels.at(channel);
    const auto& verdict = result.Verdicts.at(channel);
    const VelocitySeries series = SeriesOf(result, channel);
    const int first = title + PointRow;
    for (std::size_t point = 0; point < series.Demand.size(); ++point)
        WriteDemand(report, first + static_cast<int>(point), measured.Demand[point]);
    WriteSweep(report, first, "E", "F", measured.Rising);
    WriteSweep(report, first, "G", "H", measured.Falling);
    SetColumn(report, "I", first, series.Difference);
    SetColumn(report, "J", first, series.RisingDeviation);
    SetColumn(report, "K", first, series.FallingDeviation);
    if (verdict && verdict->BestFit.Slope != 0.0F) {
        report.SetValue(Cell("D", title + FitRow), verdict->BestFit.Slope);
        report.SetValue(Cell("F", title + FitRow), verdict->BestFit.Intercept);
    }
}

void WriteSteps(Worksheet& report, int title, const ChannelMeasurement& measured) {
    int row = title + StepRow;
    for (const StepMeasurement& step : measured.Steps) {
        report.SetValue(Cell("B", row), step.Point + 1);
        WriteDemand(report, row, step.Demand);
        if (step.Reading.Valid) {
            report.SetValue(Cell("E", row), step.Reading.Reading_bits);
            report.SetValue(Cell("F", row), step.Reading.Flow_ml_m);
            report.SetValue(Cell("I", row), step.Reading.Flow_ml_m - step.Demand.Flow_ml_m);
        }
        ++row;
    }
}

void WriteSegments(Worksheet& report, int title, const ACUChannelCal& table, std::size_t points) {
    const std::size_t segments = std::min(points, MaxCalibrationPoints) - 1;
    const PointValues slopes(table.M.begin(), table.M.begin() + static_cast<int>(segments));
    const PointValues intercepts(table.C.begin(), table.C.begin() + static_cast<int>(segments));
    SetColumn(report, "N", title + PointRow, slopes);
    SetColumn(report, "O", title + PointRow, intercepts);
}

/// A trace has two columns: the time since the demand was set, and the reading.
void WriteTrace(Worksheet& traces, int& column, const PointReading& reading) {
    constexpr int columnsPerTrace = 2;
    if (!reading.Trace.empty()) {
        std::vector<float> samples;
        for (const TraceSample& sample : reading.Trace) {
            samples.push_back(sample.Time_s);
            samples.push_back(static_cast<float>(sample.Reading_bits));
        }
        constexpr int firstRow = 2;
        const int lastRow = firstRow + static_cast<int>(reading.Trace.size()) - 1;
        traces.SetValues(CellAddress(column, firstRow) + ":" + CellAddress(column + 1, lastRow),
                         CellBlock<float>{samples, columnsPerTrace});
    }
    column += columnsPerTrace;
}

/// Fills a channel's part of the report sheet: points, best fit, steps and segments.
/// @param stored the channel's table in the EPROM; an audit shows it in place of a new one
void FillReportTables(Worksheet& report, std::size_t channel, const VelocityResult& result,
                      const ACUChannelCal& stored) {
    const int title = FirstTitleRow + static_cast<int>(channel) * RowsPerChannel;
    const ChannelMeasurement& measured = result.Measured.Channels.at(channel);
    const auto& verdict = result.Verdicts.at(channel);
    WriteHeads(report, title, result, channel);
    if (measured.Rising.empty())
        return;
    WritePoints(report, title, result, channel);
    WriteSteps(report, title, measured);
    if (result.Measured.Kind == CalibrationKind::Audit)
        WriteSegments(report, title, stored, measured.Demand.size());
    else if (verdict && verdict->DataAcceptable)
        WriteSegments(report, title, verdict->NewVelocityCal, measured.Demand.size());
}

/// Fills a channel's sheet of traces: times and readings of every sweep and step.
void FillTraces(Worksheet& traces, const ChannelMeasurement& measured) {
    int column = 0;
    const auto writeSweep = [&](const std::vector<PointReading>& readings) {
        for (std::size_t point = 0; point < MaxCalibrationPoints; ++point)
            WriteTrace(traces, column, point < readings.size() ? readings[point] : PointReading());
    };
    writeSweep(measured.Rising);
    writeSweep(measured.Falling);
    for (const StepMeasurement& step : measured.Steps)
        WriteTrace(traces, column, step.Reading);
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
    report.SetValue("D3", std::string(kind == CalibrationKind::Audit ? "Audit" : "System"));
    report.SetValue("D4", date);
    report.SetValue("D5", std::string(CalibrationUser));
    report.SetValue("D6", unit.Record.CalibrationPoints);
    report.SetValue("D7", std::string(unit.Record.HasSolenoidValves != 0 ? "Yes" : "No"));
    report.SetValue("J3", unit.SerialNumberStr());
    report.SetValue("J4", unit.Record.ACUMFCNumber());
    report.SetValue("J5", unit.Record.ChannelCapacity[0]);
    report.SetValue("J6", unit.Record.ChannelCapacity[1]);
}

} // namespace

bool CalibrationReport::Open(CalibrationKind kind, const ACU& unit, OleDate date) {
    m_Unit = unit;
    m_Workbook =
        OpenFilled(m_Tools, "Initialising Excel Report", "QX_ACU_Calibration.xlt",
                   [&](Workbook& book) { FillHeader(book.Sheet("Report"), kind, unit, date); });
    return IsOpen();
}

void CalibrationReport::Fill(const VelocityResult& result, bool passed) {
    Workbook& book = *m_Workbook.Book;
    Worksheet& report = book.Sheet("Report");
    report.SetValue("M3", std::string(Verdict(result, passed)));
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const ChannelMeasurement& measured = result.Measured.Channels.at(channel);
        FillReportTables(report, channel, result, m_Unit.Record.VelocityCal.at(channel));
        Worksheet& traces = book.Sheet(fmt::format("Traces Ch{}", channel + 1));
        FillTraces(traces, measured);
        Worksheet& charts = book.Sheet("Charts");
        DrawReportCharts(charts, book.Sheet("Chart Data"), channel, result);
        DrawStepCharts(charts, traces, channel, measured);
    }
}

StoredReport CalibrationReport::Save(CalibrationKind kind) {
    const std::string name =
        AutoSaveName(m_Tools.TheStation, m_Unit, "ACU_",
                     kind == CalibrationKind::Audit ? "_Audit.xls" : "_System.xls");
    return SaveCalibrationExcelWorkbook(m_Tools, m_Workbook, name, true);
}

} // namespace ombrix
