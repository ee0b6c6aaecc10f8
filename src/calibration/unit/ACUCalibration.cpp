#include "calibration/unit/ACUCalibration.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

namespace ombrix {

std::string clsACUCalibration::ACUMFCNumber() const {
    return Trimmed(m_MFCNumber);
}

std::string clsACUCalibration::MFCSerialNumber_Clean() const {
    std::string clean;
    for (const char character : ACUMFCNumber()) {
        const bool isLetter = character >= 'A' && character <= 'Z';
        const bool isDigit = character >= '0' && character <= '9';
        if (isLetter || isDigit)
            clean += character;
    }
    return clean;
}

float clsACUCalibration::ChannelCapacity(std::int32_t channel) const {
    return m_ChannelCapacity.at(static_cast<std::size_t>(channel));
}

LastCalibration clsACUCalibration::LastCalDone_Velocity_System() const {
    return {m_VelocitySystemDate, m_VelocitySystemUser, m_VelocitySystemPassed != 0};
}

LastCalibration clsACUCalibration::LastCalDone_Velocity_Audit() const {
    return {m_VelocityAuditDate, m_VelocityAuditUser, m_VelocityAuditPassed != 0};
}

LastCalibration clsACUCalibration::LastCalDone_Pressure_System() const {
    return {m_PressureSystemDate, m_PressureSystemUser, m_PressureSystemPassed != 0};
}

LastCalibration clsACUCalibration::LastCalDone_Pressure_Audit() const {
    return {m_PressureAuditDate, m_PressureAuditUser, m_PressureAuditPassed != 0};
}

std::string clsACUCalibration::SerialNumberStr() const {
    return fmt::format("ACU{:05}", m_AIB == nullptr ? m_KeptSerial : m_AIB->SerialNumber());
}

void clsACUCalibration::Tell(const std::string& text, MessageIcon icon) const {
    m_World.Messages.Ask({text, icon, MessageButtons::Ok});
}

void clsACUCalibration::CalculatePressureScaling() {
    // The sensor gives 0.5 V at zero and 4.5 V at full scale; 5 V read as 65534 bits.
    m_PressureScale = static_cast<float>(m_MaxPressure / (4.0 * 65534.0 / 5.0));
    m_PressureOffset = static_cast<float>(m_PressureScale * -6553.4);
    m_PressureSpan = static_cast<float>(m_PressureScale * 52427.2);
}

} // namespace ombrix
