#pragma once

#include "terminal/Command.h"

#include <filesystem>

namespace ombrix {

/// Stores the archive of diagnostics. @param file where; empty for a name in the data folder
CommandResult RunDiagnostics(CommandContext& context, const std::filesystem::path& file);

} // namespace ombrix
