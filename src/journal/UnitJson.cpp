#include "journal/UnitJson.h"

#include "platform/text/OleDate.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <cstdio>

namespace ombrix {

namespace {

/// Those of the air channels; a unit has no others.
constexpr std::size_t KeptTables = 2;

template <std::size_t Size>
SingleJson ListJson(const std::array<float, Size>& values) {
    SingleJson list = SingleJson::array();
    for (const float value : values)
        list.push_back(ToJson(value));
    return list;
}

template <std::size_t Size>
void Fill(std::array<float, Size>& values, const SingleJson& list) {
    for (std::size_t i = 0; i < Size; ++i)
        values.at(i) = SingleOf(list.at(i));
}

/// The dates of a record with their names in files.
template <class Record>
auto DatesOf(Record& record) {
    return std::array{std::pair{"velocitySystem", &record.VelocitySystemDate},
                      std::pair{"velocityAudit", &record.VelocityAuditDate},
                      std::pair{"pressureSystem", &record.PressureSystemDate},
                      std::pair{"pressureAudit", &record.PressureAuditDate}};
}

} // namespace

SingleJson DateJson(OleDate date) {
    return date != OleDate() && date.ToCivil() ? SingleJson(DateText(date, "yyyy-mm-ddThh:nn:ss"))
                                               : SingleJson();
}

OleDate DateOf(const SingleJson& json) {
    if (json.is_null())
        return {};
    CivilTime time;
    const auto text = json.get<std::string>();
    if (std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d", &time.Year, &time.Month, &time.Day,
                    &time.Hour, &time.Minute, &time.Second) == 6) {
        const OleDate date = OleDate::FromCivil(time);
        if (date.ToCivil() == time)
            return date;
    }
    throw std::runtime_error(fmt::format("\"{}\" is no date", text));
}

SingleJson UnitJson(const ACURecord& record) {
    SingleJson unit = {{"mfcNumber", Trimmed(record.MFCNumber)},
                       {"points", record.CalibrationPoints},
                       {"pressureConfig", record.DigitalPressureConfig},
                       {"valves", record.HasSolenoidValves},
                       {"capacity_ml_m", ListJson(record.ChannelCapacity)}};
    unit["tables"] = SingleJson::array();
    for (std::size_t channel = 0; channel < KeptTables; ++channel) {
        const ACUChannelCal& table = record.VelocityCal.at(channel);
        unit["tables"].push_back(
            {{"demand", table.Demand}, {"m", ListJson(table.M)}, {"c", ListJson(table.C)}});
    }
    unit["maxPressure_mBar"] = ToJson(record.MaxPressure);
    unit["base_mm"] = ToJson(record.BaseDiameter);
    unit["pressureCoefficients"] = ListJson(record.PressureCoeff);
    for (const auto& [name, date] : DatesOf(record))
        unit[name] = DateJson(*date);
    return unit;
}

ACURecord RecordOf(const SingleJson& json) {
    ACURecord record;
    record.MFCNumber = json.at("mfcNumber").get<std::string>();
    record.CalibrationPoints = IntegerOf<std::int32_t>(json.at("points"));
    // Older files lack it.
    record.DigitalPressureConfig =
        json.contains("pressureConfig") ? IntegerOf<std::int32_t>(json.at("pressureConfig")) : 0;
    record.HasSolenoidValves = IntegerOf<std::int32_t>(json.at("valves"));
    Fill(record.ChannelCapacity, json.at("capacity_ml_m"));
    for (std::size_t channel = 0; channel < KeptTables; ++channel) {
        const SingleJson& stored = json.at("tables").at(channel);
        ACUChannelCal& table = record.VelocityCal.at(channel);
        for (std::size_t point = 0; point < MaxCalibrationPoints; ++point)
            table.Demand.at(point) = IntegerOf<std::int32_t>(stored.at("demand").at(point));
        Fill(table.M, stored.at("m"));
        Fill(table.C, stored.at("c"));
    }
    record.MaxPressure = SingleOf(json.at("maxPressure_mBar"));
    record.BaseDiameter = SingleOf(json.at("base_mm"));
    Fill(record.PressureCoeff, json.at("pressureCoefficients"));
    for (const auto& [name, date] : DatesOf(record))
        *date = DateOf(json.at(name));
    return record;
}

} // namespace ombrix
