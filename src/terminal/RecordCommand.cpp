#include "terminal/RecordCommand.h"

#include "benchtests/DataRecorder.h"
#include "terminal/ProcedureResult.h"
#include "terminal/ProgressBar.h"

#include <fmt/format.h>

namespace ombrix {

CommandResult RunRecord(CommandContext& context, double seconds) {
    ChosenBoard(context);
    TimedRecording recording(context.TheStation);
    ProcedureOutcome outcome;
    {
        const CancelOnInterrupt cancel(context.Events, [&recording] { recording.Cancel(); });
        ProgressBar bar;
        outcome = recording.Run(seconds, [&bar](double share) { bar.Show(share); });
    }
    CommandResult result;
    result.Json["lines"] = recording.Lines();
    result.Text = fmt::format("{} lines\n", recording.Lines());
    AddOutcome(result, outcome, "The recording");
    return result;
}

} // namespace ombrix
