#pragma once

#include "terminal/Command.h"

namespace ombrix {

/// The loop-through job of the test rig on the connected boards.
CommandResult RunTestRig(CommandContext& context);
/// The digital MFC link of the first board, channel 0 or 1.
CommandResult RunUartSet(CommandContext& context, std::int32_t channel, std::int32_t value);
CommandResult RunUartGet(CommandContext& context, std::int32_t channel);

} // namespace ombrix
