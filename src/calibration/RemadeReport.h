#pragma once

#include "calibration/CalibrationServices.h"
#include "calibration/RecordedRun.h"

#include <filesystem>
#include <vector>

namespace ombrix {

/// What became of workbooks that were made again.
struct RemadeReport {
    /// Real paths, in the order of writing.
    std::vector<std::filesystem::path> Files;
    /// Every workbook that the run makes lies where it belongs.
    bool AllStored = true;
};

/// A kind of run that makes a workbook; a pressure system calibration has its log alone.
constexpr bool MakesWorkbooks(RunKind kind) {
    return kind != RunKind::PressureSystem;
}

/// Makes the workbooks of a run again from its journal, or those of a run that was cut off for the
/// first time, with the dates of the run. They go into a folder of their own beside those of the
/// unit, so that they replace nothing; no board is needed.
RemadeReport MakeReport(const CalibrationServices& services, const RecordedRun& run);

} // namespace ombrix
