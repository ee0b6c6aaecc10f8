#pragma once

#include "calibration/judge/Measurement.h"
#include "reports/ReportFile.h"

#include <array>

namespace ombrix {

/// The velocity audit as a report ("PV16"): ten points of each channel with their criteria. The
/// step measurements stand below the points. @param date that the sheet bears
StoredReport CreateAuditSheet_PV16(const ReportTools& tools, const ACU& unit, OleDate date,
                                   const VelocityMeasurement& measured, bool autoSave);

/// The pressure audit as a report ("PV17"). @param flows_ml_m the five flows that were set
StoredReport CreateAuditSheet_PV17(const ReportTools& tools, const ACU& unit, OleDate date,
                                   const std::array<float, PressurePointCount>& flows_ml_m,
                                   bool autoSave);

} // namespace ombrix
