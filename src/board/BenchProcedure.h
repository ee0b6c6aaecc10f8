#pragma once

#include "board/Station.h"

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
/// meanwhile, and whatever way it ends the outputs are made safe and an error is told.
/// @param heading says what has been stopped ("The air flow test has been stopped.")
/// @param makeSafe brings the outputs to their safe state; must not throw
/// @param body returns false when the operator has cancelled
void RunBenchProcedure(Station& station, const std::string& heading,
                       const std::function<void()>& makeSafe, ProcedureOutcome& outcome,
                       const std::function<bool()>& body);

} // namespace ombrix
