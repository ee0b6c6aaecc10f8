#include "board/unit/RecordCoding.h"

#include "platform/text/Text.h"

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace Map = ACUMemoryMap;

namespace {

void WriteLong(EpromSink& to, std::int32_t address, std::int32_t value) {
    to.WriteEPROMLng(address, value);
}

void WriteText(EpromSink& to, std::int32_t address, std::int32_t length, const std::string& text) {
    to.WriteEPROMString(address, FixedWidth(text, static_cast<std::size_t>(length)), length);
}

void WriteDateUser(EpromSink& to, std::int32_t dateAddress, OleDate date,
                   std::int32_t passedAddress, std::int32_t passed, std::int32_t userAddress,
                   const std::string& user) {
    to.WriteEPROMDate(dateAddress, date);
    WriteLong(to, passedAddress, passed);
    WriteText(to, userAddress, Map::UserLength, user);
}

std::int32_t ReadLong(EpromSource& from, std::int32_t address) {
    std::int32_t value = 0;
    from.ReadEPROMLng(address, value);
    return value;
}

float ReadSingle(EpromSource& from, std::int32_t address) {
    float value = 0.0F;
    from.ReadEPROMSng(address, value);
    return value;
}

OleDate ReadDate(EpromSource& from, std::int32_t address) {
    OleDate value;
    from.ReadEPROMDate(address, value);
    return value;
}

std::string ReadText(EpromSource& from, std::int32_t address, std::int32_t length) {
    std::string value;
    from.ReadEPROMString(address, value, length);
    return FixedWidth(value, static_cast<std::size_t>(length));
}

/// An erased text is empty.
std::string ReadWrittenText(EpromSource& from, std::int32_t address, std::int32_t length) {
    const std::string text = ReadText(from, address, length);
    constexpr std::string_view erasedCharacter = "\u00FF";
    return FixedWidth(text.starts_with(erasedCharacter) ? "" : text,
                      static_cast<std::size_t>(length));
}

constexpr bool IsSet(OleDate date) {
    return date != OleDate();
}

void ReadVelocityTables(EpromSource& from, ACURecord& record) {
    // A damaged EPROM may claim any number of points.
    const auto points = static_cast<std::size_t>(
        std::clamp(record.CalibrationPoints, 0, static_cast<std::int32_t>(MaxCalibrationPoints)));
    for (std::size_t channel = 0; channel < ACUChannels; ++channel) {
        if (!(record.ChannelCapacity.at(channel) > 0.0F))
            continue;
        ACUChannelCal& table = record.VelocityCal.at(channel);
        std::int32_t address = Map::VelocityCal;
        for (std::size_t point = 0; point < points; ++point) {
            if (channel == 0)
                from.ReadEPROMLng(address, table.Demand.at(point));
            else
                table.Demand.at(point) = record.VelocityCal[0].Demand.at(point);
        }
        address = Map::VelocityCal + static_cast<std::int32_t>(channel) * Map::VelocityCalBytes +
                  Map::VelocityCalDemandBytes;
        for (std::size_t segment = 0; segment + 1 < points; ++segment) {
            from.ReadEPROMSng(address, table.M.at(segment));
            from.ReadEPROMSng(address, table.C.at(segment));
        }
    }
}

} // namespace

void WriteEPROM_Header(EpromSink& to, ACURecord& record, bool isFireWire) {
    record.DataVersion = 2;
    WriteLong(to, isFireWire ? Map::DataVersion_FireWire : Map::DataVersion_USB,
              record.DataVersion);
}

void WriteEPROM_MFCNumber(EpromSink& to, ACURecord& record, const std::string& mfcNumber) {
    if (!mfcNumber.empty())
        record.MFCNumber = FixedWidth(mfcNumber, static_cast<std::size_t>(Map::MFCNumberLength));
    WriteText(to, Map::MFCNumber, Map::MFCNumberLength, record.MFCNumber);
}

void WriteEPROM_VelocityHeader(EpromSink& to, const ACURecord& record) {
    std::int32_t address = Map::ChannelCapacity;
    for (const float capacity : record.ChannelCapacity)
        to.WriteEPROMSng(address, capacity);
    WriteLong(to, Map::CalibrationPoints, record.CalibrationPoints);
    WriteLong(to, Map::HasSolenoidValves, record.HasSolenoidValves);
}

