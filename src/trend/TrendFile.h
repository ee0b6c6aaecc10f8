#pragma once

#include "spreadsheet/LibreOfficeConverter.h"
#include "trend/TrendData.h"

#include <atomic>
#include <filesystem>
#include <stdexcept>

namespace ombrix {

/// How far some long work is, and whether it is still wanted: for the thread that does it and
/// the one that shows it.
struct TrendProgress {
    /// 0 to 1.
    std::atomic<float> Share{0.0F};
    /// The work ends early; what it has come to is thrown away.
    std::atomic<bool> Cancelled{false};
};

/// A file cannot be shown. The text names the file, where there is one the line, and the remedy.
class TrendFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads a file of whatever kind: recordings, sweeps, air flow, digital MFC and rig tests (.csv),
/// journals of runs (.jsonl), reports of health checks and calibrations (.xlsx, and .xls by way of
/// the converter). Kinds are told apart by what the files begin with. Lines that are damaged are
/// passed over and remarked. Needs nothing of the program: it may run on a thread of its own.
/// @param current the scales to be used where the file has none of its own
/// @throws TrendFileError
TrendData ReadTrendFile(const std::filesystem::path& path, const TrendScales& current,
                        DocumentConverter& converter, TrendProgress& progress);

} // namespace ombrix
