#include "healthcheck/MFCSequence.h"

#include "healthcheck/HealthCheckRecorder.h"
#include "healthcheck/HealthCheckReport.h"
#include "platform/text/Text.h"
#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

/// Brings both air channels to zero, whatever way the run is left.
class ChannelsToZero {
  public:
    explicit ChannelsToZero(DACSliders& sliders) : m_Sliders(sliders) {}
    ChannelsToZero(const ChannelsToZero&) = delete;
    ChannelsToZero& operator=(const ChannelsToZero&) = delete;
    ~ChannelsToZero() {
        m_Sliders.SetValue(0, 0);
        m_Sliders.SetValue(1, 0);
    }

  private:
    DACSliders& m_Sliders;
};

} // namespace

void clsMFCSequence::AddStep(float ch1Demand, float ch2Demand, float duration_s) {
    const clsMFCStep* last = m_Steps.empty() ? nullptr : &m_Steps.back();
    const std::int32_t index = StepCount();
    m_Steps.emplace_back().Init(index, ch1Demand, ch2Demand, duration_s, last);
}

const clsMFCStep& clsMFCSequence::Step(std::int32_t index) const {
    return m_Steps.at(static_cast<std::size_t>(index));
}

float clsMFCSequence::TotalTime_s() const {
    return Step(StepCount() - 1).EndTime_s();
}

std::int32_t clsMFCSequence::SampleCount() const {
    std::int32_t count = 0;
    for (const clsMFCStep& step : m_Steps)
        count += step.DataCount();
    return count;
}

bool clsMFCSequence::RecordFull() const {
    return std::any_of(m_Steps.begin(), m_Steps.end(),
                       [](const clsMFCStep& step) { return step.RecordFull(); });
}

void clsMFCSequence::AddSamples(std::int32_t index, std::span<const clsMFCStep::Sample> samples) {
    clsMFCStep& step = m_Steps.at(static_cast<std::size_t>(index));
    for (const clsMFCStep::Sample& sample : samples)
        step.AddSample(sample);
}

bool clsMFCSequence::RunSequence(const SequenceBench& bench, const SequenceView& view,
                                 Workbook* workbook, const std::string& sheetName,
                                 std::int32_t& overviewRow) {
    if (view.Graphs != nullptr)
        DrawGraphTemplate(*view.Graphs);
    if (view.Steps != nullptr)
        FillStepList(*view.Steps);
    const auto exportRecord = [&] {
        const OleDate now = bench.TheStation.World.Time.Now();
        if (view.Recorder != nullptr)
            view.Recorder->SequenceEnds(now);
        if (workbook != nullptr)
            ExportToWorkbook(ReportUnitOf(*bench.TheStation.g_CurrentAIB), now, *workbook,
                             sheetName, overviewRow);
    };
    try {
        const bool completed = RunSteps(bench, view);
        exportRecord();
        return completed;
    } catch (const BoardError&) {
        exportRecord();
        throw;
    }
}

bool clsMFCSequence::RunSteps(const SequenceBench& bench, const SequenceView& view) {
    const ChannelsToZero afterwards(bench.Sliders);
    clsHiResTimer timer(bench.TheStation.World.Time);
    std::size_t index = 0;
    const auto start = [&] {
        m_Steps[index].StartStep(timer, bench.Sliders);
        if (view.Steps != nullptr)
            view.Steps->ListIndex(static_cast<int>(index));
        if (view.Recorder != nullptr)
            view.Recorder->StepBegins(static_cast<std::int32_t>(index));
    };
    start();
    while (true) {
        if (static_cast<float>(timer.ElapsedTime()) >= m_Steps[index].EndTime_s()) {
            NoteFullRecord(static_cast<std::int32_t>(index), view);
            if (++index == m_Steps.size())
                return true;
            start();
        }
        clsMFCStep& step = m_Steps[index];
        if (step.RecordDataPoint(*bench.TheStation.g_CurrentAIB, view.Graphs, view.Labels)) {
            if (view.Recorder != nullptr)
                view.Recorder->Sample(step.LastSample());
            if (view.Progress)
                view.Progress(timer.ElapsedTime());
        }
        const double due_s = std::min<double>(step.NextSampleTime_s(), step.EndTime_s());
        if (!bench.Wait.Pass(timer, due_s))
            return false;
    }
}

void clsMFCSequence::NoteFullRecord(std::int32_t index, const SequenceView& view) const {
    if (view.Steps != nullptr && Step(index).RecordFull())
        view.Steps->SetItem(index, StepText(index) + "  (record full)");
}

std::string clsMFCSequence::StepText(std::int32_t index) const {
    const clsMFCStep& step = Step(index);
    const auto percent = [&step](std::int32_t channel) {
        return FixedText(step.DemandValue_Percent(channel) * 100.0F, 1);
    };
    return fmt::format("{}.    Ch1 {}%     Ch2 {}%     for     {}s", index + 1, percent(0),
                       percent(1), GeneralText(step.Duration_s()));
}

void clsMFCSequence::FillStepList(StepList& steps) const {
    steps.Clear();
    for (std::int32_t index = 0; index < StepCount(); ++index)
        steps.AddItem(StepText(index));
}

} // namespace ombrix
