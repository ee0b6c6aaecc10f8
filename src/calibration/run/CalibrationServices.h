#pragma once

#include "board/DACSliders.h"
#include "board/Station.h"
#include "calibration/run/CalibrationView.h"
#include "reports/ReportFile.h"

#include <functional>
#include <optional>
#include <string>

namespace ombrix {

/// What calibrations and their reports work with, beside the record itself.
struct CalibrationServices {
    Station& TheStation;
    DACSliders& Sliders;
    CalibrationView& Stages;
    OpenExcelView& Wait;
    SpreadsheetLauncher Launcher;
    /// Folder of the report templates, ended by a backslash.
    std::string Templates;
    /// The date that reports bear when they are made later than what they report.
    std::optional<OleDate> DateOfReports = {};

    /// Switches the air off at once, when a run is stopped by an error.
    std::function<void()> AirOff = [] {};

    OleDate ReportDate() const { return DateOfReports.value_or(TheStation.World.Time.Now()); }
};

} // namespace ombrix