void WriteEPROM_VelocitySystem(EpromSink& to, const ACURecord& record, std::int32_t channel) {
    const ACUChannelCal& table = record.VelocityCal.at(static_cast<std::size_t>(channel));
    std::int32_t address = Map::VelocityCal;
    if (channel == 0) {
        for (const std::int32_t demand : table.Demand)
            to.WriteEPROMLng(address, demand);
    }
    address = Map::VelocityCal + channel * Map::VelocityCalBytes + Map::VelocityCalDemandBytes;
    for (std::size_t segment = 0; segment < MaxCalibrationSegments; ++segment) {
        to.WriteEPROMSng(address, table.M.at(segment));
        to.WriteEPROMSng(address, table.C.at(segment));
    }
}

void WriteEPROM_VelocityDateUserSystem(EpromSink& to, const ACURecord& record) {
    WriteDateUser(to, Map::VelocitySystemDate, record.VelocitySystemDate, Map::VelocitySystemPassed,
                  record.VelocitySystemPassed, Map::VelocitySystemUser, record.VelocitySystemUser);
}

void WriteEPROM_VelocityDateUserAudit(EpromSink& to, const ACURecord& record) {
    WriteDateUser(to, Map::VelocityAuditDate, record.VelocityAuditDate, Map::VelocityAuditPassed,
                  record.VelocityAuditPassed, Map::VelocityAuditUser, record.VelocityAuditUser);
}

void WriteEPROM_PressureHeader(EpromSink& to, ACURecord& record) {
    record.PressurePresentCode = record.PressurePresent ? Map::PressurePresentCode : 0;
    WriteLong(to, Map::PressurePresent, record.PressurePresentCode);
    std::int32_t address = Map::MaxPressure;
    to.WriteEPROMSng(address, record.MaxPressure);
}

void WriteEPROM_PressureSystem(EpromSink& to, ACURecord& record, bool zeroOnly) {
    if (zeroOnly)
        record.BaseDiameter = 0.0F;
    std::int32_t address = Map::BaseDiameter;
    to.WriteEPROMSng(address, record.BaseDiameter);
    if (!zeroOnly) {
        address = Map::PressureCoeff;
        for (const std::size_t slot : {0U, 1U, 2U})
            to.WriteEPROMSng(address, record.PressureCoeff.at(slot));
    }
    record.CalculatePressureScaling();
}

void WriteEPROM_PressureDateUserSystem(EpromSink& to, const ACURecord& record) {
    WriteDateUser(to, Map::PressureSystemDate, record.PressureSystemDate, Map::PressureSystemPassed,
                  record.PressureSystemPassed, Map::PressureSystemUser, record.PressureSystemUser);
}

void WriteEPROM_PressureDateUserAudit(EpromSink& to, const ACURecord& record) {
    WriteDateUser(to, Map::PressureAuditDate, record.PressureAuditDate, Map::PressureAuditPassed,
                  record.PressureAuditPassed, Map::PressureAuditUser, record.PressureAuditUser);
}

void WriteEPROM(EpromSink& to, ACURecord& record, bool isFireWire) {
    WriteEPROM_Header(to, record, isFireWire);
    WriteEPROM_VelocityHeader(to, record);
    for (std::int32_t channel = 0; channel < static_cast<std::int32_t>(ACUChannels); ++channel)
        WriteEPROM_VelocitySystem(to, record, channel);
    WriteEPROM_VelocityDateUserSystem(to, record);
    WriteEPROM_VelocityDateUserAudit(to, record);
    WriteEPROM_PressureHeader(to, record);
    WriteEPROM_PressureSystem(to, record, false);
    WriteEPROM_PressureDateUserSystem(to, record);
    WriteEPROM_PressureDateUserAudit(to, record);
}

void Init_VelocityHeader(EpromSink& to, ACURecord& record, bool isFireWire) {
    WriteEPROM_Header(to, record, isFireWire);
    record.ChannelCapacity[0] = 5000.0F;
    record.ChannelCapacity[1] = 200.0F;
    record.CalibrationPoints = static_cast<std::int32_t>(MaxCalibrationPoints);
    record.HasSolenoidValves = -1;
    WriteEPROM_VelocityHeader(to, record);
    WriteEPROM_MFCNumber(to, record, "");
}

std::int32_t ReadDataVersion_Usb(EpromSource& from) {
    return ReadLong(from, Map::DataVersion_USB);
}

std::int32_t ReadDataVersion_FireWire(EpromSource& from) {
    const std::int32_t version = ReadLong(from, Map::DataVersion_FireWire);
    return version == Map::AIBvMark ? ReadLong(from, Map::DataVersion_USB) : version;
}

