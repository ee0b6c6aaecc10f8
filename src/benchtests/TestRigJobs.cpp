#include "benchtests/TestRigJobs.h"

#include "board/AIB.h"
#include "platform/text/Rounding.h"

#include <algorithm>

namespace ombrix {

namespace {

RampStep LoopThroughRamp(RampDirection direction) {
    RampStep ramp;
    ramp.Name =
        direction == RampDirection::Up ? "Loop Through: Outputs Up" : "Loop Through: Outputs Down";
    ramp.OutputBoard = 1;
    ramp.InputBoard = 0;
    ramp.ChannelMask = "1100";
    ramp.Levels = 9;
    ramp.LevelDuration_s = 4.0;
    ramp.Direction = direction;
    ramp.ZeroAllAfterwards = direction == RampDirection::Down;
    return ramp;
}

} // namespace

std::vector<std::int32_t> RampStep::Values_bits() const {
    std::vector<std::int32_t> values;
    const double step_bits = static_cast<double>(AIB::DACFullScale) / (Levels - 1);
    for (std::int32_t level = 0; level < Levels; ++level)
        values.push_back(RoundHalfEven(step_bits * level));
    if (Direction == RampDirection::Down)
        std::reverse(values.begin(), values.end());
    return values;
}

std::string_view TestRigJobName(std::int32_t kind) {
    switch (kind) {
    case TestRigJob::LoopThrough: return "Test AIB in Loop Through";
    case TestRigJob::Sniffing: return "Test AIB in Sniffing Mode";
    case TestRigJob::StandardMFC: return "Test MFC in Standard Mode";
    default: return "UNKNOWN";
    }
}

std::string_view RigStatusText(RigStatus status) {
    switch (status) {
    case RigStatus::Queued: return "Queued";
    case RigStatus::Running: return "Running...";
    case RigStatus::Passed: return "Complete (Passed)";
    case RigStatus::Failed: return "Complete (Failed)";
    default: return "UNKNOWN";
    }
}

std::vector<RampStep> PlanTestRigJob(std::int32_t kind) {
    if (kind != TestRigJob::LoopThrough)
        return {};
    return {LoopThroughRamp(RampDirection::Up), LoopThroughRamp(RampDirection::Down)};
}

} // namespace ombrix
