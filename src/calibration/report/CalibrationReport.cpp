#include "calibration/report/CalibrationReport.h"

#include "calibration/report/ReportCharts.h"
#include "calibration/report/ReportTables.h"
#include "calibration/report/VelocitySeries.h"
#include "calibration/unit/ACUCalibration.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

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
