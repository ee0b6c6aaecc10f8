// Writing the ACU's record to the EPROM, block by block.
#include "board/eprom/EpromFields.h"
#include "board/eprom/EpromGuard.h"
#include "calibration/unit/ACUCalibration.h"
#include "platform/text/Text.h"

namespace ombrix {

namespace Map = ACUMemoryMap;

void clsACUCalibration::WriteLong(std::int32_t address, std::int32_t value) const {
    m_AIB->WriteEPROMLng(address, value);
}

void clsACUCalibration::WriteSingle(std::int32_t address, float value) const {
    m_AIB->WriteEPROMSng(address, value);
}

void clsACUCalibration::WriteText(std::int32_t address, std::int32_t length,
                                  const std::string& text) const {
    m_AIB->WriteEPROMString(address, FixedWidth(text, static_cast<std::size_t>(length)), length);
}

void clsACUCalibration::WriteDateUser(std::int32_t dateAddress, OleDate date,
                                      std::int32_t passedAddress, std::int32_t passed,
                                      std::int32_t userAddress, const std::string& user) const {
    m_AIB->WriteEPROMDate(dateAddress, date);
    WriteLong(passedAddress, passed);
    WriteText(userAddress, Map::UserLength, user);
}

void clsACUCalibration::Store(EpromGuard& guard, const ACURecord& before,
                              const std::function<void()>& work) {
    const ACURecord kept = before;
    try {
        guard.Write(work);
    } catch (...) {
        static_cast<ACURecord&>(*this) = kept;
        throw;
    }
}

void clsACUCalibration::SaveFreshHeader(EpromGuard& guard) {
    Store(guard, Record(), [this] { Init_VelocityHeader(); });
}

void clsACUCalibration::SaveMFCNumber(EpromGuard& guard, const std::string& mfcNumber) {
    Store(guard, Record(), [&] { WriteEPROM_MFCNumber(mfcNumber); });
}

void clsACUCalibration::Init_VelocityHeader() {
    WriteEPROM_Header();
    m_ChannelCapacity[0] = 5000.0F;
    m_ChannelCapacity[1] = 200.0F;
    m_CalibrationPoints = static_cast<std::int32_t>(MaxCalibrationPoints);
    m_HasSolenoidValves = -1;
    WriteEPROM_VelocityHeader();
    WriteEPROM_MFCNumber("");
}

bool clsACUCalibration::WriteEPROM() {
    WriteEPROM_Header();
    WriteEPROM_VelocityHeader();
    for (std::int32_t channel = 0; channel < static_cast<std::int32_t>(ACUChannels); ++channel)
        WriteEPROM_VelocitySystem(channel);
    WriteEPROM_VelocityDateUserSystem();
    WriteEPROM_VelocityDateUserAudit();
    WriteEPROM_PressureHeader();
    WriteEPROM_PressureSystem(false);
    WriteEPROM_PressureDateUserSystem();
    WriteEPROM_PressureDateUserAudit();
    return true;
}

bool clsACUCalibration::WriteEPROM_Header() {
    m_DataVersion = 2;
    WriteLong(m_AIB->IsFireWire() ? Map::DataVersion_FireWire : Map::DataVersion_USB,
              m_DataVersion);
    return true;
}

bool clsACUCalibration::WriteEPROM_MFCNumber(const std::string& mfcNumber) {
    if (!mfcNumber.empty())
        m_MFCNumber = FixedWidth(mfcNumber, static_cast<std::size_t>(Map::MFCNumberLength));
    WriteText(Map::MFCNumber, Map::MFCNumberLength, m_MFCNumber);
    return true;
}

bool clsACUCalibration::WriteEPROM_VelocityHeader() {
    std::int32_t address = Map::ChannelCapacity;
    for (const float capacity : m_ChannelCapacity)
        m_AIB->WriteEPROMSng(address, capacity);
    WriteLong(Map::CalibrationPoints, m_CalibrationPoints);
    WriteLong(Map::HasSolenoidValves, m_HasSolenoidValves);
    return true;
}

bool clsACUCalibration::WriteEPROM_VelocitySystem(std::int32_t channel) {
    const ACUChannelCal& table = m_VelocityCal.at(static_cast<std::size_t>(channel));
    std::int32_t address = Map::VelocityCal;
    if (channel == 0) {
        for (const std::int32_t demand : table.Demand)
            m_AIB->WriteEPROMLng(address, demand);
    }
    address = Map::VelocityCal + channel * Map::VelocityCalBytes + Map::VelocityCalDemandBytes;
    for (std::size_t segment = 0; segment < MaxCalibrationSegments; ++segment) {
        m_AIB->WriteEPROMSng(address, table.M.at(segment));
        m_AIB->WriteEPROMSng(address, table.C.at(segment));
    }
    return true;
}

bool clsACUCalibration::WriteEPROM_VelocityDateUserSystem() {
    WriteDateUser(Map::VelocitySystemDate, m_VelocitySystemDate, Map::VelocitySystemPassed,
                  m_VelocitySystemPassed, Map::VelocitySystemUser, m_VelocitySystemUser);
    return true;
}

bool clsACUCalibration::WriteEPROM_VelocityDateUserAudit() {
    WriteDateUser(Map::VelocityAuditDate, m_VelocityAuditDate, Map::VelocityAuditPassed,
                  m_VelocityAuditPassed, Map::VelocityAuditUser, m_VelocityAuditUser);
    return true;
}

bool clsACUCalibration::WriteEPROM_PressureHeader() {
    m_PressurePresentCode = m_PressurePresent ? Map::PressurePresentCode : 0;
    WriteLong(Map::PressurePresent, m_PressurePresentCode);
    WriteSingle(Map::MaxPressure, m_MaxPressure);
    return true;
}

bool clsACUCalibration::WriteEPROM_PressureSystem(bool zeroOnly) {
    if (zeroOnly)
        m_BaseDiameter = 0.0F;
    WriteSingle(Map::BaseDiameter, m_BaseDiameter);
    if (!zeroOnly) {
        std::int32_t address = Map::PressureCoeff;
        for (const std::size_t slot : {0U, 1U, 2U})
            m_AIB->WriteEPROMSng(address, m_PressureCoeff.at(slot));
    }
    CalculatePressureScaling();
    return true;
}

bool clsACUCalibration::WriteEPROM_PressureDateUserSystem() {
    WriteDateUser(Map::PressureSystemDate, m_PressureSystemDate, Map::PressureSystemPassed,
                  m_PressureSystemPassed, Map::PressureSystemUser, m_PressureSystemUser);
    return true;
}

bool clsACUCalibration::WriteEPROM_PressureDateUserAudit() {
    WriteDateUser(Map::PressureAuditDate, m_PressureAuditDate, Map::PressureAuditPassed,
                  m_PressureAuditPassed, Map::PressureAuditUser, m_PressureAuditUser);
    return true;
}

} // namespace ombrix
