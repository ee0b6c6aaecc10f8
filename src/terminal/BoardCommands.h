#pragma once

#include "terminal/Command.h"

#include <filesystem>

namespace ombrix {

CommandResult RunDetect(CommandContext& context);
CommandResult RunInfo(CommandContext& context);
CommandResult RunSelfTest(CommandContext& context);
CommandResult RunAdc(CommandContext& context);
/// @param channel 0 to 3 @param value held to what the panel sends
CommandResult RunDac(CommandContext& context, std::int32_t channel, std::int32_t value);
/// @param setup "analog", "both" or "digital" @param serial 1 to 999
CommandResult RunIdentity(CommandContext& context, std::int32_t serial, const std::string& setup);
CommandResult RunMFCNumber(CommandContext& context, const std::string& number);

/// Stores the archive of diagnostics. @param file where; empty for a name in the data folder
CommandResult RunDiagnostics(CommandContext& context, const std::filesystem::path& file);

} // namespace ombrix
