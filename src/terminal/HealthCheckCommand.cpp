#include "terminal/HealthCheckCommand.h"

#include "healthcheck/HealthCheckRun.h"
#include "terminal/ProcedureResult.h"
#include "terminal/ProgressBar.h"
#include "terminal/TerminalStages.h"

#include <fmt/format.h>

namespace ombrix {

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
