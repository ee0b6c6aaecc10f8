#pragma once

#include "calibration/judge/VelocityMeasurement.h"
#include "reports/CalibrationWorkbooks.h"

#include <array>

namespace ombrix {

/// The velocity audit as a report ("PV16"): ten points of each channel with their criteria. The
/// step measurements stand below the points.
WorkbookOutcome CreateAuditSheet_PV16(const CalibrationServices& services,
                                      const clsACUCalibration& record,
                                      const VelocityMeasurement& measured, bool autoSave);

/// The pressure audit as a report ("PV17"). @param flows_ml_m the five flows that were set
WorkbookOutcome CreateAuditSheet_PV17(const CalibrationServices& services,
                                      const clsACUCalibration& record,
                                      const std::array<float, 5>& flows_ml_m, bool autoSave);

} // namespace ombrix
