#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ombrix {

/// What became of a procedure that drives outputs and writes files.
struct ProcedureOutcome {
    /// Failed: stopped by an error. NotStored: a file could not be written, or not where it
    /// belongs.
    enum class End { Completed, Cancelled, Failed, NotStored };

    End Ended = End::Completed;
    /// Real paths of what was written, in the order of writing.
    std::vector<std::filesystem::path> Files = {};
    /// Why it failed or was not stored; the operator has been told.
    std::string Error = {};
};

/// How it ended, as logs and journals tell it: "failed: The board does not answer".
std::string EndOf(const ProcedureOutcome& outcome);

} // namespace ombrix