bool ReadCapacities(EpromSource& from, ACURecord& record) {
    std::int32_t address = Map::ChannelCapacity;
    for (const std::size_t channel : {0U, 1U}) {
        if (from.ReadEPROMSng(address, record.ChannelCapacity.at(channel)) != Status::NoError)
            return false;
    }
    return true;
}

bool IsCapacity(float capacity) {
    return !std::isnan(capacity) && capacity != 0.0F && capacity != -1.0F;
}

bool HasCapacities(const ACURecord& record) {
    return IsCapacity(record.ChannelCapacity[0]) && IsCapacity(record.ChannelCapacity[1]);
}

void TakeWrittenMFCNumber(EpromSource& from, ACURecord& record) {
    const std::string number = ReadWrittenText(from, Map::MFCNumber, Map::MFCNumberLength);
    if (!Trimmed(number).empty())
        record.MFCNumber = number;
}

void ReadHeader(EpromSource& from, ACURecord& record) {
    record.CalibrationPoints = ReadLong(from, Map::CalibrationPoints);
    record.HasSolenoidValves = ReadLong(from, Map::HasSolenoidValves);
    record.DigitalMFCConfig = ReadLong(from, Map::DigitalMFCConfig);
    record.DigitalPressureConfig = ReadLong(from, Map::DigitalPressureConfig);
    record.MFCNumber = ReadWrittenText(from, Map::MFCNumber, Map::MFCNumberLength);
}

void ReadEPROMValues_Velocity(EpromSource& from, ACURecord& record) {
    // What is no longer in the EPROM must not show from an earlier reading.
    record.VelocityAuditDate = OleDate();
    record.VelocitySystemPassed = record.VelocityAuditPassed = 0;
    record.VelocitySystemDate = ReadDate(from, Map::VelocitySystemDate);
    if (!IsSet(record.VelocitySystemDate))
        return;
    // Version 1 has no passed flags.
    const bool hasPassedFlags = record.DataVersion > 1;
    if (hasPassedFlags)
        record.VelocitySystemPassed = ReadLong(from, Map::VelocitySystemPassed);
    record.VelocitySystemUser = ReadWrittenText(from, Map::VelocitySystemUser, Map::UserLength);
    record.VelocityAuditDate = ReadDate(from, Map::VelocityAuditDate);
    if (IsSet(record.VelocityAuditDate)) {
        if (hasPassedFlags)
            record.VelocityAuditPassed = ReadLong(from, Map::VelocityAuditPassed);
        record.VelocityAuditUser = ReadWrittenText(from, Map::VelocityAuditUser, Map::UserLength);
    }
    ReadVelocityTables(from, record);
}

std::optional<float> ReadEPROMValues_Pressure(EpromSource& from, ACURecord& record) {
    record.PressureSystemDate = record.PressureAuditDate = OleDate();
    record.PressurePresentCode = ReadLong(from, Map::PressurePresent);
    record.PressurePresent = record.PressurePresentCode == Map::PressurePresentCode;
    record.MaxPressure = ReadSingle(from, Map::MaxPressure);
    // 0 is a sensor whose range was never entered; it gets the default silently.
    const bool isKnown = record.MaxPressure == 400.0F || record.MaxPressure == 1000.0F;
    std::optional<float> unknown;
    if (record.PressurePresent && !isKnown) {
        if (record.MaxPressure != 0.0F)
            unknown = record.MaxPressure;
        record.MaxPressure = 1000.0F;
    }
    if (!IsSet(record.VelocitySystemDate) || !record.PressurePresent)
        return unknown;
    record.PressureSystemDate = ReadDate(from, Map::PressureSystemDate);
    if (!IsSet(record.PressureSystemDate))
        return unknown;
    record.PressureSystemPassed = ReadLong(from, Map::PressureSystemPassed);
    record.PressureSystemUser = ReadText(from, Map::PressureSystemUser, Map::UserLength);
    record.BaseDiameter = ReadSingle(from, Map::BaseDiameter);
    if (record.BaseDiameter > 0.0F) {
        std::int32_t address = Map::PressureCoeff;
        for (const std::size_t slot : {0U, 1U, 2U})
            from.ReadEPROMSng(address, record.PressureCoeff.at(slot));
    }
    record.PressureAuditDate = ReadDate(from, Map::PressureAuditDate);
    if (IsSet(record.PressureAuditDate)) {
        record.PressureAuditPassed = ReadLong(from, Map::PressureAuditPassed);
        record.PressureAuditUser = ReadText(from, Map::PressureAuditUser, Map::UserLength);
    }
    record.CalculatePressureScaling();
    return unknown;
}

} // namespace ombrix
