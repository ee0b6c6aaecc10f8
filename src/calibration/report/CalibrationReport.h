#pragma once

#include "calibration/judge/Judgement.h"
#include "reports/ReportFile.h"

namespace ombrix {

/// Of a new table that did not reach the unit.
inline constexpr const char* TableNotStored = "Table not stored in the EPROM";

/// The general report of a velocity run: tables, traces and charts of both channels. A run goes
/// on without one when the template cannot be opened.
class CalibrationReport {
  public:
    explicit CalibrationReport(const ReportTools& tools) : m_Tools(tools) {}

    /// Opens the template and fills the header. False when there is none; the operator has
    /// been told. @param unit as the run finds it @param date that the report bears
    bool Open(CalibrationKind kind, const ACU& unit, OleDate date);
    bool IsOpen() const { return static_cast<bool>(m_Workbook); }
    /// Readings that were not taken leave their cells empty. @throws SpreadsheetError
    void Fill(const VelocityResult& result, bool passed);
    /// Says below the verdict what became of a table that is not known to be in the unit.
    void SayNotStored(const std::string& text);
    /// Stores it in the automatic save folder.
    StoredReport Save(CalibrationKind kind);

  private:
    const ReportTools& m_Tools;
    ACU m_Unit;
    OpenedWorkbook m_Workbook;
};

} // namespace ombrix
