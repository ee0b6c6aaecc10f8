#include "trend/TrendData.h"

#include "board/unit/ACURecord.h"
#include "calibration/air/AirUnits.h"

#include <cmath>
#include <utility>

namespace ombrix {

namespace {

constexpr double HundredPercent = 100.0;

} // namespace

const char* NameOf(TrendUnit unit) {
    switch (unit) {
    case TrendUnit::Bits: return "bits";
    case TrendUnit::Percent: return "% of full scale";
    case TrendUnit::Flow_ml_m: return "ml/min";
    case TrendUnit::Pressure_mBar: break;
    }
    return "mBar";
}

TrendScales TrendScales::Of(const ACU& unit, std::string source) {
    constexpr std::int32_t analogSensor = 0;
    TrendScales scales;
    const ACURecord& record = unit.Record;
    for (std::size_t channel = 0; channel < scales.Capacity_ml_m.size(); ++channel) {
        if (record.ChannelCapacity.at(channel) > 0.0F)
            scales.Capacity_ml_m.at(channel) = record.ChannelCapacity.at(channel);
    }
    if (record.DigitalPressureConfig == analogSensor && record.MaxPressure > 0.0F)
        scales.MaxPressure_mBar = record.MaxPressure;
    scales.Serial = unit.Serial;
    scales.Source = std::move(source);
    return scales;
}

std::optional<TrendConversion> TrendScales::Of(TrendSubject subject, TrendUnit unit) const {
    if (unit == TrendUnit::Bits)
        return TrendConversion{};
    if (unit == TrendUnit::Percent)
        return TrendConversion{HundredPercent / FullScale_bits, 0.0};
    if (unit == TrendUnit::Flow_ml_m &&
        (subject == TrendSubject::Channel1 || subject == TrendSubject::Channel2)) {
        const auto& capacity = Capacity_ml_m[subject == TrendSubject::Channel1 ? 0 : 1];
        if (capacity)
            return TrendConversion{static_cast<double>(*capacity) / FullScale_bits, 0.0};
    }
    if (unit == TrendUnit::Pressure_mBar && subject == TrendSubject::Pressure && MaxPressure_mBar) {
        ACURecord sensor;
        sensor.MaxPressure = *MaxPressure_mBar;
        sensor.CalculatePressureScaling();
        return TrendConversion{static_cast<double>(sensor.PressureScale),
                               static_cast<double>(sensor.PressureOffset)};
    }
    return std::nullopt;
}

std::optional<TrendConversion> TrendTrace::In(TrendUnit unit, const TrendScales& scales) const {
    if (Subject == TrendSubject::Pressure_mBar)
        return unit == TrendUnit::Pressure_mBar ? std::optional(TrendConversion{}) : std::nullopt;
    const bool isOfTheBoard = unit == TrendUnit::Bits || unit == TrendUnit::Percent;
    // Another board has another unit behind it.
    if (!isOfTheBoard && Serial != 0 && Serial != scales.Serial)
        return std::nullopt;
    return scales.Of(Subject, unit);
}

void TrendTimes::Append(double time_s) {
    if (Size() % TrendColumn<float>::ChunkSize == 0)
        m_Bases.push_back(time_s);
    m_Offsets.Append(static_cast<float>(time_s - m_Bases.back()));
}

std::size_t TrendTimes::IndexFrom(double time_s) const {
    std::size_t from = First();
    std::size_t to = Size();
    while (from < to) {
        const std::size_t middle = from + (to - from) / 2;
        if ((*this)[middle] < time_s)
            from = middle + 1;
        else
            to = middle;
    }
    return from;
}

std::optional<float> TrendGroup::ValueAt(std::size_t trace, double time_s) const {
    std::size_t index = Times.IndexFrom(time_s);
    const bool isBehind = index == Times.Size();
    if (isBehind &&
        (Times.Empty() || (!Traces.at(trace).Held && time_s - Times.Last() > LongestSilence_s)))
        return std::nullopt;
    if (isBehind || Times[index] > time_s) {
        if (index == Times.First())
            return std::nullopt;
        --index;
    }
    const float value = Traces.at(trace).Values[index];
    return std::isnan(value) ? std::nullopt : std::optional(value);
}

double TrendData::Begin_s() const {
    double begin_s = std::numeric_limits<double>::infinity();
    for (const TrendGroup& group : Groups) {
        if (!group.Times.Empty())
            begin_s = std::min(begin_s, group.Times[group.Times.First()]);
    }
    return Empty() ? 0.0 : begin_s;
}

double TrendData::End_s() const {
    double end_s = -std::numeric_limits<double>::infinity();
    for (const TrendGroup& group : Groups) {
        if (!group.Times.Empty())
            end_s = std::max(end_s, group.Times.Last());
    }
    return Empty() ? 0.0 : end_s;
}

std::size_t TrendData::TraceCount() const {
    std::size_t count = 0;
    for (const TrendGroup& group : Groups)
        count += group.Traces.size();
    return count;
}

bool TrendData::Empty() const {
    return std::all_of(Groups.begin(), Groups.end(),
                       [](const TrendGroup& group) { return group.Times.Empty(); });
}

std::size_t TrendData::Bytes() const {
    std::size_t bytes = 0;
    for (const TrendGroup& group : Groups) {
        bytes += group.Times.Bytes();
        for (const TrendTrace& trace : group.Traces)
            bytes += trace.Values.Bytes() + trace.Pyramid.Bytes();
    }
    return bytes;
}

} // namespace ombrix
