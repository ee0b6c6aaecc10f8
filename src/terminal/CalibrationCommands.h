#pragma once

#include "calibration/judge/Measurement.h"
#include "healthcheck/HealthCheckProgramme.h"
#include "terminal/Command.h"

#include <string>
#include <vector>

namespace ombrix {

/// The calibrations and set-up commands of the terminal program.

/// @param mfcNumber the number to write; empty to keep the record's or be asked for one
CommandResult RunVelocityInit(CommandContext& context, const std::string& mfcNumber);
CommandResult RunVelocityCalibration(CommandContext& context, CalibrationKind kind);
CommandResult RunPressureCalibration(CommandContext& context, CalibrationKind kind);
/// The present pressure.
CommandResult RunPressure(CommandContext& context);
CommandResult RunClearPressure(CommandContext& context);
CommandResult RunInfoWorkbook(CommandContext& context);

CommandResult RunHealthCheckCommand(CommandContext& context,
                                    const std::vector<HealthCheckOption>& options);

} // namespace ombrix
