#include "healthcheck/HealthCheckJournal.h"

#include "board/Station.h"
#include "calibration/history/RunJson.h"
#include "calibration/unit/ACUCalibration.h"
#include "healthcheck/HealthCheckReport.h"
#include "healthcheck/MFCSequence.h"
#include "journal/JournalLines.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/OleDate.h"

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

namespace {

clsMFCSequence SequenceOf(const RecordedSequence& recorded) {
    clsMFCSequence sequence;
    for (const RecordedStep& step : recorded.Steps)
        sequence.AddStep(step.Plan.Ch1Demand, step.Plan.Ch2Demand, step.Plan.Duration_s);
    for (std::size_t index = 0; index < recorded.Steps.size(); ++index)
        sequence.AddSamples(static_cast<std::int32_t>(index), recorded.Steps[index].Samples);
    return sequence;
}

} // namespace

RecordedHealthCheck::RecordedHealthCheck(std::string_view text) {
    ReadJournalLines(text, [this](const SingleJson& line) { Take(line); });
}

void RecordedHealthCheck::Take(const SingleJson& line) {
    if (!m_HasHeader)
        TakeHeader(line);
    else if (line.contains("sequence"))
        TakeSequence(line);
    else if (line.contains("step"))
        m_Step = line.at("step").get<std::size_t>();
    else if (line.contains("samples"))
        TakeSamples(line.at("samples"));
    else if (line.contains("sequenceEnd"))
        m_MeasuredAt = DateOf(line.at("sequenceEnd"));
    else if (line.contains("end"))
        m_Ended = true;
    else
        throw std::runtime_error("it says nothing that is known");
}

void RecordedHealthCheck::TakeHeader(const SingleJson& line) {
    m_Header = HeaderOf(line);
    m_MeasuredAt = m_Header.Start;
    m_HasHeader = true;
}

void RecordedHealthCheck::TakeSequence(const SingleJson& line) {
    RecordedSequence sequence{line.at("sequence").get<std::string>(), {}};
    for (const SingleJson& step : line.at("steps"))
        sequence.Steps.push_back(
            {{SingleOf(step.at(0)), SingleOf(step.at(1)), SingleOf(step.at(2))}, {}});
    m_Sequences.push_back(std::move(sequence));
    m_Step = 0;
}

void RecordedHealthCheck::TakeSamples(const SingleJson& samples) {
    if (m_Sequences.empty() || m_Step >= m_Sequences.back().Steps.size())
        throw std::runtime_error("its samples belong to no step");
    for (const SingleJson& sample : samples)
        m_Sequences.back().Steps[m_Step].Samples.push_back(sample.get<clsMFCStep::Sample>());
}

std::size_t RecordedHealthCheck::SampleCount() const {
    std::size_t count = 0;
    for (const RecordedSequence& sequence : m_Sequences) {
        for (const RecordedStep& step : sequence.Steps)
            count += step.Samples.size();
    }
    return count;
}

std::string RecordedHealthCheck::Describe() const {
    return fmt::format("Health Check of ACU{:05}, {}: {} sequences, {} samples", m_Header.Serial,
                       DateText(m_Header.Start, "dd/mm/yyyy hh:nn:ss"), m_Sequences.size(),
                       SampleCount());
}

RemadeReport RecordedHealthCheck::MakeReport(const CalibrationServices& services) const {
    if (!HasReport())
        return {};
    Station& station = services.TheStation;
    HealthCheckReport report(station, services.Launcher, services.Wait, services.Templates);
    if (!report.Open().empty())
        return {{}, false};
    const clsACUCalibration record(station.World, station.Claims, m_Header.Unit, m_Header.Serial);
    const ReportUnit unit{m_Header.Serial, record.MFCSerialNumber_Clean(), record.PressureConfig()};
    for (const RecordedSequence& sequence : m_Sequences)
        SequenceOf(sequence).ExportToWorkbook(unit, m_MeasuredAt, report.Book(), sequence.Sheet,
                                              report.OverviewRow());
    const SavedReport saved = report.Save(unit, m_MeasuredAt);
    RemadeReport remade{{}, saved.Error.empty()};
    if (saved.File)
        remade.Files.push_back(*saved.File);
    return remade;
}

bool RecordedHealthCheck::NoteInterruption(Platform& world,
                                           const std::vector<std::string>& /*files*/) const {
    WriteLog(world, "Interrupted: " + Describe()); // health checks have no history beside the log
    return true;
}

} // namespace ombrix
