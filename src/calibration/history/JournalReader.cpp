#include "calibration/history/RecordedRun.h"
#include "calibration/history/RunRecorder.h"
#include "journal/UnitJson.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>
#include <utility>

namespace ombrix {

namespace {

/// Puts a run together, line by line.
class JournalReader {
  public:
    void Take(const SingleJson& line);
    RecordedRun Finish();

  private:
    struct OpenReading {
        std::string Sweep;
        std::size_t Point = 0;
        PointDemand Demand;
        /// Journals of older versions do not tell it.
        std::optional<double> Duration_s;
        PointReading Reading{};
        std::vector<PressureSample> Pressures{};
    };

    void TakeHeader(const SingleJson& line);
    void TakeChannel(const SingleJson& line);
    void TakeReading(const SingleJson& line);
    void TakeSamples(const SingleJson& samples);
    void TakeResult(const SingleJson& line);
    void TakeJudged();
    void TakeMeasured(const SingleJson& line);
    void TakeEnd(const SingleJson& line);
    /// Whether what was measured is a pass, by the run's own rules.
    bool MadePass() const;
    /// @throws std::runtime_error when such a line has no business here
    void RequirePlace(const SingleJson& line);
    /// @throws std::runtime_error when a reading of the sweep has no result
    void RequireAll(const char* sweep, std::size_t points) const;
    /// @throws std::runtime_error when a result is not what its samples make
    void CheckResult(const OpenReading& open);
    void Store();
    ChannelMeasurement& Channel() { return m_Run.Velocity.Measured.Channels.at(m_Channel); }

