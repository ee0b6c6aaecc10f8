#pragma once

#include "board/procedure/DrivingProcedure.h"
#include "board/procedure/ProcedureOutcome.h"

#include <functional>
#include <string>

namespace ombrix {

/// Runs the body of a procedure that drives outputs and writes files: the commands that would start
/// another one are locked meanwhile, and whatever way it ends the outputs are switched off and an
/// error is told.
/// @param name stands for it in messages ("air flow test")
/// @param driven what the body drives; no boards for a procedure that only reads
/// @param body returns false when the operator has cancelled
void RunBenchProcedure(Station& station, const std::string& name, DrivenBoards driven,
                       ProcedureOutcome& outcome, const std::function<bool()>& body);

} // namespace ombrix
