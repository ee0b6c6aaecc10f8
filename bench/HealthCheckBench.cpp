// What a sample and a whole health check cost, in virtual time on the simulated bench.
#include "healthcheck/HealthCheckRun.h"
#include "healthcheck/MFCStep.h"
#include "platform/os/Clocks.h"
#include "spreadsheet/XlsxApplication.h"
#include "support/NoConverter.h"
#include "support/TestBench.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

/// Counts what the measured code asks the heap for.
std::atomic<std::int64_t> allocations{0};

} // namespace

// Not inlined: seen apart, the compiler takes malloc and delete for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace ombrix {
namespace {

/// A step on the system's clock: the cost of reading it is part of the figure.
struct RunningStep {
    explicit RunningStep(const Clock& clock) : Timer(clock) {
        Bench.Detect();
        Bench.TheStation.Calibration().ReadEPROMValues();
        Step.Init(0, 0.2F, 0.0F, 1e6F, nullptr);
        Step.StartStep(Timer, Bench.TheStation);
    }
    bool Record() { return Step.RecordDataPoint(*Bench.TheStation.CurrentAIB, nullptr, nullptr); }

    TestBench Bench;
    HiResTimer Timer;
    MFCStep Step;
};

void ReadingTheClock(benchmark::State& state) {
    const SystemClock clock;
    for (auto _ : state)
        benchmark::DoNotOptimize(clock.Counter());
}
BENCHMARK(ReadingTheClock);

/// A call that finds no sample due. The step is started over before 20 ms have passed.
void RecordDataPointStoringNothing(benchmark::State& state) {
    const SystemClock clock;
    RunningStep running(clock);
    std::int64_t stored = 0;
    std::int64_t calls = 0;
    for (auto _ : state) {
        stored += running.Record() ? 1 : 0;
        ++calls;
    }
    state.counters["stored_share"] = static_cast<double>(stored) / static_cast<double>(calls);
}
BENCHMARK(RecordDataPointStoringNothing);

void RecordDataPointStoring(benchmark::State& state) {
    VirtualClock clock;
    RunningStep running(clock);
    std::int64_t allocated = 0;
    for (auto _ : state) {
        state.PauseTiming();
        if (running.Step.DataCount() == MFCStep::DataCapacity) {
            running.Step.Init(0, 0.2F, 0.0F, 1e6F, nullptr);
            running.Step.StartStep(running.Timer, running.Bench.TheStation);
        }
        clock.Advance(0.02);
        const std::int64_t before = allocations;
        state.ResumeTiming();
        running.Record();
        state.PauseTiming();
        allocated += allocations - before;
        state.ResumeTiming();
    }
    state.counters["allocations"] = static_cast<double>(allocated);
}
BENCHMARK(RecordDataPointStoring);

class NoWaitWindow final : public OpenExcelView {
  public:
    void Show(const std::string&) override {}
    void Close() override {}
};

/// All options, 1208 s of test time, with the report; time is processor time.
void WholeProgramme(benchmark::State& state) {
    const std::vector<HealthCheckOption> all = {
        HealthCheckOption::Short,   HealthCheckOption::PressureCheck, HealthCheckOption::LongCh1,
        HealthCheckOption::LongCh2, HealthCheckOption::LowCh1,        HealthCheckOption::LowCh2};
    std::int64_t samples = 0;
    for (auto _ : state) {
        TestBench bench;
        bench.Detect();
        bench.TheStation.Calibration().ReadEPROMValues();
        bench.Files.Mount(R"(C:\Program Files\Ombrix\Templates)", TEMPLATES_FOLDER);
        NoWaitWindow wait;
        NoConverter noConverter;
        const ReportTools tools{
            bench.TheStation,
            [&] { return std::make_unique<XlsxApplication>(bench.Files, noConverter); }, wait,
            R"(C:\Program Files\Ombrix\Templates\)"};
        const HealthCheckResult result = HealthCheckRun(tools).Run(all, {});
        if (result.Files.empty())
            state.SkipWithError(result.Error.c_str());
        samples = 0;
        for (const SequenceResult& sequence : result.Sequences)
            samples += sequence.Samples;
    }
    state.counters["samples"] = static_cast<double>(samples);
}
BENCHMARK(WholeProgramme)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

} // namespace
} // namespace ombrix

BENCHMARK_MAIN();
