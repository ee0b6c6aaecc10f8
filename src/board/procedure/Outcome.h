#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ombrix {

/// How a procedure ended, from good to bad. Stage window, terminal, history, journal, log and exit
/// status all read this.
enum class End {
    /// What has no verdict of its own has run to its end.
    Passed,
    /// Ran to its end, and what was measured is not good.
    Failed,
    /// The operator has cancelled.
    Cancelled,
    /// An error has stopped it.
    Stopped,
    /// What it was to leave behind could not be stored.
    NotStored,
};

/// What became of a procedure.
struct Outcome {
    End Ended = End::Passed;
    /// Why it did not pass; the operator has been told.
    std::string Error = {};
    /// Real paths of what was written, in the order of writing.
    std::vector<std::filesystem::path> Files = {};
    /// Every log and workbook lies where it belongs.
    bool AllStored = true;
    /// What to tell the operator of a file that goes on elsewhere, when the outputs are off.
    std::string KeptElsewhere = {};
};

// The texts of an end, each for its readers.

/// Of a run with a verdict, in the history: "passed", "failed", "cancelled", "stopped", "not
/// stored".
const char* VerdictOf(End ended);
/// The same in the log, with the reason: "stopped: The board does not answer".
std::string VerdictText(const Outcome& outcome);
/// Of a stage of the stage window: "Run: Passed", "Run: Failed", "Aborted".
const char* StageResult(End ended);
/// On the line below a bench test's command: "Complete", "Cancelled", "Not stored", "Stopped".
const char* StageText(End ended);

/// Of a procedure without a verdict, in logs and journals: "completed",
/// "failed: The board does not answer".
std::string EndText(const Outcome& outcome);

} // namespace ombrix
