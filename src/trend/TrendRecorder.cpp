#include "trend/TrendRecorder.h"

#include "platform/text/OleDate.h"

#include <fmt/format.h>

#include <cmath>

namespace ombrix {

namespace {

constexpr double Kept_s = 86400.0;
constexpr double LeastSpacing_s = 0.02;

std::string NameOf(const BoardNote& note) {
    const std::int32_t serial = note.Board.SerialNumber();
    switch (note.What) {
    case BoardNote::Subject::Input: return fmt::format("Input {} of {}", note.Channel, serial);
    case BoardNote::Subject::Output: return fmt::format("Output {} of {}", note.Channel, serial);
    case BoardNote::Subject::Pressure: break;
    }
    return fmt::format("Pressure register of {}", serial);
}

TrendSubject SubjectOf(const BoardNote& note) {
    if (note.What == BoardNote::Subject::Pressure)
        return TrendSubject::PressureRegister;
    if (note.Channel == 0 || note.Channel == 1)
        return note.Channel == 0 ? TrendSubject::Channel1 : TrendSubject::Channel2;
    const bool isSensor =
        note.What == BoardNote::Subject::Input && note.Channel == ACUWiring::PressureInput;
    return isSensor ? TrendSubject::Pressure : TrendSubject::Other;
}

} // namespace

TrendRecorder::TrendRecorder(Station& station)
    : m_Station(station), m_Start_s(MonotonicSeconds(station.World.Time)) {
    m_Data.Title = "Live since " + IsoText(station.World.Time.Now());
    m_Notes = station.Feed.Listen([this](const BoardNote& note) { Take(note); });
}

double TrendRecorder::Now_s() const {
    return MonotonicSeconds(m_Station.World.Time) - m_Start_s;
}

const TrendData& TrendRecorder::Recorded() {
    const ACU unit = m_Station.Calibration().Unit();
    m_Data.Scales = TrendScales::Of(unit, unit.SerialNumberStr() + ", the current board");
    return m_Data;
}

std::size_t TrendRecorder::GroupOf(const BoardNote& note) {
    const auto [place, isNew] = m_Groups.try_emplace(
        {note.Board.SerialNumber(), note.What, note.Channel}, m_Data.Groups.size());
    if (isNew) {
        const bool isHeld = note.What == BoardNote::Subject::Output;
        m_Data.Groups.emplace_back().Traces.push_back(
            {NameOf(note), SubjectOf(note), isHeld, note.Board.SerialNumber()});
    }
    return place->second;
}

void TrendRecorder::Take(const BoardNote& note) {
    TrendGroup& group = m_Data.Groups[GroupOf(note)];
    const TrendTrace& trace = group.Traces.front();
    const double time_s = note.Time_s - m_Start_s;
    const float value = note.Value_bits ? static_cast<float>(*note.Value_bits)
                                        : std::numeric_limits<float>::quiet_NaN();
    if (group.Times.Empty() || trace.Held) {
        Append(group, time_s, value);
        return;
    }
    const double since_s = time_s - group.Times.Last();
    if (since_s > LongestSilence_s)
        Append(group, group.Times.Last(), std::numeric_limits<float>::quiet_NaN());
    // One that is not answered counts, however soon it is.
    if (since_s >= LeastSpacing_s || std::isnan(value) != std::isnan(trace.Values.Last()))
        Append(group, time_s, value);
}

void TrendRecorder::Append(TrendGroup& group, double time_s, float value) {
    group.Times.Append(time_s);
    TrendTrace& trace = group.Traces.front();
    trace.Append(value);
    if (group.Times.Size() % TrendColumn<float>::ChunkSize != 0)
        return;
    const std::size_t oldest = group.Times.IndexFrom(time_s - Kept_s);
    group.Times.DropBefore(oldest);
    trace.Values.DropBefore(oldest);
    trace.Pyramid.DropBefore(oldest);
}

} // namespace ombrix
