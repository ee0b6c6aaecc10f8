#include "calibration/history/RecordedRun.h"

#include "calibration/history/RunJson.h"
#include "calibration/judge/ChannelJudgement.h"
#include "calibration/report/AuditSheets.h"
#include "calibration/report/CalibrationReport.h"
#include "calibration/run/RunRecorder.h"
#include "calibration/unit/ACUCalibration.h"
#include "journal/JournalLines.h"
#include "platform/text/OleDate.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace ombrix {

namespace {

/// Puts a run together, line by line.
class JournalReader {
  public:
    /// @param world for the judgement's log, which is not opened: the run has told it already
    explicit JournalReader(Platform& world) : m_Log(world) {}

    void Take(const SingleJson& line);
    RecordedRun Finish();

  private:
    struct OpenReading {
        std::string Sweep;
        std::size_t Point = 0;
        PointDemand Demand;
        PointReading Reading;
    };

    void TakeHeader(const SingleJson& line);
    void TakeChannel(const SingleJson& line);
    void TakeReading(const SingleJson& line);
    void TakeSamples(const SingleJson& samples);
    void TakeResult(const SingleJson& line);
    void TakeMeasured(const SingleJson& line);
    void Store();
    ChannelMeasurement& Channel() { return m_Run.Velocity.Channels.at(m_Channel); }

    CalibrationLog m_Log;
    RecordedRun m_Run;
    bool m_HasHeader = false;
    std::size_t m_Channel = 0;
    std::optional<OpenReading> m_Open;
};

void JournalReader::Take(const SingleJson& line) {
    if (!m_HasHeader)
        TakeHeader(line);
    else if (line.contains("channel"))
        TakeChannel(line);
    else if (line.contains("reading"))
        TakeReading(line);
    else if (line.contains("samples"))
        TakeSamples(line.at("samples"));
    else if (line.contains("result"))
        TakeResult(line);
    else if (line.contains("judged"))
        JudgeChannel(Channel(), m_Run.Velocity.Kind, m_Channel, m_Log);
    else if (line.contains("measured"))
        TakeMeasured(line);
    else if (line.contains("auditSheet"))
        m_Run.AuditSheet = line.at("auditSheet").get<bool>();
    else if (line.contains("stored"))
        m_Run.Left = UnitOf(line.at("stored"));
    else if (line.contains("end"))
        m_Run.Ended = true;
    else
        throw std::runtime_error("it says nothing that is known");
}

void JournalReader::TakeHeader(const SingleJson& line) {
    const JournalHeader header = HeaderOf(line);
    m_Run.Kind = KindOf(line.at("kind"));
    m_Run.Velocity.Kind = CalibrationKindOf(m_Run.Kind);
    m_Run.Unattended = line.at("unattended").get<bool>();
    m_Run.Start = m_Run.MeasuredAt = header.Start;
    m_Run.Program = header.Program;
    m_Run.Serial = header.Serial;
    m_Run.Unit = header.Unit;
    m_HasHeader = true;
}

void JournalReader::TakeChannel(const SingleJson& line) {
    m_Channel = line.at("channel").get<std::size_t>();
    ChannelMeasurement& channel = Channel();
    channel.Capacity_ml_m = SingleOf(line.at("capacity_ml_m"));
    for (const SingleJson& demand : line.at("demands"))
        channel.Demand.push_back(DemandOf(demand));
    channel.Rising.resize(channel.Demand.size());
    channel.Falling.resize(channel.Demand.size());
}

void JournalReader::TakeReading(const SingleJson& line) {
    m_Open = OpenReading{line.at("reading").get<std::string>(),
                         line.at("point").get<std::size_t>(),
                         DemandOf(line.at("demand")),
                         {}};
    if (m_Open->Sweep == Sweeps::Rising || m_Open->Sweep == Sweeps::Falling)
        Channel().Demand.at(m_Open->Point) = m_Open->Demand;
}

void JournalReader::TakeSamples(const SingleJson& samples) {
    for (const SingleJson& sample : samples)
        m_Open.value().Reading.Trace.push_back(
            {SingleOf(sample.at(0)), sample.at(1).get<std::int32_t>()});
}

void JournalReader::TakeResult(const SingleJson& line) {
    PointReading& reading = m_Open.value().Reading;
    const PointDemand result = DemandOf(line.at("result"));
    reading.Reading_bits = result.Bits;
    reading.Flow_ml_m = result.Flow_ml_m;
    reading.Valid = line.at("valid").get<bool>();
    Store();
}

void JournalReader::TakeMeasured(const SingleJson& line) {
    // An error took the reading that had begun from the run as well.
    m_Open.reset();
    m_Run.MeasuredAt = DateOf(line.at("measured"));
    m_Run.Passed = line.at("passed").get<bool>();
    m_Run.Complete = line.at("complete").get<bool>();
}

void JournalReader::Store() {
    const OpenReading open = *std::exchange(m_Open, std::nullopt);
    if (open.Sweep == Sweeps::Rising)
        Channel().Rising.at(open.Point) = open.Reading;
    else if (open.Sweep == Sweeps::Falling)
        Channel().Falling.at(open.Point) = open.Reading;
    else if (open.Sweep == Sweeps::Step)
        Channel().Steps.push_back(
            {static_cast<std::int32_t>(open.Point), open.Demand, open.Reading});
    else if (open.Reading.Valid)
        m_Run.Pressure.push_back({open.Demand.Flow_ml_m, open.Reading.Flow_ml_m});
}

RecordedRun JournalReader::Finish() {
    // The reading in the making of a run that was cut off has its trace, if no result.
    if (m_Open)
        Store();
    return std::move(m_Run);
}

} // namespace

