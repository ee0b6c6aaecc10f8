#include "terminal/CalibrationCommands.h"

#include "calibration/run/ACUSetUp.h"
#include "calibration/unit/ACUCalibration.h"
#include "healthcheck/HealthCheckRun.h"
#include "terminal/Command.h"
#include "terminal/TerminalStages.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;

/// The set-up commands on a terminal. While it lives, an interrupt cancels the calibration.
class TerminalSetUp {
  public:
    explicit TerminalSetUp(CommandContext& context)
        : m_Board(ChosenBoard(context)), m_Sliders(context.TheStation),
          m_Interrupt(context.Events, [this] { m_Board.Calibration().CancelCalibration(); }),
          SetUp({context.TheStation, m_Sliders, Stages, m_Wait, context.Launcher,
                 context.TemplatesFolder}) {}

    clsAIB& Board() { return m_Board; }
    float Pressure_mBar() {
        AirChannelControl air = m_Board.Calibration().Air(m_Sliders);
        return m_Board.Calibration().PressureGet_mBar(air);
    }

  private:
    clsAIB& m_Board;
    BoardDACSliders m_Sliders;
    NoWaitWindow m_Wait;
    CancelOnInterrupt m_Interrupt;

  public:
    TerminalStages Stages;
    ACUSetUp SetUp;
};

/// The status of a run that has a verdict, and why it is not "done".
template <class Outcome>
void Judge(CommandResult& result, const Outcome& outcome, bool passed) {
    if (passed && outcome.AllStored)
        return;
    result.Status = passed || outcome.NotInEprom ? ExitStatus::NotStored : ExitStatus::NotPassed;
    if (!outcome.Error.empty())
        result.Error = WithPlainLineEnds(outcome.Error);
    else if (outcome.Aborted)
        result.Error = "ACU Calibration Aborted";
    else
        result.Error = passed ? "A log or a workbook could not be stored where it belongs."
                              : "The calibration has not passed.";
}

CommandResult ResultOf(const TerminalSetUp& terminal, const CalibrationOutcome& outcome) {
    CommandResult result;
    Judge(result, outcome, outcome.Passed && !outcome.Aborted);
    result.Json = {
        {"passed", outcome.Passed}, {"saved", outcome.Saved}, {"aborted", outcome.Aborted}};
    for (const TerminalStages::Stage& stage : terminal.Stages.Stages())
        result.Text += fmt::format("{:<40} {}\n", stage.Name, stage.Result);
    AddFiles(result, outcome.Files);
    return result;
}

std::string NumberInUse(const clsACUCalibration& record) {
    const std::string number = record.ACUMFCNumber();
    return record.ACUInitialised() && number != "NOT SET" ? number : ACUSetUp::MFCNumberPlaceholder;
}

} // namespace

CommandResult RunVelocityInit(CommandContext& context, const std::string& mfcNumber) {
    TerminalSetUp terminal(context);
    std::string number =
        mfcNumber.empty() ? NumberInUse(terminal.Board().Calibration()) : mfcNumber;
    const ACUSetUp::Initialisation outcome =
        terminal.SetUp.RunACUInitialisation(number, true, false);
    CommandResult result;
    Judge(result, outcome, outcome.Passed);
    result.Json["stages"] = Json::array();
    for (const TerminalStages::Stage& stage : terminal.Stages.Stages()) {
        result.Json["stages"].push_back({{"name", stage.Name}, {"result", stage.Result}});
        result.Text += fmt::format("{:<40} {}\n", stage.Name, stage.Result);
    }
    AddFiles(result, outcome.Files);
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
    TerminalSetUp terminal(context);
    std::int32_t bits = 0;
    const AIBStatus status = terminal.Board().GetADC(2, bits);
    if (status != Status::NoError)
        throw CommandError(ExitStatus::NotPassed,
                           "The pressure input cannot be read: " + clsAIB::AIBErrorStr(status));
    const float pressure_mBar = terminal.Pressure_mBar();
    CommandResult result;
    result.Json["mBar"] = pressure_mBar;
    result.Text = fmt::format("{:.1f} mBar\n", pressure_mBar);
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
    const WorkbookOutcome outcome = terminal.SetUp.CreateACUInfoDoc();
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

CommandResult RunHealthCheckCommand(CommandContext& context,
                                    const std::vector<HealthCheckOption>& options) {
    ChosenBoard(context);
    BoardDACSliders sliders(context.TheStation);
    NoWaitWindow wait;
    HealthCheckRun run(context.TheStation, sliders, context.Launcher, wait,
                       context.TemplatesFolder);
    HealthCheckResult outcome;
    {
        const CancelOnInterrupt cancel(context.Events, [&run] { run.Cancel(); });
        ProgressBar bar;
        outcome = run.Run(options, {.Progress = [&bar](double share) { bar.Show(share); }});
    }

    CommandResult result;
    result.Json["sequences"] = nlohmann::ordered_json::array();
    for (const SequenceResult& sequence : outcome.Sequences) {
        result.Json["sequences"].push_back({{"sheet", sequence.Sheet},
                                            {"steps", sequence.Steps},
                                            {"seconds", sequence.Seconds},
                                            {"samples", sequence.Samples}});
        result.Text += fmt::format("{:<16} {:3} steps {:6} s {:6} samples{}\n", sequence.Sheet,
                                   sequence.Steps, sequence.Seconds, sequence.Samples,
                                   sequence.RecordFull ? "  (record full)" : "");
    }
    AddOutcome(result, outcome, "The health check");
    return result;
}

} // namespace ombrix
