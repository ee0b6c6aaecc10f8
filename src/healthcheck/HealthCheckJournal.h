#pragma once

#include "board/procedure/Outcome.h"
#include "calibration/history/CalibrationHistory.h"
#include "healthcheck/HealthCheckProgramme.h"
#include "healthcheck/HealthCheckVerdict.h"
#include "healthcheck/MFCStep.h"
#include "journal/RunJournal.h"
#include "journal/UnfinishedRuns.h"
#include "reports/ReportFile.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ombrix {

/// Writes down a health check for later: while it runs in its journal, and when it has ended in the
/// history of its unit. One object serves one run.
class HealthCheckRecorder {
  public:
    explicit HealthCheckRecorder(Station& station);

    /// The run begins on the current board; before that, and without a disk that takes the
    /// journal, nothing is written down.
    /// @param limits that it will be judged by
    void Begin(std::span<const HealthCheckOption> options, const HealthCheckLimits& limits);
    void SequenceBegins(const std::string& sheet, std::span<const StepPlan> steps);
    void StepBegins(std::int32_t index);
    void Sample(const MFCStep::Sample& sample);
    /// The sequence is over. @param now the date that it is exported with
    /// @param ended how many of its steps have run to their end
    void SequenceEnds(OleDate now, std::int32_t ended);
    /// All has been measured that will be. @param outcome as the report tells it
    void Measured(const std::string& outcome);
    /// The run has ended. One that has begun a sequence joins the history. @param ended the text
    /// for the journal @param outcome of the procedure @return false when the history could not be
    /// written; the operator has been told
    bool Finish(const std::string& ended, const Outcome& outcome, HealthCheckFigures check);

  private:
    Station& m_Station;
    RunJournal m_Journal;
    JournalHeader m_Header;
    std::vector<std::string> m_Options;
    HealthCheckLimits m_Limits;
    /// Samples of the sequence that runs.
    int m_Recorded = 0;
};

/// A step of a sequence as it was run, with what it recorded.
struct RecordedStep {
    StepPlan Plan;
    std::vector<MFCStep::Sample> Samples;
    bool Ended = false;
};

/// A sequence of a journal, whole or up to where the run was cut off: its sheet in the report and
/// its steps. A step that was not reached has no samples.
struct RecordedSequence {
    std::string Sheet;
    std::vector<RecordedStep> Steps;

    std::size_t SampleCount() const;
};

/// A health check as its journal tells it.
class RecordedHealthCheck final : public JournalledRun {
  public:
    /// @param text of the journal; what a crash has cut off at its end is passed over
    /// @throws JournalError when another part is damaged, or nothing was written
    RecordedHealthCheck(ReportTools tools, std::string_view text);

    /// Samples of all sequences together.
    std::size_t SampleCount() const;

    bool Ended() const override { return m_Ended; }
    std::string Describe() const override;
    bool HasReport() const override { return !m_Sequences.empty(); }
    RemadeReport MakeReport() const override;
    bool NoteInterruption(Platform& world, const std::vector<std::string>& files) const override;

  private:
    void Take(const SingleJson& line);
    void TakeHeader(const SingleJson& line);
    void TakeSequence(const SingleJson& line);
    void TakeStep(const SingleJson& line);
    void TakeSequenceEnd(const SingleJson& line);
    void TakeSamples(const SingleJson& samples);
    void TakeMeasured(const SingleJson& line);
    void TakeEnd(const SingleJson& line);
    /// The first steps of the last sequence have run to their end.
    void EndSteps(std::size_t count);
    /// @throws std::runtime_error when the sequence has not the samples that a line tells of
    void RequireSamples(const SingleJson& line);

    ReportTools m_Tools;
    JournalHeader m_Header;
    std::vector<std::string> m_Options;
    HealthCheckLimits m_Limits;
    /// When the last whole sequence had been measured; the start of the run before that.
    OleDate m_MeasuredAt;
    /// As the report tells it.
    std::string m_Outcome;
    std::vector<RecordedSequence> m_Sequences;
    /// Steps of the last sequence that have begun.
    std::size_t m_Begun = 0;
    bool m_HasHeader = false;
    bool m_InSequence = false;
    /// The lines tell how many samples stand before them; those of older versions do not.
    std::optional<bool> m_TellSamples;
    bool m_Measured = false;
    bool m_Ended = false;
};

/// Has the journals of health checks read.
void AddHealthCheckReader(JournalReaders& readers, const ReportTools& tools);

} // namespace ombrix
