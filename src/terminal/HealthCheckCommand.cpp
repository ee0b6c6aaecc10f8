#include "terminal/HealthCheckCommand.h"

#include "healthcheck/HealthCheckRun.h"
#include "terminal/ProcedureResult.h"
#include "terminal/ProgressBar.h"
#include "terminal/TerminalStages.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

ExitStatus StatusOf(HealthCheckResult::Outcome outcome) {
    switch (outcome) {
    case HealthCheckResult::Outcome::Completed: return ExitStatus::Done;
    case HealthCheckResult::Outcome::NotSaved: return ExitStatus::NotStored;
    default: return ExitStatus::NotPassed;
    }
}

} // namespace

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
    result.Status = StatusOf(outcome.End);
    result.Error = WithPlainLineEnds(outcome.Error);
    if (outcome.End == HealthCheckResult::Outcome::Cancelled)
        result.Error = "The health check has been cancelled." +
                       (result.Error.empty() ? "" : "\n\n" + result.Error);
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
    AddFiles(result, outcome.Files);
    return result;
}

} // namespace ombrix
