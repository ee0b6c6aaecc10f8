#pragma once

#include "calibration/history/RecordedRun.h"
#include "journal/JournalledRun.h"

namespace ombrix {

/// A kind of run that makes a workbook; a pressure system calibration has its log alone.
constexpr bool MakesWorkbooks(RunKind kind) {
    return kind != RunKind::PressureSystem;
}

/// Makes the workbooks of a run again from its journal, or those of a run that was cut off for the
/// first time, with the dates of the run. They go into a folder of their own beside those of the
/// unit, so that they replace nothing; no board is needed.
RemadeReport MakeReport(const CalibrationServices& services, const RecordedRun& run);

} // namespace ombrix
