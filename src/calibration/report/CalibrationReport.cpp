#include "calibration/report/CalibrationReport.h"

#include "board/AIBTools.h"
#include "calibration/judge/AcceptanceChecks.h"
#include "calibration/report/ReportCharts.h"
#include "calibration/unit/ACUCalibration.h"
#include "reports/CellRuns.h"

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

void WriteHeads(Worksheet& report, int title, const ChannelMeasurement& measured,
                CalibrationKind kind) {
    const bool isAudit = kind == CalibrationKind::Audit;
    const ChannelState state = StateOf(measured, kind);
    std::string text = StateText(state, kind);
    const bool isComplete = state == ChannelState::Failed || state == ChannelState::Passed;
    if (isComplete && !ReadingsRiseWithDemand(measured))
        text += "; the readings do not rise with the demand";
    report.SetValue(Cell("D", title), text);
    report.SetValue(Cell("J", title + HeadRow),
                    std::string(isAudit ? "Deviation from demand" : "Deviation from best fit"));
    report.SetValue(Cell("M", title + HeadRow),
                    std::string(isAudit ? "Stored segments" : "New segments"));
    const std::string unit = UnitOf(kind);
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

void WritePoints(Worksheet& report, int title, const ChannelMeasurement& measured,
                 CalibrationKind kind) {
    const VelocitySeries series = SeriesOf(measured, kind);
    const int first = title + PointRow;
    for (std::size_t point = 0; point < series.Demand.size(); ++point)
        WriteDemand(report, first + static_cast<int>(point), measured.Demand[point]);
    WriteSweep(report, first, "E", "F", measured.Rising);
    WriteSweep(report, first, "G", "H", measured.Falling);
    SetColumn(report, "I", first, series.Difference);
    SetColumn(report, "J", first, series.RisingDeviation);
    SetColumn(report, "K", first, series.FallingDeviation);
    if (kind == CalibrationKind::System && measured.BestFit.Slope != 0.0F) {
        report.SetValue(Cell("D", title + FitRow), measured.BestFit.Slope);
        report.SetValue(Cell("F", title + FitRow), measured.BestFit.Intercept);
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

} // namespace

void FillReportTables(Worksheet& report, std::size_t channel, const ChannelMeasurement& measured,
                      CalibrationKind kind, const ACUChannelCal& stored) {
    const int title = FirstTitleRow + static_cast<int>(channel) * RowsPerChannel;
    WriteHeads(report, title, measured, kind);
    if (measured.Rising.empty())
        return;
    WritePoints(report, title, measured, kind);
    WriteSteps(report, title, measured);
    if (kind == CalibrationKind::Audit)
        WriteSegments(report, title, stored, measured.Demand.size());
    else if (measured.DataAcceptable)
        WriteSegments(report, title, measured.NewVelocityCal, measured.Demand.size());
}

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

namespace {

const char* Verdict(const VelocityMeasurement& measured, bool passed) {
    if (passed)
        return "PASSED";
    const bool failed =
        std::any_of(measured.Channels.begin(), measured.Channels.end(), [&](const auto& channel) {
            return StateOf(channel, measured.Kind) == ChannelState::Failed;
        });
    return failed ? "FAILED" : "NOT COMPLETE";
}

} // namespace

bool CalibrationReport::Open(CalibrationKind kind) {
    m_Workbook = OpenFilled(m_Services, "Initialising Excel Report", "QX_ACU_Calibration.xlt",
                            [&](Workbook& book) { FillHeader(book.Sheet("Report"), kind); });
    return IsOpen();
}

void CalibrationReport::FillHeader(Worksheet& report, CalibrationKind kind) const {
    report.SetValue("D3", std::string(kind == CalibrationKind::Audit ? "Audit" : "System"));
    report.SetValue("D4", m_Services.ReportDate());
    report.SetValue("D5", std::string(CalibrationUser));
    report.SetValue("D6", m_Record.CalibrationPoints());
    report.SetValue("D7", std::string(m_Record.Record().m_HasSolenoidValves != 0 ? "Yes" : "No"));
    report.SetValue("J3", m_Record.SerialNumberStr());
    report.SetValue("J4", m_Record.ACUMFCNumber());
    report.SetValue("J5", m_Record.ChannelCapacity(0));
    report.SetValue("J6", m_Record.ChannelCapacity(1));
}

void CalibrationReport::Fill(const VelocityMeasurement& measured, bool passed) {
    Workbook& book = *m_Workbook.Book;
    Worksheet& report = book.Sheet("Report");
    report.SetValue("M3", std::string(Verdict(measured, passed)));
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const ChannelMeasurement& own = measured.Channels.at(channel);
        FillReportTables(report, channel, own, measured.Kind,
                         m_Record.Record().m_VelocityCal.at(channel));
        Worksheet& traces = book.Sheet(fmt::format("Traces Ch{}", channel + 1));
        FillTraces(traces, own);
        Worksheet& charts = book.Sheet("Charts");
        DrawReportCharts(charts, book.Sheet("Chart Data"), channel, own, measured.Kind);
        DrawStepCharts(charts, traces, channel, own);
    }
}

WorkbookOutcome CalibrationReport::Save(CalibrationKind kind) {
    const std::string name =
        AutoSaveName(m_Services.TheStation, m_Record, "ACU_",
                     kind == CalibrationKind::Audit ? "_Audit.xls" : "_System.xls");
    return SaveCalibrationExcelWorkbook(m_Services, m_Workbook, name, true);
}

} // namespace ombrix
