#pragma once

#include "terminal/Command.h"

#include <cstdint>
#include <filesystem>

namespace ombrix {

/// The calibrations of a unit, or of all. No board is needed. @param serial 0 for all
CommandResult RunHistory(CommandContext& context, std::int32_t serial);

/// The workbooks of a run again from its journal. No board is needed.
/// @param journal a real path; empty to list the journals of unfinished runs
CommandResult RunReport(CommandContext& context, const std::filesystem::path& journal);

/// Says in a line of standard error that there are unfinished runs, if there are.
void TellOfUnfinishedRuns(CommandContext& context);

} // namespace ombrix
