#pragma once

#include "calibration/judge/Measurement.h"
#include "healthcheck/HealthCheckProgramme.h"
#include "terminal/Command.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// The commands of the terminal program, each with what its arguments say.
namespace ombrix {

// Boards: BoardCommands.cpp

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

// The EPROM: EpromCommands.cpp

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

// Calibrations and what prepares a unit: CalibrationCommands.cpp

/// @param mfcNumber the number to write; empty to keep the record's or be asked for one
CommandResult RunVelocityInit(CommandContext& context, const std::string& mfcNumber);
CommandResult RunVelocityCalibration(CommandContext& context, CalibrationKind kind);
CommandResult RunPressureCalibration(CommandContext& context, CalibrationKind kind);
/// The present pressure.
CommandResult RunPressure(CommandContext& context);
/// @param sensor "none", "400" or "1000": its full scale in mBar
CommandResult RunSensor(CommandContext& context, const std::string& sensor);
CommandResult RunClearPressure(CommandContext& context);
CommandResult RunInfoWorkbook(CommandContext& context);

CommandResult RunHealthCheckCommand(CommandContext& context,
                                    const std::vector<HealthCheckOption>& options);

// Bench tests, the test rig, recordings: BenchCommands.cpp

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

// Report templates: TemplateCommands.cpp

/// What a report would keep, lack or refuse of a template. No board is needed. @param file a real
/// path
CommandResult RunTemplateCheck(CommandContext& context, const std::filesystem::path& file);

// What earlier runs have left: HistoryCommands.cpp

/// The calibrations of a unit, or of all. No board is needed. @param serial 0 for all
CommandResult RunHistory(CommandContext& context, std::int32_t serial);
/// How the units stand. @param dueOnly those that are to be calibrated again by now
CommandResult RunUnits(CommandContext& context, bool dueOnly, bool asCsv);
/// Checks the fingerprints of the history of a unit, 0 for every one.
CommandResult RunVerifyHistory(CommandContext& context, std::int32_t serial);

/// The workbooks of a run again from its journal. No board is needed.
/// @param journal a real path; empty to list the journals of unfinished runs
CommandResult RunReport(CommandContext& context, const std::filesystem::path& journal);

/// Says in a line of standard error that there are unfinished runs, if there are.
void TellOfUnfinishedRuns(CommandContext& context);

} // namespace ombrix