RecordedRun ReadJournal(Platform& world, std::string_view text) {
    JournalReader reader(world);
    ReadJournalLines(text, [&reader](const SingleJson& line) { reader.Take(line); });
    return reader.Finish();
}

namespace {

std::size_t ReadingsOf(const VelocityMeasurement& measured) {
    std::size_t count = 0;
    for (const ChannelMeasurement& channel : measured.Channels) {
        for (const auto* sweep : {&channel.Rising, &channel.Falling})
            count += static_cast<std::size_t>(
                std::count_if(sweep->begin(), sweep->end(),
                              [](const PointReading& reading) { return reading.Valid; }));
    }
    return count;
}

} // namespace

std::string RecordedCalibration::Describe() const {
    const std::string points = IsVelocity(m_Run.Kind)
                                   ? fmt::format("{} readings", ReadingsOf(m_Run.Velocity))
                                   : fmt::format("{} points", m_Run.Pressure.size());
    return fmt::format("{} of ACU{:05}, {}: {}", TitleOf(m_Run.Kind), m_Run.Serial,
                       DateText(m_Run.Start, "dd/mm/yyyy hh:nn:ss"), points);
}

bool RecordedCalibration::HasReport() const {
    return MakesWorkbooks(m_Run.Kind);
}

RemadeReport RecordedCalibration::MakeReport(const CalibrationServices& services) const {
    return ombrix::MakeReport(services, m_Run);
}

bool RecordedCalibration::NoteInterruption(Platform& world,
                                           const std::vector<std::string>& files) const {
    HistoryEntry entry;
    entry.Kind = m_Run.Kind;
    entry.When = m_Run.Start;
    entry.Program = m_Run.Program;
    entry.Serial = m_Run.Serial;
    entry.Verdict = Verdicts::Interrupted;
    entry.Found = m_Run.Unit;
    entry.Left = m_Run.Left;
    entry.Velocity = m_Run.Velocity;
    entry.Pressure = m_Run.Pressure;
    entry.Files = files;
    // The program may have ended between a run's entry and the end of its journal.
    return IsInHistory(world.Files, entry) || AppendToHistory(world, entry);
}

namespace {

/// While it lives, workbooks are saved into a folder that is not there yet.
class OwnSaveFolder {
  public:
    OwnSaveFolder(Station& station, const clsACUCalibration& record)
        : m_Station(station),
          m_Usual(std::exchange(station.g_AutoSaveFolder, AutoSaveFolderName(station, record))) {
        const std::string name = station.g_AutoSaveFolder;
        for (int number = 2; station.World.Files.FolderExists(station.g_AutoSaveFolder); ++number)
            station.g_AutoSaveFolder = fmt::format("{} ({})", name, number);
    }
    OwnSaveFolder(const OwnSaveFolder&) = delete;
    OwnSaveFolder& operator=(const OwnSaveFolder&) = delete;
    ~OwnSaveFolder() { m_Station.g_AutoSaveFolder = std::move(m_Usual); }

  private:
    Station& m_Station;
    std::string m_Usual;
};

CalibrationServices At(const CalibrationServices& services, OleDate date) {
    CalibrationServices dated = services;
    dated.DateOfReports = date;
    return dated;
}

/// Nobody has declined the sheet of an audit that was cut off when all had been measured.
bool WantsAuditSheet(const RecordedRun& run) {
    return CalibrationKindOf(run.Kind) == CalibrationKind::Audit &&
           run.AuditSheet.value_or(!run.Ended && run.Complete);
}

void MakeVelocityReport(const CalibrationServices& services, const clsACUCalibration& record,
                        const RecordedRun& run, RemadeReport& remade) {
    const CalibrationServices atStart = At(services, run.Start);
    CalibrationReport report(atStart, record);
    if (!report.Open(run.Velocity.Kind)) {
        remade.AllStored = false;
        return;
    }
    report.Fill(run.Velocity, run.Passed);
    if (WantsAuditSheet(run))
        AddWorkbook(remade, CreateAuditSheet_PV16(At(services, run.MeasuredAt), record,
                                                  run.Velocity, true));
    AddWorkbook(remade, report.Save(run.Velocity.Kind));
}

void MakePressureSheet(const CalibrationServices& services, const clsACUCalibration& record,
                       const RecordedRun& run, RemadeReport& remade) {
    std::array<float, 5> flows_ml_m{};
    for (std::size_t i = 0; i < std::min(run.Pressure.size(), flows_ml_m.size()); ++i)
        flows_ml_m.at(i) = run.Pressure.at(i).Flow_ml_m;
    AddWorkbook(remade,
                CreateAuditSheet_PV17(At(services, run.MeasuredAt), record, flows_ml_m, true));
}

} // namespace

RemadeReport MakeReport(const CalibrationServices& services, const RecordedRun& run) {
    Station& station = services.TheStation;
    const clsACUCalibration record(station.World, station.Claims, run.Unit, run.Serial);
    const OwnSaveFolder folder(station, record);
    RemadeReport remade;
    if (IsVelocity(run.Kind))
        MakeVelocityReport(services, record, run, remade);
    else if (WantsAuditSheet(run) || (!run.Ended && run.Kind == RunKind::PressureAudit))
        MakePressureSheet(services, record, run, remade);
    return remade;
}

} // namespace ombrix
