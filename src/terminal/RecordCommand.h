#pragma once

#include "terminal/Command.h"

namespace ombrix {

/// Records the inputs and the pressure register of the board. @param seconds above 0
CommandResult RunRecord(CommandContext& context, double seconds);

} // namespace ombrix
