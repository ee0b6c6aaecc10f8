// How evenly a health check samples in real time with live traces, and what it costs. Not a
// test: the figures depend on the machine and on what else it does.
#include "healthcheck/MFCSequence.h"
#include "platform/os/Clocks.h"
#include "support/TestBench.h"
#include "windows/desktop/QtPorts.h"
#include "windows/healthcheck/GraphWidget.h"

#include <QApplication>
#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace {

using namespace ombrix;

/// Notes the times at which samples fall due: a fixed time after the one before, in full
/// resolution where the record has whole milliseconds.
class SpacingRecorder {
  public:
    void Note(double due_s) {
        if (m_Last_s >= 0.0)
            m_Spacings_ms.push_back((due_s - m_Last_s) * 1000.0);
        m_Last_s = due_s;
    }
    double Percentile(double share) {
        std::sort(m_Spacings_ms.begin(), m_Spacings_ms.end());
        const double position = share * static_cast<double>(m_Spacings_ms.size() - 1);
        return m_Spacings_ms.at(static_cast<std::size_t>(position));
    }
    std::size_t Count() const { return m_Spacings_ms.size(); }

  private:
    double m_Last_s = -1.0;
    std::vector<double> m_Spacings_ms;
};

double ProcessorTime_s() {
    return static_cast<double>(std::clock()) / static_cast<double>(CLOCKS_PER_SEC);
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const float seconds = argc > 1 ? std::strtof(argv[1], nullptr) : 30.0F;

    TemporaryFolder folder;
    SystemClock clock;
    QtEventPump events;
    ScriptedOperator messages;
    FolderDrive files{folder.Path()};
    RecordedDocuments documents;
    ThrowingEnd end;
    Platform world{clock, events, messages, files, documents, end};
    SimulatedBench library(clock, BenchOptions{});
    Station station({library, world});
    std::int32_t count = 0;
    station.AIBList.OpenAIBAPI(count);
    station.CurrentAIB = station.AIBList.AIB(0);

    GraphColumn graphs(nullptr);
    graphs.resize(900, 680);
    graphs.show();
    const GraphSurfaces surfaces = graphs.Surfaces();
    ProcedureWait wait(station);
    MFCSequence sequence;
    sequence.AddStep(0.2F, 0.5F, seconds);

    SpacingRecorder spacings;
    std::int32_t row = 7;
    const double before_s = ProcessorTime_s();
    sequence.RunSequence(
        station, wait,
        {.Graphs = &surfaces,
         .Labels = &graphs,
         .Progress = [&](double) { spacings.Note(sequence.Step(0).NextSampleTime_s()); }},
        nullptr, "", row);
    const double share = (ProcessorTime_s() - before_s) / static_cast<double>(seconds);
    fmt::print("samples {}\nspacing ms: min {:.3f} median {:.3f} p99 {:.3f} max {:.3f}\n"
               "processor {:.1f} %\n",
               spacings.Count() + 1, spacings.Percentile(0.0), spacings.Percentile(0.5),
               spacings.Percentile(0.99), spacings.Percentile(1.0), share * 100.0);
}
