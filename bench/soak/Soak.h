#pragma once

#include "soak/Checks.h"
#include "soak/Disturbance.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace ombrix::soak {

/// How often something was tried and what came of it.
struct Tally {
    int Tried = 0;
    /// The procedure was over before the fault came.
    int TooLate = 0;
    std::array<int, EndingNames.size()> Endings{};
    /// The air could not be switched off, which the operator was told, and was off after the
    /// boards had been detected again.
    int AirRecovered = 0;
    /// The EPROM was written in part, which the operator was told.
    int EpromInPart = 0;
};

/// What several soaks have tried: faults by phase and faults by procedure.
struct SoakTable {
    std::map<std::pair<std::size_t, Phase>, int> FaultPhases;
    std::map<std::size_t, Tally> FaultTallies;
    std::map<std::size_t, Tally> ProcedureTallies;

    /// As Markdown.
    std::string Text() const;
};

struct SoakPlan {
    std::uint64_t Seed = 1;
    double Hours = 24.0;
    /// Nothing but this fault; all of them without.
    std::optional<std::size_t> OnlyFault;
    /// A line for each procedure, on standard error.
    bool Verbose = false;
};

struct SoakResult {
    int Procedures = 0;
    std::size_t Files = 0;
    double Simulated_h = 0.0;
    /// The most that memory has grown on a bench after its warm-up, and what it was at the end.
    long MemoryGrown_KiB = 0;
    long Memory_KiB = 0;
    /// Each with seed, hour, bench, procedure, fault and phase.
    Violations Found;
};

/// How much memory may grow after the warm-up, which is a quarter of the time on each bench.
inline constexpr long MemoryGrowthLimit_KiB = 8 * 1024;

/// Runs the procedures in turn on three benches, each a third of the time, with faults chosen by
/// the seed, and looks at outputs, files, EPROM and memory after each.
SoakResult RunSoak(const SoakPlan& plan, SoakTable& table);

} // namespace ombrix::soak
