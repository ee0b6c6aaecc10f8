#pragma once

#include "calibration/history/CalibrationHistory.h"
#include "calibration/judge/VelocityMeasurement.h"
#include "journal/UnfinishedRuns.h"

#include <string_view>
#include <utility>

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

/// A calibration as its journal tells it.
class RecordedCalibration final : public JournalledRun {
  public:
    explicit RecordedCalibration(RecordedRun run) : m_Run(std::move(run)) {}

    bool Ended() const override { return m_Run.Ended; }
    std::string Describe() const override;
    bool HasReport() const override;
    RemadeReport MakeReport(const CalibrationServices& services) const override;
    /// Adds it to the history of its unit.
    bool NoteInterruption(Platform& world, const std::vector<std::string>& files) const override;

  private:
    RecordedRun m_Run;
};

/// A kind of run that makes a workbook; a pressure system calibration has its log alone.
constexpr bool MakesWorkbooks(RunKind kind) {
    return kind != RunKind::PressureSystem;
}

/// Makes the workbooks of a run again from its journal, or those of a run that was cut off for the
/// first time, with the dates of the run. They go into a folder of their own beside those of the
/// unit, so that they replace nothing; no board is needed.
RemadeReport MakeReport(const CalibrationServices& services, const RecordedRun& run);

} // namespace ombrix
