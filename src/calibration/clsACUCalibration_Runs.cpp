// What can be done with the unit: its air, its calibrations and what they leave in the record.
#include "board/ACUMemoryMap.h"
#include "calibration/VelocityRun.h"
#include "calibration/clsACUCalibration.h"
#include "support/Text.h"

#include <bit>
#include <stdexcept>

namespace ombrix {

namespace {

constexpr std::int32_t True = -1;
constexpr std::size_t UserLength = ACUMemoryMap::UserLength;

} // namespace

AirChannelControl clsACUCalibration::Air(DACSliders& display) {
    if (m_AIB == nullptr)
        throw std::logic_error("The ACU's record has not been read from a board yet");
    return {*m_AIB, *this, m_AirState, m_World.Time, display};
}

CalibrationOutcome clsACUCalibration::CalibrateACUAirVelocity(const CalibrationServices& services,
                                                              CalibrationKind kind,
                                                              bool unattended) {
    return VelocityRun(*this, services, kind, unattended).CalibrateACUAirVelocity();
}

void clsACUCalibration::CancelCalibration() {
    if (m_RunningCalibration != nullptr)
        m_RunningCalibration->Request();
}

bool clsACUCalibration::SaveVelocitySystemCalibration(
    const std::array<ACUChannelCal, ACUChannels>& measured) {
    const ACURecord before = Record();
    m_VelocityCal = measured;
    m_VelocitySystemPassed = True;
    m_VelocitySystemDate = m_World.Time.Now();
    m_VelocitySystemUser = FixedWidth(CalibrationUser, UserLength);
    WriteEPROM_VelocitySystem(0);
    WriteEPROM_VelocitySystem(1);
    WriteEPROM_VelocityDateUserSystem();
    const bool holds = EpromHoldsTable(0) && EpromHoldsTable(1) &&
                       EpromHolds(ACUMemoryMap::VelocitySystemDate, m_VelocitySystemDate) &&
                       EpromHolds(ACUMemoryMap::VelocitySystemPassed, m_VelocitySystemPassed);
    // A record that is not in the unit must not drive it.
    if (!holds)
        static_cast<ACURecord&>(*this) = before;
    return holds;
}

bool clsACUCalibration::SaveVelocityAudit() {
    WriteEPROM_VelocityDateUserAudit();
    return EpromHolds(ACUMemoryMap::VelocityAuditDate, m_VelocityAuditDate) &&
           EpromHolds(ACUMemoryMap::VelocityAuditPassed, m_VelocityAuditPassed);
}

bool clsACUCalibration::EpromHolds(std::int32_t address, OleDate date) const {
    OleDate stored;
    return m_AIB->ReadEPROMDate(address, stored, "Date read back") == Status::NoError &&
           stored == date;
}

bool clsACUCalibration::EpromHolds(std::int32_t address, std::int32_t word) const {
    std::int32_t stored = 0;
    return m_AIB->ReadEPROM(address, stored) == Status::NoError && stored == word;
}

bool clsACUCalibration::EpromHolds(std::int32_t address, float value) const {
    return EpromHolds(address, std::bit_cast<std::int32_t>(value));
}

bool clsACUCalibration::EpromHoldsTable(std::int32_t channel) const {
    constexpr std::int32_t wordBytes = 4;
    const ACUChannelCal& table = m_VelocityCal.at(static_cast<std::size_t>(channel));
    bool holds = true;
    std::int32_t address = ACUMemoryMap::VelocityCal;
    for (const std::int32_t demand : table.Demand) {
        // The demands stand with channel 0 alone.
        holds = holds && (channel != 0 || EpromHolds(address, demand));
        address += wordBytes;
    }
    address += channel * ACUMemoryMap::VelocityCalBytes;
    for (std::size_t segment = 0; segment < MaxCalibrationSegments; ++segment) {
        holds = holds && EpromHolds(address, table.M.at(segment)) &&
                EpromHolds(address + wordBytes, table.C.at(segment));
        address += 2 * wordBytes;
    }
    return holds;
}

void clsACUCalibration::NoteVelocityAudit(bool passed) {
    m_VelocityAuditPassed = passed ? True : 0;
    m_VelocityAuditDate = m_World.Time.Now();
    m_VelocityAuditUser = FixedWidth(CalibrationUser, UserLength);
}

} // namespace ombrix
