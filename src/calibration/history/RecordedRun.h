#pragma once

#include "calibration/history/CalibrationHistory.h"
#include "calibration/judge/Judgement.h"
#include "journal/UnfinishedRuns.h"
#include "reports/ReportFile.h"

#include <optional>
#include <string_view>
#include <vector>

namespace ombrix {

/// A run as its journal tells it.
struct RecordedRun {
    RunKind Kind = RunKind::VelocitySystem;
    bool Unattended = false;
    OleDate Start{};
    /// When everything had been measured; the start of a run that did not come to that.
    OleDate MeasuredAt{};
    ProgramIdentity Program{};
    /// As it was measured.
    ACU Unit{};
    /// As it was found, before it was set up for the run.
    ACURecord Found{};
    /// As it stored the unit; nothing when it did not.
    std::optional<ACURecord> Left{};
    /// Measured, and judged again with the code of the run.
    VelocityResult Velocity{};
    std::vector<PressureReading> Pressure{};
    /// Everything that was to be measured has been.
    bool Complete = false;
    bool Passed = false;
    /// What the run said of the audit's sheet; nothing when it did not come to that.
    std::optional<bool> AuditSheet{};
    /// The run came to its end, whichever way.
    bool Ended = false;
};

/// Reads the text of a calibration's journal. What a crash has cut off at its end is passed over.
/// @throws JournalError when another part is damaged, or nothing was written
RecordedRun ReadJournal(std::string_view text);

/// Has the journals of calibrations read. Their workbooks are made with the dates of the run, into
/// a folder of their own beside those of the unit.
void AddCalibrationReaders(JournalReaders& readers, const ReportTools& tools);

} // namespace ombrix
