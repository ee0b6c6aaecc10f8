// What the trend window takes for a recording of 24 hours: opening it, a picture while it is panned
// and zoomed, and the memory of both.
#include "platform/text/Text.h"
#include "support/NoConverter.h"
#include "support/TemporaryFolder.h"
#include "trend/TrendFile.h"
#include "windows/trend/TrendPlotWidget.h"

#include <QApplication>
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <fstream>
#include <memory>
#include <sys/resource.h>

namespace {

using namespace ombrix;

constexpr int Lines = 8'640'000;
constexpr double Day_s = 86400.0;

/// A day as the recorder writes it: noisy flows that step, a pressure, a line every 10 ms.
void WriteDay(const std::filesystem::path& path) {
    std::ofstream file(path, std::ios::binary);
    file << "Timer,CH1 Flow,Ch2 Flow,3v3,Floating\r\n";
    std::uint32_t noise = 1;
    for (int line = 0; line < Lines; ++line) {
        noise = noise * 1664525U + 1013904223U;
        const int flow = 6553 * (line / 6000 % 10) + static_cast<int>(noise >> 26U);
        file << fmt::format("{},{},{},{},{},{}\r\n", GeneralText(static_cast<float>(line) / 100.0F),
                            flow, 65534 - flow, 6553 + static_cast<int>(noise >> 24U), noise >> 16U,
                            32768 - line / 500);
    }
}

double MostMemory_MiB() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    constexpr double kibPerMib = 1024.0;
    return static_cast<double>(usage.ru_maxrss) / kibPerMib;
}

/// The day and, once it was opened, what is in it.
struct Day {
    TemporaryFolder Folder;
    std::filesystem::path File = Folder.Path() / "day.csv";
    std::unique_ptr<TrendData> Data;

    Day() { WriteDay(File); }
    void Open() {
        Data.reset();
        NoConverter converter;
        TrendProgress progress;
        Data = std::make_unique<TrendData>(ReadTrendFile(File, {}, converter, progress));
    }
};

Day& TheDay() {
    static Day day;
    return day;
}

void OpenDay(benchmark::State& state) {
    TheDay();
    for (auto _ : state)
        TheDay().Open();
    state.counters["lines"] = static_cast<double>(TheDay().Data->Groups.at(0).Times.Size());
    state.counters["data_MiB"] = static_cast<double>(TheDay().Data->Bytes()) / 1048576.0;
    state.counters["process_MiB"] = MostMemory_MiB();
}
BENCHMARK(OpenDay)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

/// @param state the span of the view in seconds
void PanADay(benchmark::State& state) {
    if (!TheDay().Data)
        TheDay().Open();
    TrendPlotWidget plot(nullptr);
    plot.resize(1280, 720);
    std::vector<TrendLine> lines;
    for (std::size_t trace = 0; trace < TheDay().Data->Groups.at(0).Traces.size(); ++trace)
        lines.push_back({{0, trace, TrendUnit::Bits}, trace});
    plot.ShowLines(TheDay().Data.get(), lines, {TrendUnit::Bits, TrendUnit::Bits});
    plot.show();
    QCoreApplication::processEvents();
    const auto span_s = static_cast<double>(state.range(0));
    double from_s = 0.0;
    for (auto _ : state) {
        plot.ShowTimes(from_s, from_s + span_s);
        plot.repaint();
        from_s = from_s + span_s * 1.01 < Day_s ? from_s + span_s * 0.01 : 0.0;
    }
    state.counters["process_MiB"] = MostMemory_MiB();
}
BENCHMARK(PanADay)
    ->Arg(86400)
    ->Arg(20000)
    ->Arg(3600)
    ->Arg(600)
    ->Arg(60)
    ->Arg(5)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(200)
    ->Repetitions(3);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
