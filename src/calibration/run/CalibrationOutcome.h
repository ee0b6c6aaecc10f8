#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ombrix {

/// What a calibration run came to.
struct CalibrationOutcome {
    bool Passed = false;
    /// New coefficients are in the EPROM.
    bool Saved = false;
    /// The operator has cancelled.
    bool Aborted = false;
    /// Nothing was driven: what the operator drives by hand goes on.
    bool NothingDriven = false;
    /// The operator has cancelled while the finished run was being stored: it stands, but no
    /// further one is wanted.
    bool NoFurtherRun = false;
    /// The EPROM was not to be written, or does not hold what was written; Error says why.
    bool NotInEprom = false;
    /// Why the run was stopped by an error; the operator has been told.
    std::string Error;
    /// Every log and workbook lies where it belongs.
    bool AllStored = true;
    /// Real paths of what was written, in the order of writing.
    std::vector<std::filesystem::path> Files;
};

} // namespace ombrix
