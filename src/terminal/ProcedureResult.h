#pragma once

#include "board/procedure/BenchProcedure.h"
#include "terminal/Command.h"

namespace ombrix {

/// Adds the key "files" and, to the readable text, a line for each file.
void AddFiles(CommandResult& result, const std::vector<std::filesystem::path>& files);

/// Status, error and files of a procedure. @param name what was cancelled ("The air flow test")
void AddOutcome(CommandResult& result, const ProcedureOutcome& outcome, const std::string& name);

} // namespace ombrix
