#pragma once

#include "board/Station.h"
#include "board/procedure/Outcome.h"
#include "healthcheck/HealthCheckJournal.h"
#include "healthcheck/HealthCheckProgramme.h"
#include "healthcheck/HealthCheckReport.h"
#include "healthcheck/HealthCheckViews.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace ombrix {

class MFCSequence;

/// What became of one sequence.
struct SequenceResult {
    std::string Sheet;
    int Steps = 0;
    double Seconds = 0.0;
    int Samples = 0;
    /// A step's record was full before the step ended.
    bool RecordFull = false;
    /// Steps that have run to their end with samples enough to be judged by.
    int Completed = 0;
};

/// What became of a health check. Errors of the board and of the report stand in it and are not
/// thrown.
struct HealthCheckResult : Outcome {
    std::vector<SequenceResult> Sequences;
    /// As the overview of its report tells it.
    HealthCheckFigures Check;
    HealthCheckLimits Limits;
};

/// The sequence that runs, from 1.
struct RunningSequence {
    std::string Sheet;
    std::size_t Number = 0;
    std::size_t Count = 0;
};

/// Where a running health check shows; each of them may be none.
struct HealthCheckView {
    const GraphSurfaces* Graphs = nullptr;
    ValueLabels* Labels = nullptr;
    StepList* Steps = nullptr;
    /// Told the share of the whole run that is done, 0 to 1.
    std::function<void(double share)> Progress = {};
    std::function<void(const RunningSequence& sequence)> Sequence = {};
    /// Told what the check has come to, with every step that ends.
    std::function<void(const HealthCheckFigures& check)> Judged = {};
    /// Told what became of it, before the operator is.
    std::function<void(const HealthCheckResult& result)> Ended = {};
};

/// The run of a health check: its sequences one after the other on the current board, each
/// exported to the report workbook, which is saved into the ACU's folder in the end. Whatever
/// way it ends, both air channels are at zero and what was measured is saved. Then one message
/// tells how it ended, and offers to open the report.
/// One object serves one run; Station::Procedures must be free when it starts.
class HealthCheckRun {
  public:
    explicit HealthCheckRun(const ReportTools& tools);

    HealthCheckResult Run(std::span<const HealthCheckOption> options, const HealthCheckView& view);

  private:
    HealthCheckResult Conduct(std::span<const HealthCheckOption> options,
                              const HealthCheckView& view);
    void RunAll(const std::vector<SequencePlan>& plan, const HealthCheckView& view,
                HealthCheckResult& result);
    void RunOne(const SequencePlan& plan, const HealthCheckView& view, double done_s,
                double total_s, HealthCheckResult& result);
    std::function<void(std::int32_t)> Judging(const MFCSequence& sequence, const std::string& sheet,
                                              const HealthCheckView& view,
                                              const HealthCheckResult& result) const;
    Answer AskPrompt(const SequencePlan& plan);
    /// Says of a check that has come to its end whether every step can be judged.
    static void JudgeCompleteness(HealthCheckResult& result);
    static void JudgeLimits(HealthCheckResult& result);
    void Save(HealthCheckResult& result);
    void TellHowItEnded(const HealthCheckResult& result);

    Station& m_Station;
    HealthCheckRecorder m_Recorder;
    HealthCheckReport m_Report;
    /// Of the report; empty while it does not lie where it belongs.
    std::string m_SavedAs;
};

} // namespace ombrix
