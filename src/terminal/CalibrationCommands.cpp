#include "board/unit/RecordCoding.h"
#include "calibration/air/AirChannelControl.h"
#include "calibration/run/ACUSetUp.h"
#include "healthcheck/HealthCheckRun.h"
#include "platform/text/SingleJson.h"
#include "terminal/Command.h"
#include "terminal/Commands.h"
#include "terminal/TerminalStages.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;

/// The set-up commands on a terminal.
struct TerminalSetUp {
    /// Makes the chosen board current.
    explicit TerminalSetUp(CommandContext& context) : SetUp(context.Reports, Stages) {
        ChosenBoard(context);
    }

    TerminalStages Stages;
    ACUSetUp SetUp;
};

/// The status of a run that has a verdict, and why it is not "done".
void Judge(CommandResult& result, const CalibrationOutcome& outcome) {
    result.Status = StatusOf(outcome);
    if (!outcome.Error.empty())
        result.Error = WithPlainLineEnds(outcome.Error);
    else if (outcome.Ended == End::Cancelled)
        result.Error = "ACU Calibration Aborted";
    else if (outcome.Ended == End::Failed)
        result.Error = "The calibration has not passed.";
    else if (outcome.Ended == End::NotStored)
        result.Error = outcome.Eprom;
    else if (result.Status == ExitStatus::NotStored)
        result.Error = "A log or a workbook could not be stored where it belongs.";
}

/// What became of the unit's EPROM, and the files.
void AddLeft(CommandResult& result, const CalibrationOutcome& outcome) {
    result.Json["eprom"] = outcome.Eprom;
    result.Text += outcome.Eprom + "\n";
    AddFiles(result, outcome.Files);
}

CommandResult ResultOf(const TerminalSetUp& terminal, const CalibrationOutcome& outcome) {
    CommandResult result;
    Judge(result, outcome);
    result.Json = {{"passed", outcome.Passed},
                   {"saved", outcome.Saved},
                   {"aborted", outcome.Ended == End::Cancelled}};
    for (const TerminalStages::Stage& stage : terminal.Stages.Stages())
        result.Text += fmt::format("{:<40} {}\n", stage.Name, stage.Result);
    AddLeft(result, outcome);
    return result;
}

std::string NumberInUse(const ACURecord& record) {
    const std::string number = record.ACUMFCNumber();
    return record.ACUInitialised && number != "NOT SET" ? number : ACUSetUp::MFCNumberPlaceholder;
}

} // namespace

CommandResult RunVelocityInit(CommandContext& context, const std::string& mfcNumber) {
    if (!mfcNumber.empty())
        RequireMFCNumber(mfcNumber);
    TerminalSetUp terminal(context);
    context.TheStation.Calibration().RequireRecord();
    std::string number =
        mfcNumber.empty() ? NumberInUse(context.TheStation.Calibration().Record()) : mfcNumber;
    if (number == ACUSetUp::MFCNumberPlaceholder && context.Messages.Unattended())
        throw CommandError(ExitStatus::WrongUsage,
                           "The unit has no MFC number yet: give it with --mfc-number.");
    const ACUSetUp::Initialisation outcome =
        terminal.SetUp.RunACUInitialisation(number, true, false);
    CommandResult result;
    Judge(result, outcome);
    result.Json["stages"] = Json::array();
    for (const TerminalStages::Stage& stage : terminal.Stages.Stages()) {
        result.Json["stages"].push_back({{"name", stage.Name}, {"result", stage.Result}});
        result.Text += fmt::format("{:<40} {}\n", stage.Name, stage.Result);
    }
    AddLeft(result, outcome);
    return result;
}

CommandResult RunVelocityCalibration(CommandContext& context, CalibrationKind kind) {
    TerminalSetUp terminal(context);
    return ResultOf(terminal, terminal.SetUp.RunVelocity(kind));
}

CommandResult RunPressureCalibration(CommandContext& context, CalibrationKind kind) {
    TerminalSetUp terminal(context);
    return ResultOf(terminal, terminal.SetUp.RunPressure(kind));
}

