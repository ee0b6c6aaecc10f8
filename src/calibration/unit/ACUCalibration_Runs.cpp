// What can be done with the unit: its air, its calibrations and what they leave in the record.
#include "board/eprom/EpromFields.h"
#include "calibration/run/VelocityRun.h"
#include "calibration/unit/ACUCalibration.h"
#include "platform/text/Text.h"

#include <stdexcept>

namespace ombrix {

namespace {

constexpr std::int32_t True = -1;

} // namespace

AirChannelControl clsACUCalibration::Air(DACSliders& display) {
    if (m_AIB == nullptr)
        throw std::logic_error("The ACU's record has not been read from a board yet");
    return {*m_AIB, *this, m_AirState, m_World.Time, display};
}

CalibrationOutcome clsACUCalibration::CalibrateACUAirVelocity(const CalibrationServices& services,
                                                              EpromGuard& guard,
                                                              CalibrationKind kind,
                                                              bool unattended) {
    return VelocityRun(*this, services, guard, kind, unattended).CalibrateACUAirVelocity();
}

void clsACUCalibration::CancelCalibration() {
    if (m_RunningCalibration != nullptr)
        m_RunningCalibration->Request();
}

void clsACUCalibration::SaveVelocitySystemCalibration(
    EpromGuard& guard, const std::array<ACUChannelCal, ACUChannels>& measured) {
    Store(guard, Record(), [&] {
        m_VelocityCal = measured;
        m_VelocitySystemPassed = True;
        m_VelocitySystemDate = m_World.Time.Now();
        m_VelocitySystemUser = FixedWidth(CalibrationUser, ACUMemoryMap::UserLength);
        WriteEPROM_VelocitySystem(0);
        WriteEPROM_VelocitySystem(1);
        WriteEPROM_VelocityDateUserSystem();
    });
}

void clsACUCalibration::SaveVelocityAudit(EpromGuard& guard, bool passed, const ACURecord& before) {
    Store(guard, before, [&] {
        NoteVelocityAudit(passed);
        WriteEPROM_VelocityDateUserAudit();
    });
}

void clsACUCalibration::NoteVelocityAudit(bool passed) {
    m_VelocityAuditPassed = passed ? True : 0;
    m_VelocityAuditDate = m_World.Time.Now();
    m_VelocityAuditUser = FixedWidth(CalibrationUser, ACUMemoryMap::UserLength);
}

} // namespace ombrix
