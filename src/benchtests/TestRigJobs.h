#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// The jobs of the test rig, by the numbers of their buttons.
namespace TestRigJob {

constexpr std::int32_t LoopThrough = 0;
constexpr std::int32_t Sniffing = 1;
constexpr std::int32_t StandardMFC = 2;
constexpr std::int32_t Count = 3;

} // namespace TestRigJob

/// How far a step of a job is. What was broken off is neither to come nor complete: Unknown.
enum class RigStatus { Unknown, Queued, Running, Passed, Failed };

enum class RampDirection { Up, Down };

/// One ramp: the outputs of one board go through their range in levels, while the inputs of
/// another, which they are wired to, are recorded.
struct RampStep {
    std::string Name;
    std::int32_t OutputBoard = 0;
    std::int32_t InputBoard = 0;
    /// "1" for each channel that is driven, channel 0 first; the others stay at 0.
    std::string_view ChannelMask;
    std::int32_t Levels = 0;
    double LevelDuration_s = 0.0;
    RampDirection Direction = RampDirection::Up;
    bool ZeroAllAfterwards = false;

    bool Drives(std::int32_t channel) const {
        return ChannelMask.at(static_cast<std::size_t>(channel)) == '1';
    }
    double Duration_s() const { return Levels * LevelDuration_s; }
    /// The output values of the levels in the order in which they are driven.
    std::vector<std::int32_t> Values_bits() const;
};

/// "UNKNOWN" for a number that is no job.
std::string_view TestRigJobName(std::int32_t kind);
std::string_view RigStatusText(RigStatus status);

/// The steps of a job; only the loop-through job has any.
std::vector<RampStep> PlanTestRigJob(std::int32_t kind);
inline std::int32_t JobStepCount(std::int32_t kind) {
    return static_cast<std::int32_t>(PlanTestRigJob(kind).size());
}

} // namespace ombrix