    RecordedRun m_Run;
    bool m_HasHeader = false;
    std::size_t m_Channel = 0;
    std::optional<OpenReading> m_Open;
    std::set<std::size_t> m_Begun;
    /// Lines of which a run has one, or one for each channel.
    std::set<std::string> m_Once;
    /// The readings tell how long they take; journals of older versions do not.
    std::optional<bool> m_TellDurations;
    /// A reading was called invalid that its samples make; a cancel does that.
    bool m_Withdrawn = false;
    /// The readings that have their result, by channel, sweep and point.
    std::set<std::tuple<std::size_t, std::string, std::size_t>> m_Ended;
};

void JournalReader::RequirePlace(const SingleJson& line) {
    Require(!m_Run.Ended, "it stands behind the end of the run");
    for (const char* key : {"measured", "auditSheet", "stored", "judged"}) {
        if (!line.contains(key))
            continue;
        const std::string once = key + (line.contains("judged") ? std::to_string(m_Channel) : "");
        Require(m_Once.insert(once).second, fmt::format("there is a line \"{}\" before it", key));
        return;
    }
    const bool ends = line.contains("end");
    Require(ends || !m_Once.contains("measured"), "it stands behind what was measured");
}

void JournalReader::Take(const SingleJson& line) {
    if (m_HasHeader)
        RequirePlace(line);
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
        TakeJudged();
    else if (line.contains("measured"))
        TakeMeasured(line);
    else if (line.contains("auditSheet"))
        m_Run.AuditSheet = line.at("auditSheet").get<bool>();
    else if (line.contains("stored"))
        m_Run.Left = RecordOf(line.at("stored"));
    else if (line.contains("end"))
        TakeEnd(line);
    else
        throw std::runtime_error("it says nothing that is known");
}

void JournalReader::TakeHeader(const SingleJson& line) {
    const JournalHeader header = HeaderOf(line);
    m_Run.Kind = KindOf(line.at("kind"));
    m_Run.Velocity.Measured.Kind = CalibrationKindOf(m_Run.Kind);
    m_Run.Unattended = line.at("unattended").get<bool>();
    m_Run.Start = m_Run.MeasuredAt = header.Start;
    m_Run.Program = header.Program;
    m_Run.Unit = header.Unit;
    m_Run.Found = line.contains("asFound") ? RecordOf(line.at("asFound")) : header.Unit.Record;
    m_HasHeader = true;
}

void JournalReader::TakeChannel(const SingleJson& line) {
    m_Channel = IntegerOf<std::size_t>(line.at("channel"));
    ChannelMeasurement& channel = Channel();
    Require(m_Begun.insert(m_Channel).second, "the channel has begun before");
    channel.Capacity_ml_m = SingleOf(line.at("capacity_ml_m"));
    for (const SingleJson& demand : line.at("demands"))
        channel.Demand.push_back(DemandOf(demand));
    channel.Rising.resize(channel.Demand.size());
    channel.Falling.resize(channel.Demand.size());
}

void JournalReader::TakeReading(const SingleJson& line) {
    OpenReading next{line.at("reading").get<std::string>(),
                     IntegerOf<std::size_t>(line.at("point")),
                     DemandOf(line.at("demand")),
                     {},
                     {},
                     {}};
    const bool tells = line.contains("seconds");
    Require(tells == m_TellDurations.value_or(tells),
            "it does not tell how long the reading takes");
    m_TellDurations = tells;
    if (tells)
        next.Duration_s = SingleOf(line.at("seconds"));
    // A step begins twice: with its wait at zero, and with its demand.
    Require(!m_Open || (m_Open->Sweep == next.Sweep && m_Open->Point == next.Point &&
                        m_Open->Reading.Trace.empty()),
            "the reading before it has no result");
    m_Open = std::move(next);
    if (m_Open->Sweep == Sweeps::Rising || m_Open->Sweep == Sweeps::Falling)
        Channel().Demand.at(m_Open->Point) = m_Open->Demand;
}

void JournalReader::TakeSamples(const SingleJson& samples) {
    Require(m_Open.has_value(), "its samples belong to no reading");
    OpenReading& open = *m_Open;
    for (const SingleJson& sample : samples) {
        const float time_s = SingleOf(sample.at(0));
        Require(open.Reading.Trace.empty() || open.Reading.Trace.back().Time_s <= time_s,
                "its samples go back in time");
        const auto bits = IntegerOf<std::int32_t>(sample.at(1));
        open.Reading.Trace.push_back({time_s, bits});
        open.Pressures.push_back({time_s, bits, sample.size() > 2 ? SingleOf(sample.at(2)) : 0.0F});
    }
}

void JournalReader::TakeResult(const SingleJson& line) {
    Require(m_Open.has_value(), "its result belongs to no reading");
    Require(m_Ended.insert({m_Channel, m_Open->Sweep, m_Open->Point}).second,
            "the reading has a result before");
    PointReading& reading = m_Open->Reading;
    const PointDemand result = DemandOf(line.at("result"));
    reading.Reading_bits = result.Bits;
    reading.Flow_ml_m = result.Flow_ml_m;
    reading.Valid = line.at("valid").get<bool>();
    CheckResult(*m_Open);
    Store();
}

void JournalReader::CheckResult(const OpenReading& open) {
    if (!open.Duration_s)
        return;
    PointReading made = open.Reading;
    made.Valid = false;
    if (IsVelocity(m_Run.Kind))
        TakeMeans(made, *open.Duration_s, Channel().Capacity_ml_m);
    else
        made.Flow_ml_m = MeanOf(open.Pressures, CalibrationKindOf(m_Run.Kind)).value_or(NAN);
    if (!open.Reading.Valid) {
        m_Withdrawn = m_Withdrawn || made.Valid;
        return;
    }
    Require(made.Reading_bits == open.Reading.Reading_bits &&
                made.Flow_ml_m == open.Reading.Flow_ml_m,
            "its result is not the mean of its samples");
}

void JournalReader::RequireAll(const char* sweep, std::size_t points) const {
    for (std::size_t point = 0; point < points; ++point)
        Require(m_Ended.contains({m_Channel, sweep, point}),
                fmt::format("there is no result of point {}, {}", point, sweep));
}

void JournalReader::TakeJudged() {
    Require(!m_Open, "the reading before it has no result");
    RequireAll(Sweeps::Rising, Channel().Demand.size());
    RequireAll(Sweeps::Falling, Channel().Demand.size());
    for (const std::int32_t step : StepPoints) {
        const auto point = static_cast<std::size_t>(step);
        Require(point >= Channel().Demand.size() ||
                    m_Ended.contains({m_Channel, Sweeps::Step, point}),
                fmt::format("there is no result of point {}, {}", point, Sweeps::Step));
    }
    Require(!m_Withdrawn, "a reading of the channel is called invalid, against its samples");
    m_Run.Velocity.Verdicts.at(m_Channel) =
        JudgeChannel(Channel(), m_Run.Velocity.Measured.Kind, m_Channel);
}

void JournalReader::TakeMeasured(const SingleJson& line) {
    m_Run.MeasuredAt = DateOf(line.at("measured"));
    m_Run.Passed = line.at("passed").get<bool>();
    m_Run.Complete = line.at("complete").get<bool>();
    Require(!m_Open || !m_Run.Complete, "the reading before it has no result");
    if (m_Run.Complete && !IsVelocity(m_Run.Kind))
        RequireAll(Sweeps::Pressure, PressurePointCount);
    Require(!m_Run.Complete || m_Run.Passed == MadePass(),
            "the verdict is not that of what was measured");
    // An error took the reading that had begun from the run as well.
    m_Open.reset();
}

void JournalReader::TakeEnd(const SingleJson& line) {
    const auto verdict = line.at("verdict").get<std::string>();
    Require(m_Once.contains("measured") ||
                (verdict != VerdictOf(End::Passed) && verdict != VerdictOf(End::Failed)),
            "it ends a run that nothing was measured in");
    m_Run.Ended = true;
}

bool JournalReader::MadePass() const {
    if (IsVelocity(m_Run.Kind))
        return ReasonOfFailure(m_Run.Velocity).empty();
    Require(m_Run.Pressure.size() == PressurePointCount, "a point is called invalid");
    const bool isAudit = CalibrationKindOf(m_Run.Kind) == CalibrationKind::Audit;
    return (isAudit ? CheckPressure(m_Run.Pressure, PressureBase_mm) : FitPressure(m_Run.Pressure))
        .Passed;
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

RecordedRun ReadJournal(std::string_view text) {
    JournalReader reader;
    ReadJournalLines(text, [&reader](const SingleJson& line) { reader.Take(line); });
    return reader.Finish();
}

} // namespace ombrix
