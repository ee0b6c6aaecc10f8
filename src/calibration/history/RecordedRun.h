#pragma once

#include "calibration/history/CalibrationHistory.h"
#include "calibration/judge/VelocityMeasurement.h"

#include <string_view>

namespace ombrix {

/// A run as its journal tells it.
struct RecordedRun {
    RunKind Kind = RunKind::VelocitySystem;
    bool Unattended = false;
    OleDate Start{};
    /// When everything had been measured; the start of a run that did not come to that.
    OleDate MeasuredAt{};
    ProgramIdentity Program{};
    std::int32_t Serial = 0;
    /// The unit as the run found it.
    ACURecord Unit{};
    /// As it stored the unit; nothing when it did not.
    std::optional<ACURecord> Left{};
    VelocityMeasurement Velocity{};
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
RecordedRun ReadJournal(Platform& world, std::string_view text);

} // namespace ombrix
