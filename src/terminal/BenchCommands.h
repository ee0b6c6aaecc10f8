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

/// The loop-through job of the test rig on the connected boards.
CommandResult RunTestRig(CommandContext& context);
/// The digital MFC link of the first board, channel 0 or 1.
CommandResult RunUartSet(CommandContext& context, std::int32_t channel, std::int32_t value);
CommandResult RunUartGet(CommandContext& context, std::int32_t channel);

/// Records the inputs and the pressure register of the board. @param seconds above 0
CommandResult RunRecord(CommandContext& context, double seconds);

} // namespace ombrix
