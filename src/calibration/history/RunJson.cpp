#include "calibration/history/RunJson.h"

#include "platform/text/OleDate.h"
#include "platform/text/Text.h"

#include <cstdio>

namespace ombrix {

namespace {

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
    return std::array{std::pair{"velocitySystem", &record.m_VelocitySystemDate},
                      std::pair{"velocityAudit", &record.m_VelocityAuditDate},
                      std::pair{"pressureSystem", &record.m_PressureSystemDate},
                      std::pair{"pressureAudit", &record.m_PressureAuditDate}};
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
    if (std::sscanf(json.get<std::string>().c_str(), "%d-%d-%dT%d:%d:%d", &time.Year, &time.Month,
                    &time.Day, &time.Hour, &time.Minute, &time.Second) != 6)
        throw std::runtime_error("a date cannot be read");
    return OleDate::FromCivil(time);
}

RunKind KindOf(const SingleJson& json) {
    const auto kind = RunKindNamed(json.get<std::string>());
    if (!kind)
        throw std::runtime_error("it is of no kind that is known");
    return *kind;
}

SingleJson UnitJson(const ACURecord& record) {
    SingleJson unit = {{"mfcNumber", Trimmed(record.m_MFCNumber)},
                       {"points", record.m_CalibrationPoints},
                       {"pressureConfig", record.m_DigitalPressureConfig},
                       {"valves", record.m_HasSolenoidValves},
                       {"capacity_ml_m", ListJson(record.m_ChannelCapacity)}};
    unit["tables"] = SingleJson::array();
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const ACUChannelCal& table = record.m_VelocityCal.at(channel);
        unit["tables"].push_back(
            {{"demand", table.Demand}, {"m", ListJson(table.M)}, {"c", ListJson(table.C)}});
    }
    unit["maxPressure_mBar"] = ToJson(record.m_MaxPressure);
    unit["base_mm"] = ToJson(record.m_BaseDiameter);
    unit["pressureCoefficients"] = ListJson(record.m_PressureCoeff);
    for (const auto& [name, date] : DatesOf(record))
        unit[name] = DateJson(*date);
    return unit;
}

ACURecord UnitOf(const SingleJson& json) {
    ACURecord record;
    record.m_MFCNumber = json.at("mfcNumber").get<std::string>();
    record.m_CalibrationPoints = json.at("points").get<std::int32_t>();
    record.m_DigitalPressureConfig = json.value("pressureConfig", 0); // older files lack it
    record.m_HasSolenoidValves = json.at("valves").get<std::int32_t>();
    Fill(record.m_ChannelCapacity, json.at("capacity_ml_m"));
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const SingleJson& stored = json.at("tables").at(channel);
        ACUChannelCal& table = record.m_VelocityCal.at(channel);
        for (std::size_t point = 0; point < MaxCalibrationPoints; ++point)
            table.Demand.at(point) = stored.at("demand").at(point).get<std::int32_t>();
        Fill(table.M, stored.at("m"));
        Fill(table.C, stored.at("c"));
    }
    record.m_MaxPressure = SingleOf(json.at("maxPressure_mBar"));
    record.m_BaseDiameter = SingleOf(json.at("base_mm"));
    Fill(record.m_PressureCoeff, json.at("pressureCoefficients"));
    for (const auto& [name, date] : DatesOf(record))
        *date = DateOf(json.at(name));
    return record;
}

SingleJson DemandJson(const PointDemand& demand) {
    return {demand.Bits, ToJson(demand.Flow_ml_m)};
}

PointDemand DemandOf(const SingleJson& json) {
    return {json.at(0).get<std::int32_t>(), SingleOf(json.at(1))};
}

} // namespace ombrix
