// What the measuring loop, a whole velocity initialisation and the information workbook cost, in
// virtual time on the simulated bench.
#include "calibration/CalibrationBench.h"

#include "calibration/run/MeasuringLoop.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace ombrix {
namespace {

/// Counts the passes that it lets through.
class CountingPump final : public EventPump {
  public:
    std::int64_t Passes = 0;
    void ProcessPendingEvents() override { ++Passes; }
    bool ProgramEnding() const override { return false; }
};

/// A point of 15 s, divided by its passes; the wait itself is virtual and costs next to nothing.
/// The displayed lines, twenty times a second, are part of it.
void MeasuringLoopPass(benchmark::State& state) {
    CalibrationBench bench("acu");
    CountingPump pump;
    TestBench& with = bench.Bench;
    Platform world{with.Time, pump, with.Messages, with.Files, with.Documents, with.End};
    Station& station = with.TheStation;
    ProcedureWait wait(station);
    AirChannelControl air(station);
    MeasuringLoop loop(station, air, wait);
    air.SetAirVelocityInternal_bits(0, 30000);
    constexpr double point_s = 15.0;
    std::string shown;
    for (auto _ : state) {
        const PointReading reading = loop.Measure(
            0, point_s, [&shown](const LiveReading& live) { shown = std::to_string(live.Bits); });
        benchmark::DoNotOptimize(reading.Reading_bits);
    }
    state.counters["pass"] =
        benchmark::Counter(static_cast<double>(pump.Passes),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(MeasuringLoopPass)->Unit(benchmark::kMillisecond);

/// Two system runs and two audits with logs and six workbooks, without LibreOffice; time is
/// processor time.
void VelocityInitialisation(benchmark::State& state) {
    for (auto _ : state) {
        CalibrationBench bench("fresh");
        std::string number = "M9200777A";
        const ACUSetUp::Initialisation outcome =
            bench.SetUp.RunACUInitialisation(number, true, false);
        if (!outcome.Passed || !outcome.AllStored)
            state.SkipWithError("the initialisation has not passed");
    }
}
BENCHMARK(VelocityInitialisation)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

/// How long the windows wait for a look at their events at worst, workbooks included.
void LongestTimeBetweenLooks(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    Clock::duration longest{};
    for (auto _ : state) {
        CalibrationBench bench("fresh");
        Clock::time_point last = Clock::now();
        bench.Bench.Events.EveryPass = [&] {
            const auto now = Clock::now();
            longest = std::max(longest, now - std::exchange(last, now));
        };
        std::string number = "M9200777A";
        last = Clock::now();
        bench.SetUp.RunACUInitialisation(number, true, false);
    }
    state.counters["longest_ms"] = std::chrono::duration<double, std::milli>(longest).count();
}
BENCHMARK(LongestTimeBetweenLooks)->Unit(benchmark::kMillisecond);

void InformationWorkbook(benchmark::State& state) {
    CalibrationBench bench("acu");
    for (auto _ : state) {
        if (!bench.SetUp.CreateACUInfoDoc().WhereItBelongs)
            state.SkipWithError("the workbook has not been saved");
    }
}
BENCHMARK(InformationWorkbook)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace ombrix

BENCHMARK_MAIN();
