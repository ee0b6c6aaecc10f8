// What a call of the board library costs more when the library is in a process of its own.
#include "board/HostedAIBControl.h"
#include "board/LoadedAIBControl.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

using namespace ombrix;

std::unique_ptr<AIBControl> MakeLibrary(bool hosted) {
    if (hosted)
        return std::make_unique<HostedAIBControl>(
            HostedAIBControl::Options{.Program = BOARD_HOST, .Library = SIMULATED_LIBRARY});
    return std::make_unique<LoadedAIBControl>(SIMULATED_LIBRARY);
}

/// Times every call by itself: what counts is the median, not what a busy machine adds to a few.
void GetADC(benchmark::State& state) {
    const auto library = MakeLibrary(state.range(0) != 0);
    library->OpenAIBAPI();
    std::vector<double> calls_s;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        std::int32_t value = 0;
        benchmark::DoNotOptimize(library->GetADC(0, 0, value));
        calls_s.push_back(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    const auto at = [&calls_s](double share) {
        const auto which = static_cast<std::ptrdiff_t>(share * static_cast<double>(calls_s.size()));
        std::nth_element(calls_s.begin(), calls_s.begin() + which, calls_s.end());
        return calls_s.at(static_cast<std::size_t>(which)) * 1e6;
    };
    state.counters["median_us"] = at(0.5);
    state.counters["p99_us"] = at(0.99);
}
BENCHMARK(GetADC)->ArgName("hosted")->Arg(0)->Arg(1)->Iterations(200'000)->Unit(
    benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
