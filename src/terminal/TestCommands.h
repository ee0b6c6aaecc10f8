#pragma once

#include "terminal/Command.h"

#include <optional>

namespace ombrix {

/// What was asked of the sweep of the outputs; nothing of it asks for the short sweep.
struct SweepOptions {
    std::optional<std::int32_t> Step_bits;
    std::optional<std::int32_t> Delay_ms;
    bool BothWays = false;
};

CommandResult RunMFCTest(CommandContext& context);
CommandResult RunAirSweep(CommandContext& context, const SweepOptions& options);
CommandResult RunAirFlowTest(CommandContext& context);
CommandResult RunSpeedTest(CommandContext& context);

} // namespace ombrix
