// What a line of a recording costs beside its board calls, and whether a day of them stays whole.
#include "benchtests/DataRecorder.h"
#include "platform/os/Clocks.h"
#include "support/TestBench.h"

#include <benchmark/benchmark.h>

#include <fstream>
#include <sys/resource.h>

namespace ombrix {
namespace {

/// A station that reads the system's clock, as a real recording does.
struct Recording {
    TestBench Bench;
    SystemClock Time;
    Platform World{Time, Bench.Events, Bench.Messages, Bench.Files, Bench.Documents, Bench.End};
    Station TheStation{BoardServices{Bench.Bench, World}};
    DataRecorder Recorder{TheStation};

    Recording() {
        std::int32_t count = 0;
        TheStation.AIBList.OpenAIBAPI(count);
        TheStation.CurrentAIB = TheStation.AIBList.AIB(0);
    }
};

void BoardCallsOfALine(benchmark::State& state) {
    Recording recording;
    AIB& board = *recording.TheStation.CurrentAIB;
    for (auto _ : state) {
        std::int32_t value = 0;
        for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
            board.GetADC(channel, value);
        board.ReadReg(AIB::PressureRegister, value);
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(BoardCallsOfALine);

void WholeLine(benchmark::State& state) {
    Recording recording;
    recording.Recorder.Start();
    for (auto _ : state)
        recording.Recorder.RecordLine();
}
BENCHMARK(WholeLine);

long MostMemory_KiB() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

/// 24 hours in virtual time, a line every 10 ms.
void Day(benchmark::State& state) {
    constexpr double day_s = 86400.0;
    for (auto _ : state) {
        TestBench bench;
        bench.Detect();
        const long before_KiB = MostMemory_KiB();
        TimedRecording recording(bench.TheStation);
        const RecordingResult outcome = recording.Run(day_s, [](double) {});
        state.counters["lines"] = static_cast<double>(outcome.Lines);
        state.counters["grown_KiB"] = static_cast<double>(MostMemory_KiB() - before_KiB);
        std::ifstream file(outcome.Files.at(0));
        std::int64_t lines = -1; // the header
        for (std::string line; std::getline(file, line);)
            ++lines;
        if (lines != outcome.Lines)
            state.SkipWithError("lines have been lost");
    }
}
BENCHMARK(Day)->Unit(benchmark::kSecond)->Iterations(1);

} // namespace
} // namespace ombrix

BENCHMARK_MAIN();
