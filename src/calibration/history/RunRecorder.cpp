#include "calibration/history/RunRecorder.h"

#include "board/eprom/EpromImage.h"
#include "journal/UnitJson.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

/// The whole EPROM in hexadecimal, word by word; null when it cannot be read.
SingleJson EpromJson(AIB& board) {
    try {
        const EpromImage image = EpromImage::Read(board);
        std::string words;
        for (std::int32_t address = 0; address < EpromBytes; address += EpromWordBytes)
            words += fmt::format("{:08X}", static_cast<std::uint32_t>(image.Word(address)));
        return words;
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace

RunRecorder::RunRecorder(Station& station, RunKind kind)
    : m_Station(station), m_Kind(kind), m_Journal(station.World, "calibration"),
      m_Found(station.Calibration().Record()), m_Start(station.World.Time.Now()) {}

void RunRecorder::Begin(bool unattended, const ACURecord* found) {
    m_Begun = true;
    const ACU unit = m_Station.Calibration().Unit();
    m_Found = found != nullptr ? *found : unit.Record;
    m_Start = m_Station.World.Time.Now();
    AIB& board = *m_Station.CurrentAIB;
    SingleJson header = HeaderJson({NameOf(m_Kind), m_Start, m_Station.World.Program, unit}, board);
    header["unattended"] = unattended;
    header["eprom"] = EpromJson(board);
    if (found != nullptr)
        header["asFound"] = UnitJson(m_Found);
    m_Journal.Open(JournalName(unit.SerialNumberStr(), NameOf(m_Kind), m_Start), LineOf(header));
}

void RunRecorder::ChannelBegins(std::size_t channel, const ChannelMeasurement& measured) {
    SingleJson demands = SingleJson::array();
    for (const PointDemand& demand : measured.Demand)
        demands.push_back(DemandJson(demand));
    m_Journal.Add(LineOf({{"channel", channel},
                          {"capacity_ml_m", ToJson(measured.Capacity_ml_m)},
                          {"demands", std::move(demands)}}));
}

void RunRecorder::ReadingBegins(const char* sweep, std::size_t point, const PointDemand& demand,
                                double duration_s) {
    m_Reading = true;
    m_Journal.Add(LineOf({{"reading", sweep},
                          {"point", point},
                          {"demand", DemandJson(demand)},
                          {"seconds", ToJson(static_cast<float>(duration_s))}}));
}

void RunRecorder::Sample(const TraceSample& sample) {
    if (m_Reading)
        m_Journal.Sample(SingleJson{ToJson(sample.Time_s), sample.Reading_bits}.dump());
}

void RunRecorder::Sample(const PressureSample& sample) {
    SingleJson values = {ToJson(sample.Time_s), sample.Reading_bits};
    if (m_Kind == RunKind::PressureAudit)
        values.push_back(ToJson(sample.Pressure_mBar));
    if (m_Reading)
        m_Journal.Sample(values.dump());
}

void RunRecorder::ReadingEnds(const PointReading& reading) {
    m_Reading = false;
    m_Journal.Add(LineOf({{"result", DemandJson({reading.Reading_bits, reading.Flow_ml_m})},
                          {"valid", reading.Valid}}));
}

void RunRecorder::ChannelJudged() {
    m_Journal.Add(LineOf({{"judged", true}}));
}

void RunRecorder::NoteMeasured(bool passed, bool complete) {
    m_Journal.Add(LineOf({{"measured", DateJson(m_Station.World.Time.Now())},
                          {"passed", passed},
                          {"complete", complete}}));
}

void RunRecorder::NoteStored() {
    m_Stored = true;
    m_Journal.Add(LineOf({{"stored", UnitJson(m_Station.Calibration().Record())}}));
}

void RunRecorder::AuditSheet(bool wanted) {
    m_Journal.Add(LineOf({{"auditSheet", wanted}}));
}

bool RunRecorder::Finish(const Outcome& outcome, HistoryEntry entry) {
    Platform& world = m_Station.World;
    entry.Kind = m_Kind;
    entry.When = m_Start;
    entry.Program = world.Program;
    entry.Serial = m_Station.CurrentAIB->SerialNumber();
    entry.Verdict = VerdictOf(outcome.Ended);
    if (!outcome.Error.empty())
        entry.Reasons.push_back(outcome.Error.substr(0, outcome.Error.find("\r\n")));
    entry.Found = m_Found;
    if (m_Stored)
        entry.Left = m_Station.Calibration().Record();
    for (const std::filesystem::path& file : outcome.Files)
        entry.Files.push_back(file.string());
    // A journal without an end is offered again at the next start, a gap in the history is not.
    const bool stored = AppendToHistory(world, entry);
    m_Journal.Close(EndLine(world.Time.Now(), entry.Verdict, entry.Files));
    return stored;
}

} // namespace ombrix
