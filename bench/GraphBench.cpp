// What one sample of a health check costs to draw: seven segments on five graphs, and the
// events that bring them to the screen, at different lengths of the run before it.
#include "windows/healthcheck/GraphWidget.h"

#include <QApplication>
#include <benchmark/benchmark.h>

namespace {

using namespace ombrix;

constexpr Colour Grey{192, 192, 192};
constexpr Colour Blue{0, 0, 255};
constexpr Colour Green{0, 255, 0};
constexpr double SampleSpacing_s = 0.02;
constexpr double RunLength_s = 400.0;

/// The graphs of a health check with readings that rise and fall.
class Traces {
  public:
    Traces() : m_Column(nullptr) {
        constexpr QSize screen(1000, 680);
        m_Column.resize(screen);
        m_Column.show();
        const GraphSurfaces surfaces = m_Column.Surfaces();
        for (GraphSurface* surface : surfaces) {
            surface->Scale(0.0, 84000.0, RunLength_s, -3360.0);
            surface->Cls();
        }
        for (const std::size_t thick : {0U, 1U, 2U})
            surfaces.at(thick)->DrawWidth(2);
        QCoreApplication::processEvents();
    }

    void DrawSample() {
        const GraphSurfaces surfaces = m_Column.Surfaces();
        const double from_s = m_Sample * SampleSpacing_s;
        const double to_s = from_s + SampleSpacing_s;
        const double demand = 13107.0;
        const double from = Reading(m_Sample);
        const double to = Reading(++m_Sample);
        surfaces[0]->Line(from_s, demand, to_s, demand, Grey);
        surfaces[0]->Line(from_s, from, to_s, to, Blue);
        surfaces[1]->Line(from_s, demand, to_s, demand, Grey);
        surfaces[1]->Line(from_s, from, to_s, to, Green);
        surfaces[2]->Line(from_s, from, to_s, to, Blue);
        surfaces[3]->Line(from_s, from - demand, to_s, to - demand, Blue);
        surfaces[4]->Line(from_s, from - demand, to_s, to - demand, Green);
        QCoreApplication::processEvents();
    }

    /// Back to a length of run, so that many iterations measure the same length.
    void RewindTo(int sample) { m_Sample = sample; }

  private:
    static double Reading(int sample) {
        constexpr int period = 97;
        return 13000.0 + sample % period * 3.0;
    }

    GraphColumn m_Column;
    int m_Sample = 0;
};

void DrawSample(benchmark::State& state) {
    Traces traces;
    const auto before = static_cast<int>(state.range(0));
    for (int sample = 0; sample < before; ++sample)
        traces.DrawSample();
    constexpr int measured = 1000;
    int drawn = 0;
    while (state.KeepRunning()) {
        traces.DrawSample();
        if (++drawn % measured == 0)
            traces.RewindTo(before);
    }
}
BENCHMARK(DrawSample)->Arg(0)->Arg(1000)->Arg(19000)->Iterations(1000)->Repetitions(5);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
