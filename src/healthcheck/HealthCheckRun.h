#pragma once

#include "board/Station.h"
#include "board/procedure/Outcome.h"
#include "healthcheck/HealthCheckJournal.h"
#include "healthcheck/HealthCheckProgramme.h"
#include "healthcheck/HealthCheckReport.h"
#include "healthcheck/HealthCheckViews.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace ombrix {

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
    /// How its measuring ended, as the overview of its report tells it.
    std::string OutcomeText;
    /// Every step that was chosen can be judged.
    bool Complete() const { return OutcomeText == HealthCheckLayout::Overview::Completed; }
};

/// Where a running health check shows; each of them may be none.
struct HealthCheckView {
    const GraphSurfaces* Graphs = nullptr;
    ValueLabels* Labels = nullptr;
    StepList* Steps = nullptr;
    /// Told the share of the whole run that is done, 0 to 1.
    std::function<void(double share)> Progress = {};
};

/// The run of a health check: its sequences one after the other on the current board, each
/// exported to the report workbook, which is saved into the ACU's folder in the end. Whatever
/// way it ends, both air channels are at zero and what was measured is saved.
/// One object serves one run; Station::Procedures must be free when it starts.
class HealthCheckRun {
  public:
    explicit HealthCheckRun(const ReportTools& tools);

    HealthCheckResult Run(std::span<const HealthCheckOption> options, const HealthCheckView& view);

  private:
    void RunAll(const std::vector<SequencePlan>& plan, const HealthCheckView& view,
                HealthCheckResult& result);
    void RunOne(const SequencePlan& plan, const HealthCheckView& view, double done_s,
                double total_s, HealthCheckResult& result);
    Answer AskPrompt(const SequencePlan& plan);
    /// Says of a check that has come to its end whether every step can be judged.
    void JudgeCompleteness(HealthCheckResult& result);
    void Save(HealthCheckResult& result);

    Station& m_Station;
    HealthCheckRecorder m_Recorder;
    HealthCheckReport m_Report;
};

} // namespace ombrix
