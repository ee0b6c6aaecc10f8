#pragma once

#include "benchtests/LoopThroughCheck.h"
#include "benchtests/RampLog.h"
#include "board/procedure/BenchProcedure.h"
#include "board/procedure/ProcedureWait.h"

#include <optional>

namespace ombrix {

/// A step of the job as the operator sees it.
struct TestRigStep {
    std::string Name;
    RigStatus Status = RigStatus::Queued;
    /// What was wrong with a failed one.
    std::string Remark;
};

/// What became of a job of the test rig. A step can fail although the procedure has completed: its
/// check was not passed.
struct TestRigResult {
    ProcedureOutcome Procedure;
    std::vector<TestRigStep> Steps;
    /// Samples in the file; each step begins it anew.
    std::int64_t Lines = 0;

    /// None when no step has failed.
    const TestRigStep* FirstFailed() const;
};

/// Where a job of the test rig shows.
class TestRigView {
  public:
    virtual ~TestRigView() = default;

    /// The list of the steps, whenever one of them has another status.
    virtual void ShowSteps(const std::vector<TestRigStep>& steps) = 0;
    virtual void BeginProgress(const RampStep& ramp) = 0;
    virtual void ShowProgress(double elapsed_s) = 0;
};

/// The run of a test rig job on the detected boards. However it ends, every output of every
/// board is at zero. One object serves one run; Station::Procedures must be free when it starts.
class TestRigRun {
  public:
    static constexpr double SampleInterval_s = 0.05;

    TestRigRun(Station& station, TestRigView& view);

    /// What a job needs and is not there; nothing when it can run.
    static std::optional<std::string> Missing(Station& station, std::int32_t kind);

    TestRigResult Run(std::int32_t kind);
    /// Ends the level and the job at the next pass.
    void Cancel() { m_Cancel.Request(); }

  private:
    bool RunSteps(const std::vector<RampStep>& ramps);
    bool RunJobStep(const RampStep& ramp, TestRigStep& step);
    bool RunRamp(const RampStep& ramp, RampLog& log, LoopThroughCheck& check);
    void SetOutputs(const RampStep& ramp, std::int32_t value_bits);
    void ZeroAllOutputs();
    void SetStatus(TestRigStep& step, RigStatus status);
    clsAIB& Board(std::int32_t index) { return *m_Boards.at(static_cast<std::size_t>(index)); }

    Station& m_Station;
    TestRigView& m_View;
    Cancellation m_Cancel;
    ProcedureWait m_Wait;
    std::vector<std::shared_ptr<clsAIB>> m_Boards;
    TestRigResult m_Result;
};

} // namespace ombrix
