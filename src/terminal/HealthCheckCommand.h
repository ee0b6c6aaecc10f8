#pragma once

#include "healthcheck/HealthCheckProgramme.h"
#include "terminal/Command.h"

#include <vector>

namespace ombrix {

CommandResult RunHealthCheckCommand(CommandContext& context,
                                    const std::vector<HealthCheckOption>& options);

} // namespace ombrix
