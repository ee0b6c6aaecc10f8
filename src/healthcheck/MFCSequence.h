#pragma once

#include "board/Station.h"
#include "board/procedure/ProcedureWait.h"
#include "healthcheck/MFCStep.h"

#include <deque>
#include <functional>
#include <span>
#include <string>

namespace ombrix {

class HealthCheckRecorder;
class Workbook;
class Worksheet;

/// Where a running sequence shows and is written down; each of them may be none.
struct SequenceView {
    const GraphSurfaces* Graphs = nullptr;
    ValueLabels* Labels = nullptr;
    StepList* Steps = nullptr;
    /// Told the seconds since the start of the sequence with each sample.
    std::function<void(double elapsed_s)> Progress = {};
    /// Told of each step that will not be measured any further, from 0: it has run to its end, or
    /// the sequence has ended before.
    std::function<void(std::int32_t index)> StepEnded = {};
    HealthCheckRecorder* Recorder = nullptr;
};

/// An ordered list of timed steps that runs as one programme against one timer.
class MFCSequence {
  public:
    /// Appends a step. Demands are fractions of full scale, 0 to 1.
    void AddStep(float ch1Demand, float ch2Demand, float duration_s);
    std::int32_t StepCount() const { return static_cast<std::int32_t>(m_Steps.size()); }
    /// @throws std::out_of_range
    const MFCStep& Step(std::int32_t index) const;
    /// Length of the whole sequence. @throws std::out_of_range without steps
    float TotalTime_s() const;
    /// Samples of all steps together.
    std::int32_t SampleCount() const;
    bool RecordFull() const;
    /// Steps that have run to their end.
    std::int32_t EndedCount() const;
    /// Those of them that can be judged.
    std::int32_t MeasuredCount() const;

    /// Runs the steps on the current board, returns both channels to zero, and exports what was
    /// recorded to the workbook if there is one, also when the run ended early. False when the
    /// operator ended it. @param overviewRow where the overview goes on; advanced
    /// @throws BoardError, SpreadsheetError
    bool RunSequence(Station& station, ProcedureWait& wait, const SequenceView& view,
                     Workbook* workbook, const std::string& sheetName, std::int32_t& overviewRow);

    /// Adds samples that were recorded earlier to a step of a sequence that is not run.
    /// @param ended the step ran to its end @throws std::out_of_range
    void AddSamples(std::int32_t index, std::span<const MFCStep::Sample> samples, bool ended);
    /// Writes what was recorded. @param now the date of the report @throws SpreadsheetError
    void ExportToWorkbook(const ACU& unit, OleDate now, Workbook& workbook,
                          const std::string& sheetName, std::int32_t& overviewRow) const;

  private:
    void DrawGraphTemplate(const GraphSurfaces& graphs) const;
    void DrawExpectedDemand(GraphSurface& surface, std::int32_t channel) const;
    void FillStepList(StepList& steps) const;
    std::string StepText(std::int32_t index) const;
    bool RunSteps(Station& station, ProcedureWait& wait, const SequenceView& view);
    static void TellEnd(std::int32_t index, const SequenceView& view);

    void ExportOverviewBlock(Worksheet& overview, std::int32_t& row) const;

    /// Steps refer to the one before them, so they never move.
    std::deque<MFCStep> m_Steps;
};

} // namespace ombrix
