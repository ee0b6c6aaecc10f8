#pragma once

#include "board/procedure/Outcome.h"
#include "board/unit/ACURecord.h"
#include "calibration/judge/Measurement.h"
#include "journal/RunJournal.h"
#include "platform/ports/Platform.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ombrix {

/// What a health check has come to, as its report works it out.
struct HealthCheckFigures {
    /// The end value that is farthest from its demand.
    struct Deviation {
        /// Its sequence, by the sheet of the report.
        std::string Sheet;
        /// From 1.
        int Step = 0;
        int Channel = 0;
        /// End value less demand.
        float Percent_ofFullScale = 0.0F;
    };

    /// How its measuring ended ("Completed"); empty while it goes on.
    std::string Outcome{};
    /// Names of the tests that were chosen.
    std::vector<std::string> Options{};
    /// Steps of the sequences that were begun.
    int Steps = 0;
    int Passed = 0;
    int Failed = 0;
    /// Nothing where no step has been evaluated.
    std::optional<Deviation> Worst{};

    int NotEvaluated() const { return Steps - Passed - Failed; }
};

/// "20 of 24 steps passed, 0 failed, 4 not evaluated"
std::string CountsText(const HealthCheckFigures& check);
/// "Largest deviation 0.12 % of full scale: channel 2, step 5 of Low - Ch2"; empty without one.
std::string WorstText(const HealthCheckFigures& check);

/// One run in the history of its unit: a calibration or a health check.
struct HistoryEntry {
    RunKind Kind = RunKind::VelocitySystem;
    OleDate When{};
    /// Station and program that ran it.
    ProgramIdentity Program{};
    std::int32_t Serial = 0;
    /// Of a health check its report's: "PASS", "FAIL", "INCOMPLETE" or "NO RESULT".
    std::string Verdict{};
    std::vector<std::string> Reasons{};
    /// What was found in the unit, and what was left where the run has changed it.
    ACURecord Found{};
    std::optional<ACURecord> Left{};
    /// How the procedure has left the EPROM (EpromGuard::ChangesText); empty where nobody knows.
    std::string Eprom{};
    /// The points of a velocity run, without traces.
    VelocityMeasurement Velocity{};
    std::vector<PressureReading> Pressure{};
    HealthCheckFigures Check{};
    /// Names and values of the limits that it was judged by.
    std::vector<std::pair<std::string, float>> Limits{};
    std::vector<std::string> Files{};
    /// Its place in the history of its unit, from 1, and what tells its line from any other; 0 and
    /// empty where it stands on no line, or on one of an earlier version.
    int Number = 0;
    std::string Fingerprint{};
    /// The line of the file that it stands on.
    std::string Line{};
};

/// What is known of a unit, oldest first.
struct CalibrationHistory {
    std::vector<HistoryEntry> Runs;
    /// Lines that could not be read and were passed over.
    int DamagedLines = 0;
};

/// Adds a run to the history of its unit, a calibration with the limits that its kind is judged
/// by. False when that could not be written; the operator has been told.
bool AppendToHistory(Platform& world, HistoryEntry entry);

/// Whether the history of a run's unit holds it already, whatever its verdict there.
/// @throws DriveError
bool IsInHistory(const Drive& files, const HistoryEntry& run);

/// Serial numbers of the units that have a history, smallest first.
std::vector<std::int32_t> UnitsWithHistory(const Drive& files);

/// The history of a unit; empty for one that has none. @throws DriveError
CalibrationHistory ReadHistory(const Drive& files, std::int32_t serial);

/// A run as it stands on its line of a history, and back.
SingleJson EntryJson(const HistoryEntry& entry);
HistoryEntry EntryOf(const SingleJson& json);

/// [bits, ml/min]
SingleJson DemandJson(const PointDemand& demand);
PointDemand DemandOf(const SingleJson& json);

/// The kind by its name. @throws std::runtime_error for another one
RunKind KindOf(const SingleJson& json);

/// The limits that calibrations of a kind are judged by now; a health check has those of its
/// template.
std::vector<std::pair<std::string, float>> LimitsOf(RunKind kind);

} // namespace ombrix
