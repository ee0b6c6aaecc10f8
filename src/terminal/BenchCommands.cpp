#include "benchtests/AirFlowTest.h"
#include "benchtests/DataRecorder.h"
#include "benchtests/DigitalMFCTest.h"
#include "benchtests/OutputSweep.h"
#include "benchtests/SpeedTest.h"
#include "benchtests/TestRigRun.h"
#include "platform/text/SingleJson.h"
#include "platform/text/Text.h"
#include "terminal/Command.h"
#include "terminal/Commands.h"
#include "terminal/TerminalStages.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;

/// Runs a test under a progress bar.
template <class Work>
auto RunShown(const Work& work) {
    TerminalProgress bar;
    return work(BenchTestView{.Progress = [&bar](double share) { bar.Show(share); }});
}

SweepPlan PlanOf(const SweepOptions& options) {
    if (!options.Step_bits && !options.Delay_ms && !options.BothWays)
        return SweepPlan::UpperHalf();
    return SweepPlan::Stepped(options.Step_bits.value_or(SweepPlan::UsualStep_bits),
                              options.Delay_ms.value_or(SweepPlan::UsualDelay_ms),
                              options.BothWays);
}

void AddLines(CommandResult& result, std::int32_t lines) {
    result.Json["lines"] = lines;
    result.Text += fmt::format("{} lines\n", lines);
}

std::string MeansText(const DigitalMFCTable::StepMeans& means) {
    std::string text = "demand      channel 0   channel 1\n";
    for (std::int32_t step = 0; step < DigitalMFCTable::Steps; ++step) {
        const auto index = static_cast<std::size_t>(step);
        const auto shown = [index](const auto& channel) {
            const auto mean = channel.at(index);
            return mean ? FixedText(static_cast<double>(*mean), 1) : "--";
        };
        text += fmt::format("{:5} %  {:>12} {:>11}\n", DigitalMFCTable::ProfileDemand(step),
                            shown(means[0]), shown(means[1]));
    }
    return text;
}

} // namespace

CommandResult RunMFCTest(CommandContext& context) {
    ChosenBoard(context);
    DigitalMFCTest test(context.TheStation);
    const DigitalMFCResult outcome =
        RunShown([&test](const BenchTestView& view) { return test.Run(view); });
    CommandResult result;
    AddOutcome(result, outcome, "The test of the digital MFCs");
    for (const auto& channel : outcome.Means)
        result.Json["results"].push_back(NumbersJson(channel));
    if (!outcome.Files.empty()) // else nothing has been measured
        result.Text += MeansText(outcome.Means);
    return result;
}

CommandResult RunAirSweep(CommandContext& context, const SweepOptions& options) {
    ChosenBoard(context);
    OutputSweep test(context.TheStation);
    const SweepPlan plan = PlanOf(options);
    const SweepResult outcome =
        RunShown([&](const BenchTestView& view) { return test.Run(plan, view); });
    CommandResult result;
    AddOutcome(result, outcome, "The air test");
    AddLines(result, outcome.Lines);
    return result;
}

CommandResult RunAirFlowTest(CommandContext& context) {
    DetectBoards(context);
    AirFlowTest test(context.TheStation);
    const AirFlowResult outcome =
        RunShown([&test](const BenchTestView& view) { return test.TestAirFlow(view); });
    CommandResult result;
    AddOutcome(result, outcome, "The air flow test");
    if (!outcome.MissingBoards.empty())
        result.Status = ExitStatus::NoBoard;
    AddLines(result, outcome.Lines);
    return result;
}

CommandResult RunSpeedTest(CommandContext& context) {
    ChosenBoard(context);
    SpeedTest test(context.TheStation, [] {});
    const SpeedResult outcome =
        RunShown([&test](const BenchTestView& view) { return test.Run(view); });
    CommandResult result;
    AddOutcome(result, outcome, "The speed test");
    const auto add = [&result](const char* mode, std::optional<double> time_s) {
        result.Json[std::string(mode) + "Seconds"] = time_s ? Json(*time_s) : Json();
        result.Text += fmt::format("{:<8} {} s\n", mode, time_s ? FixedText(*time_s, 3) : "--");
    };
    add("analog", outcome.Analog_s);
    add("digital", outcome.Digital_s);
    return result;
}

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
    TerminalProgress m_Bar;
};

TestRigResult RunLoopThrough(CommandContext& context) {
    TerminalRig view;
    TestRigRun run(context.TheStation, view);
    return run.Run(TestRigJob::LoopThrough);
}

AIB& FirstBoard(CommandContext& context) {
    DetectBoards(context);
    return *context.TheStation.AIBList.AIB(0);
}

/// @param exchange what was tried, as the UART console names it
/// @param value what was sent or read; nothing when the board has not taken or answered it
CommandResult ExchangeResult(const std::string& exchange, std::optional<std::int32_t> value,
                             const BoardAnswer& answer) {
    CommandResult result;
    result.Json = {{"value", value ? Json(*value) : Json()},
                   {"status", answer.Code},
                   {"statusText", answer.Text()}};
    result.Text = fmt::format("{}  {}  {}\n", exchange, ShownText(value), answer.Text());
    if (!answer.Taken()) {
        result.Status = ExitStatus::NotPassed;
        result.Error = answer.MFCsNotReady
                           ? answer.Text()
                           : fmt::format("{} failed  [{}]", exchange, answer.Text());
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
    AddOutcome(result, job, "The test rig job");
    result.Json["lines"] = job.Lines;
    result.Json["steps"] = nlohmann::ordered_json::array();
    for (const TestRigStep& step : job.Steps) {
        const std::string status(RigStatusText(step.Status));
        result.Json["steps"].push_back({{"name", step.Name}, {"status", status}});
        result.Text += fmt::format("{:<28} {}\n", step.Name, status);
    }
    return result;
}

CommandResult RunUartSet(CommandContext& context, std::int32_t channel, std::int32_t value) {
    AIB& board = FirstBoard(context);
    context.TheStation.Claims.Require(board.DevSerialNum());
    const BoardAnswer answer = context.TheStation.Outputs.SetDigital(board, channel, value);
    return ExchangeResult(fmt::format("Set({})", channel),
                          answer.Taken() ? std::optional(value) : std::nullopt, answer);
}

CommandResult RunUartGet(CommandContext& context, std::int32_t channel) {
    AIB& board = FirstBoard(context);
    std::int32_t value = 0;
    const BoardAnswer answer{board.GetADC_UART(channel, value), !board.MFCReady()};
    return ExchangeResult(fmt::format("Get({})", channel),
                          answer.Taken() ? std::optional(value) : std::nullopt, answer);
}

CommandResult RunRecord(CommandContext& context, double seconds) {
    ChosenBoard(context);
    TimedRecording recording(context.TheStation);
    RecordingResult outcome;
    {
        TerminalProgress bar;
        outcome = recording.Run(seconds, [&bar](double share) { bar.Show(share); });
    }
    CommandResult result;
    result.Json["lines"] = outcome.Lines;
    result.Json["failedReadings"] = outcome.FailedReadings;
    result.Text =
        fmt::format("{} lines, {} readings failed\n", outcome.Lines, outcome.FailedReadings);
    AddOutcome(result, outcome, "The recording");
    return result;
}

} // namespace ombrix
