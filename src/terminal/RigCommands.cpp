#include "terminal/RigCommands.h"

#include "benchtests/TestRigRun.h"
#include "terminal/ProcedureResult.h"
#include "terminal/ProgressBar.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

/// The rig window of a terminal: one progress bar for the whole job.
class TerminalRig final : public TestRigView {
  public:
    void ShowSteps(const std::vector<TestRigStep>& steps) override { m_Steps = steps.size(); }
    void BeginProgress(const RampStep& ramp) override {
        ++m_Begun;
        m_Span_s = ramp.Duration_s();
    }
    void ShowProgress(double elapsed_s) override {
        const double done = static_cast<double>(m_Begun - 1) + elapsed_s / m_Span_s;
        m_Bar.Show(done / static_cast<double>(m_Steps));
    }

  private:
    std::size_t m_Steps = 0;
    std::size_t m_Begun = 0;
    double m_Span_s = 0.0;
    ProgressBar m_Bar;
};

TestRigResult RunLoopThrough(CommandContext& context) {
    TerminalRig view;
    TestRigRun run(context.TheStation, view);
    const CancelOnInterrupt cancel(context.Events, [&run] { run.Cancel(); });
    return run.Run(TestRigJob::LoopThrough);
}

clsAIB& FirstBoard(CommandContext& context) {
    DetectBoards(context);
    return *context.TheStation.g_AIBList.AIB(0);
}

/// @param exchange what was tried, as the UART console names it
CommandResult ExchangeResult(const std::string& exchange, std::int32_t value, AIBStatus status) {
    const std::string statusText = clsAIB::AIBErrorStr(status);
    CommandResult result;
    result.Json = {{"value", value}, {"status", status}, {"statusText", statusText}};
    result.Text = fmt::format("{}  {}  {}\n", exchange, value, statusText);
    if (status != Status::NoError) {
        result.Status = ExitStatus::NotPassed;
        result.Error = fmt::format("{} failed  [{}]", exchange, statusText);
    }
    return result;
}

} // namespace

CommandResult RunTestRig(CommandContext& context) {
    DetectBoards(context);
    if (const auto missing = TestRigRun::Missing(context.TheStation, TestRigJob::LoopThrough))
        throw CommandError(ExitStatus::NoBoard, WithPlainLineEnds(*missing));
    const TestRigResult job = RunLoopThrough(context);
    CommandResult result;
    AddOutcome(result, job.Procedure, "The test rig job");
    result.Json["lines"] = job.Lines;
    result.Json["steps"] = nlohmann::ordered_json::array();
    for (const TestRigStep& step : job.Steps) {
        const std::string status(RigStatusText(step.Status));
        result.Json["steps"].push_back({{"name", step.Name}, {"status", status}});
        result.Text += fmt::format("{:<28} {}\n", step.Name, status);
    }
    const TestRigStep* failed = job.FirstFailed();
    if (failed != nullptr && result.Status == ExitStatus::Done) {
        result.Status = ExitStatus::NotPassed;
        result.Error = failed->Remark;
    }
    return result;
}

CommandResult RunUartSet(CommandContext& context, std::int32_t channel, std::int32_t value) {
    clsAIB& board = FirstBoard(context);
    context.TheStation.Claims.Require(board.DevSerialNum());
    const AIBStatus status = board.SetDAC_UART(channel, value);
    return ExchangeResult(fmt::format("Set({})", channel), value, status);
}

CommandResult RunUartGet(CommandContext& context, std::int32_t channel) {
    std::int32_t value = 0;
    const AIBStatus status = FirstBoard(context).GetADC_UART(channel, value);
    return ExchangeResult(fmt::format("Get({})", channel), value, status);
}

} // namespace ombrix
