#include "healthcheck/HealthCheckJournal.h"

#include "board/Station.h"
#include "healthcheck/HealthCheckReport.h"
#include "healthcheck/MFCSequence.h"
#include "journal/UnitJson.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/OleDate.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <numeric>

namespace ombrix {

namespace {

const char* const HealthCheckKind = NameOf(RunKind::HealthCheck);

HistoryEntry EntryOf(const JournalHeader& header, const HealthCheckLimits& limits,
                     HealthCheckFigures check) {
    constexpr double percent = 100.0;
    HistoryEntry entry;
    entry.Kind = RunKind::HealthCheck;
    entry.When = header.Start;
    entry.Program = header.Program;
    entry.Serial = header.Unit.Serial;
    entry.Verdict = VerdictOf(check);
    if (!IsComplete(check))
        entry.Reasons.push_back(check.Outcome);
    entry.Found = header.Unit.Record;
    entry.Limits = {
        {"endValue_percentOfFullScale", static_cast<float>(limits.Limit_share * percent)}};
    entry.Check = std::move(check);
    return entry;
}

} // namespace

HealthCheckRecorder::HealthCheckRecorder(Station& station)
    : m_Station(station), m_Journal(station.World, "health check") {}

void HealthCheckRecorder::Begin(std::span<const HealthCheckOption> options,
                                const HealthCheckLimits& limits) {
    m_Header = {HealthCheckKind, m_Station.World.Time.Now(), m_Station.World.Program,
                m_Station.Calibration().Unit()};
    m_Limits = limits;
    for (const HealthCheckOption option : options)
        m_Options.emplace_back(NameOf(option));
    SingleJson header = HeaderJson(m_Header, *m_Station.CurrentAIB);
    header["options"] = m_Options;
    header["limits"] = {{"endValue_share", static_cast<float>(limits.Limit_share)},
                        {"fullScale_bits", static_cast<float>(limits.FullScale_bits)}};
    m_Journal.Open(JournalName(m_Header.Unit.SerialNumberStr(), HealthCheckKind, m_Header.Start),
                   LineOf(header));
}

void HealthCheckRecorder::SequenceBegins(const std::string& sheet,
                                         std::span<const StepPlan> steps) {
    SingleJson list = SingleJson::array();
    for (const StepPlan& step : steps)
        list.push_back({step.Ch1Demand, step.Ch2Demand, step.Duration_s});
    m_Journal.Add(LineOf({{"sequence", sheet}, {"steps", std::move(list)}}));
    m_Recorded = 0;
}

void HealthCheckRecorder::StepBegins(std::int32_t index) {
    m_Journal.Add(LineOf({{"step", index}, {"recorded", m_Recorded}}));
}

void HealthCheckRecorder::Sample(const MFCStep::Sample& sample) {
    ++m_Recorded;
    if (m_Journal.IsOpen())
        m_Journal.Sample(fmt::format("[{}]", fmt::join(sample, ",")));
}

void HealthCheckRecorder::SequenceEnds(OleDate now, std::int32_t ended) {
    m_Journal.Add(
        LineOf({{"sequenceEnd", DateJson(now)}, {"ended", ended}, {"recorded", m_Recorded}}));
}

void HealthCheckRecorder::Measured(const std::string& outcome) {
    m_Journal.Add(
        LineOf({{"measured", DateJson(m_Station.World.Time.Now())}, {"outcome", outcome}}));
}

bool HealthCheckRecorder::Finish(const std::string& ended, const Outcome& outcome,
                                 HealthCheckFigures check) {
    Platform& world = m_Station.World;
    std::vector<std::string> files;
    for (const std::filesystem::path& file : outcome.Files)
        files.push_back(file.string());
    bool stored = true;
    if (check.Steps > 0) {
        check.Options = m_Options;
        HistoryEntry entry = EntryOf(m_Header, m_Limits, std::move(check));
        if (entry.Reasons.empty() && !outcome.Error.empty())
            entry.Reasons.push_back(outcome.Error.substr(0, outcome.Error.find("\r\n")));
        entry.Files = files;
        // A journal without an end is offered again at the next start, a gap in the history is not.
        stored = AppendToHistory(world, std::move(entry));
    }
    m_Journal.Close(EndLine(world.Time.Now(), ended, files));
    return stored;
}

namespace {

constexpr const char* InterruptedOutcome = "Interrupted: the program had ended before the check";

MFCSequence SequenceOf(const RecordedSequence& recorded) {
    MFCSequence sequence;
    for (const RecordedStep& step : recorded.Steps)
        sequence.AddStep(step.Plan.Ch1Demand, step.Plan.Ch2Demand, step.Plan.Duration_s);
    for (std::size_t index = 0; index < recorded.Steps.size(); ++index)
        sequence.AddSamples(static_cast<std::int32_t>(index), recorded.Steps[index].Samples,
                            recorded.Steps[index].Ended);
    return sequence;
}

} // namespace

RecordedHealthCheck::RecordedHealthCheck(ReportTools tools, std::string_view text)
    : m_Tools(std::move(tools)), m_Outcome(InterruptedOutcome) {
    ReadJournalLines(text, [this](const SingleJson& line) { Take(line); });
}

void RecordedHealthCheck::Take(const SingleJson& line) {
    Require(!m_Ended, "it stands behind the end of the run");
    Require(!m_Measured || line.contains("end"), "it stands behind what was measured");
    if (!m_HasHeader)
        TakeHeader(line);
    else if (line.contains("sequence"))
        TakeSequence(line);
    else if (line.contains("step"))
        TakeStep(line);
    else if (line.contains("samples"))
        TakeSamples(line.at("samples"));
    else if (line.contains("sequenceEnd"))
        TakeSequenceEnd(line);
    else if (line.contains("measured"))
        TakeMeasured(line);
    else if (line.contains("end"))
        TakeEnd(line);
    else
        throw std::runtime_error("it says nothing that is known");
}

void RecordedHealthCheck::TakeHeader(const SingleJson& line) {
    m_Header = HeaderOf(line);
    m_Options = line.at("options").get<std::vector<std::string>>();
    if (line.contains("limits")) { // checks of earlier versions had the usual ones
        const SingleJson& limits = line.at("limits");
        m_Limits = {AsInSheet(SingleOf(limits.at("endValue_share"))),
                    AsInSheet(SingleOf(limits.at("fullScale_bits")))};
    }
    m_MeasuredAt = m_Header.Start;
    m_HasHeader = true;
}

void RecordedHealthCheck::TakeSequence(const SingleJson& line) {
    Require(!m_InSequence, "the sequence before it has no end");
    RecordedSequence sequence{line.at("sequence").get<std::string>(), {}};
    for (const RecordedSequence& before : m_Sequences)
        Require(before.Sheet != sequence.Sheet, "the sequence stands before it");
    for (const SingleJson& step : line.at("steps")) {
        const StepPlan plan{SingleOf(step.at(0)), SingleOf(step.at(1)), SingleOf(step.at(2))};
        const auto isShare = [](float demand) { return demand >= 0.0F && demand <= 1.0F; };
        Require(isShare(plan.Ch1Demand) && isShare(plan.Ch2Demand) && plan.Duration_s > 0.0F,
                "there is no such step");
        sequence.Steps.push_back({plan, {}, false});
    }
    m_Sequences.push_back(std::move(sequence));
    m_Begun = 0;
    m_InSequence = true;
}

void RecordedHealthCheck::TakeStep(const SingleJson& line) {
    Require(m_InSequence && m_Begun < m_Sequences.back().Steps.size(),
            "its step belongs to no sequence");
    Require(IntegerOf<std::size_t>(line.at("step")) == m_Begun,
            fmt::format("{} steps have begun before it", m_Begun));
    RequireSamples(line);
    EndSteps(m_Begun++);
}

void RecordedHealthCheck::RequireSamples(const SingleJson& line) {
    const bool tells = line.contains("recorded");
    Require(tells == m_TellSamples.value_or(tells), "it does not tell how much was recorded");
    m_TellSamples = tells;
    const std::size_t samples = m_Sequences.back().SampleCount();
    Require(!tells || IntegerOf<std::size_t>(line.at("recorded")) == samples,
            fmt::format("there are {} samples before it", samples));
}

void RecordedHealthCheck::EndSteps(std::size_t count) {
    for (std::size_t index = 0; index < count; ++index)
        m_Sequences.back().Steps[index].Ended = true;
}

void RecordedHealthCheck::TakeSequenceEnd(const SingleJson& line) {
    Require(m_InSequence, "it ends no sequence");
    RequireSamples(line);
    m_MeasuredAt = DateOf(line.at("sequenceEnd"));
    if (line.contains("ended")) { // checks of earlier versions do not say
        const auto ended = IntegerOf<std::size_t>(line.at("ended"));
        // The last step that has begun may have been left.
        Require(ended == m_Begun || ended + 1 == m_Begun,
                fmt::format("{} steps have begun before it", m_Begun));
        EndSteps(ended);
    }
    m_InSequence = false;
}

void RecordedHealthCheck::TakeMeasured(const SingleJson& line) {
    Require(!m_InSequence, "the sequence before it has no end");
    Require(!m_Sequences.empty(), "nothing was measured before it");
    DateOf(line.at("measured"));
    m_Outcome = line.at("outcome").get<std::string>();
    const bool isWhole = m_Outcome == HealthCheckLayout::Overview::Completed;
    for (const RecordedSequence& sequence : m_Sequences)
        Require(!isWhole || !m_TellSamples.value_or(false) ||
                    SequenceOf(sequence).MeasuredCount() == std::ssize(sequence.Steps),
                fmt::format("not all steps of \"{}\" were measured", sequence.Sheet));
    m_Measured = true;
}

void RecordedHealthCheck::TakeEnd(const SingleJson& line) {
    Require(m_Measured || m_Sequences.empty(), "it ends a run that was not measured to its end");
    DateOf(line.at("end"));
    m_Ended = true;
}

void RecordedHealthCheck::TakeSamples(const SingleJson& samples) {
    Require(m_InSequence && m_Begun > 0, "its samples belong to no step");
    std::vector<MFCStep::Sample>& taken = m_Sequences.back().Steps[m_Begun - 1].Samples;
    for (const SingleJson& figures : samples) {
        MFCStep::Sample sample{};
        Require(figures.size() == sample.size(), "its samples are not whole");
        for (std::size_t column = 0; column < sample.size(); ++column)
            sample[column] = IntegerOf<std::int32_t>(figures.at(column));
        Require(taken.empty() || taken.back()[0] <= sample[0], "its samples go back in time");
        taken.push_back(sample);
    }
}

std::size_t RecordedSequence::SampleCount() const {
    return std::accumulate(
        Steps.begin(), Steps.end(), std::size_t{0},
        [](std::size_t count, const RecordedStep& step) { return count + step.Samples.size(); });
}

std::size_t RecordedHealthCheck::SampleCount() const {
    return std::accumulate(m_Sequences.begin(), m_Sequences.end(), std::size_t{0},
                           [](std::size_t count, const RecordedSequence& sequence) {
                               return count + sequence.SampleCount();
                           });
}

std::string RecordedHealthCheck::Describe() const {
    return fmt::format("Health Check of {}, {}: {} sequences, {} samples",
                       m_Header.Unit.SerialNumberStr(), IsoText(m_Header.Start), m_Sequences.size(),
                       SampleCount());
}

RemadeReport RecordedHealthCheck::MakeReport() const {
    if (!HasReport())
        return {};
    HealthCheckReport report(m_Tools);
    if (!report.Open().empty())
        return {{}, false};
    for (const RecordedSequence& sequence : m_Sequences)
        SequenceOf(sequence).ExportToWorkbook(m_Header.Unit, m_MeasuredAt, report.Book(),
                                              sequence.Sheet, report.OverviewRow());
    const HealthCheckReport::Saved saved = report.Save(m_Header.Unit, m_MeasuredAt, m_Outcome);
    RemadeReport remade{{}, saved.Error.empty()};
    if (saved.File)
        remade.Files.push_back(*saved.File);
    return remade;
}

bool RecordedHealthCheck::NoteInterruption(Platform& world,
                                           const std::vector<std::string>& files) const {
    WriteLog(world, "Interrupted: " + Describe());
    HealthCheckFigures check;
    check.Outcome = m_Outcome;
    check.Options = m_Options;
    for (const RecordedSequence& recorded : m_Sequences)
        AddSequence(check, SequenceOf(recorded), recorded.Sheet, m_Limits);
    HistoryEntry entry = EntryOf(m_Header, m_Limits, std::move(check));
    entry.Files = files;
    // The program may have ended between a check's entry and the end of its journal.
    return m_Sequences.empty() || IsInHistory(world.Files, entry) ||
           AppendToHistory(world, std::move(entry));
}

void AddHealthCheckReader(JournalReaders& readers, const ReportTools& tools) {
    readers.Add(HealthCheckKind, [tools](std::string_view text) {
        return std::make_unique<RecordedHealthCheck>(tools, text);
    });
}

} // namespace ombrix
