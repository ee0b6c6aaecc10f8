// Hours of work with faults thrown in: does everything stay whole?
#include "soak/Soak.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <exception>

namespace {

using namespace ombrix::soak;

std::optional<std::size_t> FaultNamed(const std::string& name) {
    const auto& faults = AllFaults();
    const auto found = std::find_if(faults.begin(), faults.end(),
                                    [&](const Fault& fault) { return fault.Name == name; });
    return found == faults.end() ? std::nullopt
                                 : std::optional(static_cast<std::size_t>(found - faults.begin()));
}

/// False when something was not as it must be.
bool RunSeed(const SoakPlan& plan, SoakTable& table) {
    const auto start = std::chrono::steady_clock::now();
    const SoakResult result = RunSoak(plan, table);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    fmt::print("seed {}: {:.1f} h simulated in {:.0f} s, {} procedures, {} files, memory {:.1f} "
               "MiB, grown {:.1f} MiB, {} violations\n",
               plan.Seed, result.Simulated_h, took.count(), result.Procedures, result.Files,
               static_cast<double>(result.Memory_KiB) / 1024.0,
               static_cast<double>(result.MemoryGrown_KiB) / 1024.0, result.Found.size());
    for (const std::string& violation : result.Found)
        fmt::print("    {}\n", violation);
    std::fflush(stdout);
    return result.Found.empty();
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"Soak of the procedures on simulated benches, with faults", "ombrix_soak"};
    SoakPlan plan;
    std::uint64_t seeds = 1;
    std::string fault;
    app.add_option("--seed", plan.Seed, "The first seed")->capture_default_str();
    app.add_option("--seeds", seeds, "How many seeds")->capture_default_str();
    app.add_option("--hours", plan.Hours, "Simulated hours for each seed")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    app.add_option("--fault", fault, "This fault alone, by its name in the table")
        ->check([](const std::string& name) {
            return FaultNamed(name) ? "" : "there is no fault of that name";
        });
    app.add_flag("--verbose", plan.Verbose, "A line for each procedure");
    CLI11_PARSE(app, argc, argv);
    if (!fault.empty())
        plan.OnlyFault = FaultNamed(fault);
    try {
        SoakTable table;
        bool whole = true;
        for (; seeds > 0; --seeds, ++plan.Seed)
            whole = RunSeed(plan, table) && whole;
        fmt::print("\n{}", table.Text());
        return whole ? 0 : 1;
    } catch (const std::exception& error) {
        fmt::print(stderr, "ombrix_soak: {}\n", error.what());
        return 1;
    }
}
