#pragma once

#include "calibration/judge/VelocityMeasurement.h"
#include "calibration/unit/ACURecord.h"
#include "reports/CalibrationWorkbooks.h"
#include "spreadsheet/Spreadsheet.h"

namespace ombrix {

/// Fills a channel's part of the report sheet: points, best fit, steps and segments.
/// @param stored the channel's table in the EPROM; an audit shows it in place of a new one
void FillReportTables(Worksheet& report, std::size_t channel, const ChannelMeasurement& measured,
                      CalibrationKind kind, const ACUChannelCal& stored);

/// Fills a channel's sheet of traces: times and readings of every sweep and step.
void FillTraces(Worksheet& traces, const ChannelMeasurement& measured);

/// The general report of a velocity run: tables, traces and charts of both channels. A run goes
/// on without one when the template cannot be opened.
class CalibrationReport {
  public:
    CalibrationReport(const CalibrationServices& services, const clsACUCalibration& record)
        : m_Services(services), m_Record(record) {}

    /// Opens the template and fills the header. False when there is none; the operator has
    /// been told.
    bool Open(CalibrationKind kind);
    bool IsOpen() const { return static_cast<bool>(m_Workbook); }
    /// Readings that were not taken leave their cells empty. @throws SpreadsheetError
    void Fill(const VelocityMeasurement& measured, bool passed);
    /// Stores it in the automatic save folder.
    WorkbookOutcome Save(CalibrationKind kind);

  private:
    void FillHeader(Worksheet& report, CalibrationKind kind) const;

    const CalibrationServices& m_Services;
    const clsACUCalibration& m_Record;
    OpenedWorkbook m_Workbook;
};

} // namespace ombrix
