#pragma once

#include "board/Station.h"
#include "calibration/history/CalibrationHistory.h"
#include "journal/RunJournal.h"

namespace ombrix {

/// Where a reading of a journal belongs.
namespace Sweeps {
inline constexpr const char* Rising = "rising";
inline constexpr const char* Falling = "falling";
inline constexpr const char* Step = "step";
inline constexpr const char* Pressure = "pressure";
} // namespace Sweeps

/// Writes down a calibration run for later: while it goes on in its journal, and when it has ended
/// in the history of its unit. One object serves one run.
class RunRecorder {
  public:
    RunRecorder(Station& station, RunKind kind);

    /// The run begins: takes down the unit as it is. @param found the record before it was set up
    /// for the run, when it was
    void Begin(bool unattended, const ACURecord* found);
    bool Begun() const { return m_Begun; }

    // What is measured, as it is measured. A reading that is begun again replaces the one that
    // has not ended; samples outside a reading are of no use.
    void ChannelBegins(std::size_t channel, const ChannelMeasurement& measured);
    /// @param duration_s of the reading, in whose last seconds its mean lies
    void ReadingBegins(const char* sweep, std::size_t point, const PointDemand& demand,
                       double duration_s);
    void Sample(const TraceSample& sample);
    void Sample(const PressureSample& sample);
    void ReadingEnds(const PointReading& reading);
    /// The data of the channel are complete and have been judged.
    void ChannelJudged();
    /// All has been measured that will be. @param complete neither cancelled nor stopped
    void NoteMeasured(bool passed, bool complete);
    /// The unit's EPROM holds what was measured.
    void NoteStored();
    /// Whether the audit's sheet is wanted as well.
    void AuditSheet(bool wanted);

    /// The run has ended. @param entry what was measured, and the reasons of a failure; the rest
    /// is filled in. False when the history could not be written; the operator has been told.
    bool Finish(const Outcome& outcome, HistoryEntry entry);

  private:
    Station& m_Station;
    RunKind m_Kind;
    RunJournal m_Journal;
    ACURecord m_Found;
    OleDate m_Start;
    bool m_Begun = false;
    bool m_Reading = false;
    bool m_Stored = false;
};

} // namespace ombrix
