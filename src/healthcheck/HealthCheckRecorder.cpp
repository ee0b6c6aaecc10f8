#include "healthcheck/HealthCheckRecorder.h"

#include "board/Station.h"
#include "calibration/history/RunJson.h"
#include "calibration/unit/ACUCalibration.h"
#include "journal/JournalLines.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrix {

HealthCheckRecorder::HealthCheckRecorder(Station& station)
    : m_Station(station), m_Journal(station.World, "health check") {}

void HealthCheckRecorder::Begin(std::span<const HealthCheckOption> options) {
    clsAIB& board = *m_Station.g_CurrentAIB;
    const OleDate start = m_Station.World.Time.Now();
    SingleJson header = HeaderJson(
        {HealthCheckKind, start, m_Station.World.Program, board.Calibration().Record()}, board);
    header["options"] = SingleJson::array();
    for (const HealthCheckOption option : options)
        header["options"].push_back(NameOf(option));
    const std::string unit = fmt::format("ACU{:05}", board.SerialNumber());
    m_Journal.Open(JournalName(unit, HealthCheckKind, start), LineOf(header));
}

void HealthCheckRecorder::SequenceBegins(const std::string& sheet,
                                         std::span<const StepPlan> steps) {
    SingleJson list = SingleJson::array();
    for (const StepPlan& step : steps)
        list.push_back({step.Ch1Demand, step.Ch2Demand, step.Duration_s});
    m_Journal.Add(LineOf({{"sequence", sheet}, {"steps", std::move(list)}}));
}

void HealthCheckRecorder::StepBegins(std::int32_t index) {
    m_Journal.Add(LineOf({{"step", index}}));
}

void HealthCheckRecorder::Sample(const clsMFCStep::Sample& sample) {
    if (m_Journal.IsOpen())
        m_Journal.Sample(fmt::format("[{}]", fmt::join(sample, ",")));
}

void HealthCheckRecorder::SequenceEnds(OleDate now) {
    m_Journal.Add(LineOf({{"sequenceEnd", DateJson(now)}}));
}

void HealthCheckRecorder::End(const std::string& verdict,
                              const std::vector<std::filesystem::path>& files) {
    std::vector<std::string> names;
    for (const std::filesystem::path& file : files)
        names.push_back(file.string());
    m_Journal.Close(EndLine(m_Station.World.Time.Now(), verdict, names));
}

} // namespace ombrix
