#pragma once

#include "board/DrivingProcedure.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace ombrix {

/// What became of a procedure that drives outputs and writes files.
struct ProcedureOutcome {
    /// Failed: stopped by an error. NotStored: a file could not be written.
    enum class End { Completed, Cancelled, Failed, NotStored };

    End Ended = End::Completed;
    /// Real paths of what was written, in the order of writing.
    std::vector<std::filesystem::path> Files;
    /// Why it failed or was not stored; the operator has been told.
    std::string Error;
};

/// Runs the body of such a procedure: the commands that would start another one are locked
/// meanwhile, and whatever way it ends the outputs are switched off and an error is told.
/// @param name stands for it in messages ("air flow test")
/// @param driven what the body drives; no boards for a procedure that only reads
/// @param body returns false when the operator has cancelled
void RunBenchProcedure(Station& station, const std::string& name, DrivenBoards driven,
                       ProcedureOutcome& outcome, const std::function<bool()>& body);

} // namespace ombrix
