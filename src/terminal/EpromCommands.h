#pragma once

#include "board/unit/ACURecord.h"
#include "terminal/Command.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <optional>

namespace ombrix {

/// The record with the names of its fields, without "m_". Dates are ISO 8601, null for never;
/// numbers that JSON lacks (an erased Single) are null; texts are without surrounding blanks.
nlohmann::ordered_json RecordJson(const ACURecord& record);

/// Addresses are byte addresses, 0 to 2044 in steps of 4; another one throws CommandError.
CommandResult RunEpromRead(CommandContext& context, std::int32_t address, std::int32_t words);
CommandResult RunEpromWrite(CommandContext& context, std::int32_t address, std::int32_t value);
CommandResult RunEpromFill(CommandContext& context, std::int32_t value);
CommandResult RunEpromSave(CommandContext& context, const std::filesystem::path& file);
CommandResult RunEpromRestore(CommandContext& context, const std::filesystem::path& file);
/// @param other the later content; the board's when there is none
CommandResult RunEpromDiff(CommandContext& context, const std::filesystem::path& file,
                           const std::optional<std::filesystem::path>& other);
CommandResult RunEpromShow(CommandContext& context);

} // namespace ombrix
