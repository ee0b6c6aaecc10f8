#include "terminal/TestCommands.h"

#include "benchtests/AirFlowTest.h"
#include "benchtests/DigitalMFCTest.h"
#include "benchtests/OutputSweep.h"
#include "benchtests/SpeedTest.h"
#include "terminal/ProcedureResult.h"
#include "terminal/ProgressBar.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;

/// Runs a test under a progress bar; an interrupt cancels it meanwhile.
template <class Test, class Work>
auto RunShown(CommandContext& context, Test& test, const Work& work) {
    const CancelOnInterrupt cancel(context.Events, [&test] { test.Cancel(); });
    ProgressBar bar;
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

std::string MeansText(const DigitalMFCRecord::StepMeans& means) {
    std::string text = "demand      channel 0   channel 1\n";
    for (std::int32_t step = 0; step < DigitalMFCRecord::Steps; ++step) {
        const auto index = static_cast<std::size_t>(step);
        text += fmt::format("{:5} %  {:12.1f} {:11.1f}\n", DigitalMFCRecord::ProfileDemand(step),
                            means[0].at(index), means[1].at(index));
    }
    return text;
}

} // namespace

CommandResult RunMFCTest(CommandContext& context) {
    ChosenBoard(context);
    BoardDACSliders sliders(context.TheStation);
    DigitalMFCTest test(context.TheStation, sliders);
    const DigitalMFCResult outcome =
        RunShown(context, test, [&test](const BenchTestView& view) { return test.Run(view); });
    CommandResult result;
    AddOutcome(result, outcome.Outcome, "The test of the digital MFCs");
    result.Json["results"] = outcome.Means;
    if (!outcome.Outcome.Files.empty()) // else nothing has been measured
        result.Text += MeansText(outcome.Means);
    return result;
}

CommandResult RunAirSweep(CommandContext& context, const SweepOptions& options) {
    ChosenBoard(context);
    BoardDACSliders sliders(context.TheStation);
    OutputSweep test(context.TheStation, sliders);
    const SweepPlan plan = PlanOf(options);
    const SweepResult outcome =
        RunShown(context, test, [&](const BenchTestView& view) { return test.Run(plan, view); });
    CommandResult result;
    AddOutcome(result, outcome.Outcome, "The air test");
    AddLines(result, outcome.Lines);
    return result;
}

CommandResult RunAirFlowTest(CommandContext& context) {
    DetectBoards(context);
    BoardDACSliders sliders(context.TheStation);
    AirFlowTest test(context.TheStation, sliders);
    const AirFlowResult outcome = RunShown(
        context, test, [&test](const BenchTestView& view) { return test.TestAirFlow(view); });
    CommandResult result;
    AddOutcome(result, outcome.Outcome, "The air flow test");
    if (!outcome.MissingBoards.empty())
        result.Status = ExitStatus::NoBoard;
    AddLines(result, outcome.Lines);
    return result;
}

CommandResult RunSpeedTest(CommandContext& context) {
    ChosenBoard(context);
    BoardDACSliders sliders(context.TheStation);
    SpeedTest test(context.TheStation, sliders, [] {});
    const SpeedResult outcome =
        RunShown(context, test, [&test](const BenchTestView& view) { return test.Run(view); });
    CommandResult result;
    AddOutcome(result, outcome.Outcome, "The speed test");
    result.Json["analogSeconds"] = outcome.Analog_s;
    result.Json["digitalSeconds"] = outcome.Digital_s;
    result.Text +=
        fmt::format("analog   {:.3f} s\ndigital  {:.3f} s\n", outcome.Analog_s, outcome.Digital_s);
    return result;
}

} // namespace ombrix