CommandResult RunPressure(CommandContext& context) {
    ChosenBoard(context);
    context.TheStation.Calibration().RequireRecord();
    BoardAnswer answer;
    const auto pressure_mBar = AirChannelControl(context.TheStation).PressureGet_mBar(&answer);
    if (!pressure_mBar)
        throw CommandError(ExitStatus::NotPassed,
                           "The pressure input cannot be read: " + answer.Text());
    CommandResult result;
    if (context.TheStation.Calibration().Record().PressureScale == 0.0F) {
        result.Json["mBar"] = nullptr;
        result.Text = "not calibrated\n";
        return result;
    }
    result.Json["mBar"] = NumberJson(*pressure_mBar);
    result.Text = fmt::format("{:.1f} mBar\n", *pressure_mBar);
    return result;
}

CommandResult RunSensor(CommandContext& context, const std::string& sensor) {
    constexpr const char* none = "none";
    TerminalSetUp terminal(context);
    CommandResult result;
    try {
        terminal.SetUp.DeclarePressureSensor(sensor == none ? 0 : std::stoi(sensor));
    } catch (const EpromMismatch& mismatch) {
        result.Status = ExitStatus::NotStored;
        result.Error = WithPlainLineEnds(mismatch.what());
    }
    ACURecord stored;
    ReadEPROMValues_Pressure(*context.TheStation.CurrentAIB, stored);
    const std::int32_t fullScale_mBar = stored.PressureSensor();
    result.Json["sensor"] = fullScale_mBar == 0 ? none : std::to_string(fullScale_mBar);
    result.Text = fmt::format("Pressure sensor: {}\n", SensorText(fullScale_mBar));
    return result;
}

CommandResult RunClearPressure(CommandContext& context) {
    TerminalSetUp terminal(context);
    CommandResult result;
    if (!terminal.SetUp.ClearPressure([](std::int32_t) {})) {
        result.Status = ExitStatus::NotPassed;
        result.Error = "The pressure calibration has not been cleared.";
    }
    return result;
}

CommandResult RunInfoWorkbook(CommandContext& context) {
    TerminalSetUp terminal(context);
    const InformationReport outcome = terminal.SetUp.CreateACUInfoDoc();
    CommandResult result;
    if (!outcome.WhereItBelongs) {
        result.Status = ExitStatus::NotStored;
        result.Error = "The ACU information workbook could not be stored where it belongs.";
    } else if (!outcome.Lack.empty()) {
        result.Status = ExitStatus::NotPassed;
        result.Error = outcome.Lack;
    }
    AddFiles(result,
             outcome.File ? std::vector{*outcome.File} : std::vector<std::filesystem::path>{});
    return result;
}

namespace {

void AddVerdict(CommandResult& result, const HealthCheckFigures& check) {
    result.Json["complete"] = IsComplete(check);
    result.Json["outcome"] = check.Outcome;
    result.Json["verdict"] = VerdictOf(check);
    result.Json["stepsPassed"] = check.Passed;
    result.Json["stepsFailed"] = check.Failed;
    result.Json["stepsNotEvaluated"] = check.NotEvaluated();
    result.Text += fmt::format("{}: {}\n", VerdictOf(check),
                               IsComplete(check) ? CountsText(check) : check.Outcome);
    if (check.Worst)
        result.Text += WorstText(check) + "\n";
}

} // namespace

CommandResult RunHealthCheckCommand(CommandContext& context,
                                    const std::vector<HealthCheckOption>& options) {
    ChosenBoard(context);
    HealthCheckRun run(context.Reports);
    HealthCheckResult outcome;
    {
        TerminalProgress bar;
        outcome = run.Run(options, {.Progress = [&bar](double share) { bar.Show(share); }});
    }

    CommandResult result;
    result.Json["sequences"] = Json::array();
    for (const SequenceResult& sequence : outcome.Sequences) {
        result.Json["sequences"].push_back({{"sheet", sequence.Sheet},
                                            {"steps", sequence.Steps},
                                            {"seconds", sequence.Seconds},
                                            {"samples", sequence.Samples},
                                            {"completed", sequence.Completed}});
        result.Text += fmt::format("{:<16} {:3} steps {:6} s {:6} samples{}{}\n", sequence.Sheet,
                                   sequence.Steps, sequence.Seconds, sequence.Samples,
                                   sequence.RecordFull ? "  (record full)" : "",
                                   sequence.Completed == sequence.Steps
                                       ? ""
                                       : fmt::format("  ({} completed)", sequence.Completed));
    }
    AddVerdict(result, outcome.Check);
    AddOutcome(result, outcome, "The health check");
    return result;
}

} // namespace ombrix
