#include "terminal/RecordJson.h"

#include "platform/text/DateText.h"
#include "platform/text/Text.h"

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;

Json DateJson(OleDate date) {
    const bool isSet = date.Days() != 0.0 && date.ToCivil();
    return isSet ? Json(DateText(date, "yyyy-mm-ddThh:nn:ss")) : Json();
}

/// The shortest text that gives the Single again, not the digits of its widening to Double.
Json NumberJson(float value) {
    const auto number = ParseNumber(GeneralText(value));
    return number ? Json(*number) : Json();
}

template <std::size_t Size>
Json SinglesJson(const std::array<float, Size>& values) {
    Json list = Json::array();
    for (const float value : values)
        list.push_back(NumberJson(value));
    return list;
}

Json TablesJson(const std::array<ACUChannelCal, ACUChannels>& tables) {
    Json list = Json::array();
    for (const ACUChannelCal& table : tables)
        list.push_back(
            {{"Demand", table.Demand}, {"M", SinglesJson(table.M)}, {"C", SinglesJson(table.C)}});
    return list;
}

} // namespace

Json RecordJson(const ACURecord& record) {
    return {{"ACUInitialised", record.m_ACUInitialised},
            {"DataVersion", record.m_DataVersion},
            {"ChannelCapacity", SinglesJson(record.m_ChannelCapacity)},
            {"CalibrationPoints", record.m_CalibrationPoints},
            {"HasSolenoidValves", record.m_HasSolenoidValves},
            {"DigitalMFCConfig", record.m_DigitalMFCConfig},
            {"DigitalPressureConfig", record.m_DigitalPressureConfig},
            {"VelocityCal", TablesJson(record.m_VelocityCal)},
            {"VelocitySystemDate", DateJson(record.m_VelocitySystemDate)},
            {"VelocityAuditDate", DateJson(record.m_VelocityAuditDate)},
            {"VelocitySystemPassed", record.m_VelocitySystemPassed},
            {"VelocityAuditPassed", record.m_VelocityAuditPassed},
            {"VelocitySystemUser", Trimmed(record.m_VelocitySystemUser)},
            {"VelocityAuditUser", Trimmed(record.m_VelocityAuditUser)},
            {"MFCNumber", Trimmed(record.m_MFCNumber)},
            {"PressurePresentCode", record.m_PressurePresentCode},
            {"MaxPressure", NumberJson(record.m_MaxPressure)},
            {"BaseDiameter", NumberJson(record.m_BaseDiameter)},
            {"PressureCoeff", SinglesJson(record.m_PressureCoeff)},
            {"PressureSystemDate", DateJson(record.m_PressureSystemDate)},
            {"PressureAuditDate", DateJson(record.m_PressureAuditDate)},
            {"PressureSystemPassed", record.m_PressureSystemPassed},
            {"PressureAuditPassed", record.m_PressureAuditPassed},
            {"PressureSystemUser", Trimmed(record.m_PressureSystemUser)},
            {"PressureAuditUser", Trimmed(record.m_PressureAuditUser)},
            {"PressurePresent", record.m_PressurePresent},
            {"PressureScale", NumberJson(record.m_PressureScale)},
            {"PressureOffset", NumberJson(record.m_PressureOffset)},
            {"PressureSpan", NumberJson(record.m_PressureSpan)},
            {"PressureZero", record.m_PressureZero}};
}

} // namespace ombrix
