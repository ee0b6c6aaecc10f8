// Reading the ACU's record from the EPROM.
#include "board/eprom/EpromFields.h"
#include "board/eprom/EpromGuard.h"
#include "board/procedure/ProcedureWait.h"
#include "calibration/unit/ACUCalibration.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace Map = ACUMemoryMap;

namespace {

/// An erased capacity is no number.
bool IsNotSet(float capacity) {
    return std::isnan(capacity) || capacity == 0.0F || capacity == -1.0F;
}

constexpr bool IsSet(OleDate date) {
    return date != OleDate();
}

} // namespace

std::int32_t clsACUCalibration::ReadLong(std::int32_t address, std::string_view label) const {
    std::int32_t value = 0;
    m_AIB->ReadEPROMLng(address, value, label);
    return value;
}

float clsACUCalibration::ReadSingle(std::int32_t address, std::string_view label) const {
    float value = 0.0F;
    m_AIB->ReadEPROMSng(address, value, label);
    return value;
}

OleDate clsACUCalibration::ReadDate(std::int32_t address, std::string_view label) const {
    OleDate value;
    m_AIB->ReadEPROMDate(address, value, label);
    return value;
}

std::string clsACUCalibration::ReadText(std::int32_t address, std::int32_t length,
                                        std::string_view label) const {
    std::string value;
    m_AIB->ReadEPROMString(address, value, length, label);
    return FixedWidth(value, static_cast<std::size_t>(length));
}

std::string clsACUCalibration::ReadVelocityUser(std::int32_t address,
                                                std::string_view label) const {
    const std::string user = ReadText(address, Map::UserLength, label);
    constexpr std::string_view erasedCharacter = "\u00FF";
    return FixedWidth(user.starts_with(erasedCharacter) ? "" : user,
                      static_cast<std::size_t>(Map::UserLength));
}

bool clsACUCalibration::ReadEPROMValues(clsAIB& board) {
    m_AIB = &board;
    m_ACUInitialised = false;
    if (board.IsUsb())
        m_DataVersion = ReadLong(Map::DataVersion_USB, "EPROM Data Version");
    else if (board.IsFireWire())
        m_DataVersion = ReadLong(Map::DataVersion_FireWire, "EPROM Data Version");
    if (m_DataVersion == -1)
        return false;
    if (board.IsFireWire() && m_DataVersion == Map::AIBvMark)
        m_DataVersion = ReadLong(Map::DataVersion_USB, "EPROM Data Version");
    if (m_DataVersion == -1 || m_DataVersion == 0 || m_DataVersion == 3)
        return false;
    if (m_DataVersion == 1 || m_DataVersion == 2)
        ReadEPROMValues_v02(true);
    m_ACUInitialised = true;
    return true;
}

bool clsACUCalibration::ReadCapacities() {
    for (const std::size_t channel : {0U, 1U}) {
        std::int32_t address =
            Map::ChannelCapacity + static_cast<std::int32_t>(channel) * Map::WordBytes;
        if (m_AIB->ReadEPROMSng(address, m_ChannelCapacity.at(channel),
                                fmt::format("Channel Capacity {}", channel)) != Status::NoError)
            return false;
    }
    return true;
}

bool clsACUCalibration::HasCapacities() const {
    return !IsNotSet(m_ChannelCapacity[0]) && !IsNotSet(m_ChannelCapacity[1]);
}

bool clsACUCalibration::InitialiseBlank() {
    try {
        EpromGuard guard(m_World, m_Claims, *m_AIB, "EPROM Initialisation");
        guard.MakeReady();
        // The question stood on a single reading, and what would be lost is a whole calibration.
        if (ReadCapacities() && HasCapacities())
            throw EpromError("The EPROM holds the capacities of its channels, although they have "
                             "been read as missing: the link to the board is unsteady.\r\n\r\n"
                             "Nothing has been written. Please check the cable of the board, then "
                             "detect the boards again.");
        SaveFreshHeader(guard);
        return true;
    } catch (const std::runtime_error& error) {
        Tell(error.what(), MessageIcon::Critical);
        return false;
    }
}

bool clsACUCalibration::ReadEPROMValues_v02(bool showErrors) {
    const auto fail = [this, showErrors] {
        if (showErrors)
            Tell("There was an error reading the EPROM in the AIB", MessageIcon::Information);
        return false;
    };
    if (!ReadCapacities())
        return fail(); // what cannot be read is not known to be missing
    if (!HasCapacities()) {
        const Message question{"This ACU has not been initialised.\r\n\r\n"
                               "Would you like to Initialise the EPROM now?",
                               MessageIcon::Question, MessageButtons::YesNo};
        if (m_World.Messages.Ask(question) != Answer::Yes || !InitialiseBlank())
            return fail();
    }
    m_CalibrationPoints = ReadLong(Map::CalibrationPoints, "Number of Calibration Points");
    m_HasSolenoidValves = ReadLong(Map::HasSolenoidValves, "Has Solenoid Valves");
    m_DigitalMFCConfig = ReadLong(Map::DigitalMFCConfig, "Digital MFC Config");
    m_DigitalPressureConfig = ReadLong(Map::DigitalPressureConfig, "Digital Pressure Config");
    m_MFCNumber = ReadText(Map::MFCNumber, Map::MFCNumberLength, "Read MFC Number");
    if (m_CalibrationPoints == 0) {
        Tell("Zero Calibration Points", MessageIcon::Information);
        return fail();
    }
    // What is no longer in the EPROM must not show from an earlier reading.
    m_VelocityAuditDate = m_PressureSystemDate = m_PressureAuditDate = OleDate();
    ReadEPROMValues_Velocity();
    ReadEPROMValues_Pressure();
    if (m_AIB->IsFireWire() && m_Claims.IsOurs(m_AIB->DevSerialNum()))
        m_AIB->ConfigureGPIO(m_HasSolenoidValves != 0 ? 1 : 0);
    return true;
}

void clsACUCalibration::ReadEPROMValues_Velocity() {
    m_VelocitySystemDate = ReadDate(Map::VelocitySystemDate, "Last System Cal Date");
    if (!IsSet(m_VelocitySystemDate))
        return;
    // Version 1 has no passed flags.
    const bool hasPassedFlags = m_DataVersion > 1;
    if (hasPassedFlags)
        m_VelocitySystemPassed = ReadLong(Map::VelocitySystemPassed, "Last System Cal Date Passed");
    m_VelocitySystemUser = ReadVelocityUser(Map::VelocitySystemUser, "Last System Cal User");
    m_VelocityAuditDate = ReadDate(Map::VelocityAuditDate, "Last Audit Cal Date");
    if (IsSet(m_VelocityAuditDate)) {
        if (hasPassedFlags)
            m_VelocityAuditPassed =
                ReadLong(Map::VelocityAuditPassed, "Last Audit Cal Date Passed");
        m_VelocityAuditUser = ReadVelocityUser(Map::VelocityAuditUser, "Last Audit Cal User");
    }
    ReadVelocityTables();
}

void clsACUCalibration::ReadVelocityTables() {
    // A damaged EPROM may claim any number of points.
    const auto points = static_cast<std::size_t>(
        std::clamp(m_CalibrationPoints, 0, static_cast<std::int32_t>(MaxCalibrationPoints)));
    for (std::size_t channel = 0; channel < ACUChannels; ++channel) {
        if (!(m_ChannelCapacity.at(channel) > 0.0F))
            continue;
        ACUChannelCal& table = m_VelocityCal.at(channel);
        std::int32_t address = Map::VelocityCal;
        for (std::size_t point = 0; point < points; ++point) {
            if (channel == 0)
                m_AIB->ReadEPROMLng(address, table.Demand.at(point), "Demand");
            else
                table.Demand.at(point) = m_VelocityCal[0].Demand.at(point);
        }
        address = Map::VelocityCal + static_cast<std::int32_t>(channel) * Map::VelocityCalBytes +
                  Map::VelocityCalDemandBytes;
        for (std::size_t segment = 0; segment + 1 < points; ++segment) {
            m_AIB->ReadEPROMSng(address, table.M.at(segment), "M");
            m_AIB->ReadEPROMSng(address, table.C.at(segment), "C");
        }
    }
}

void clsACUCalibration::ReadEPROMValues_Pressure() {
    m_PressurePresentCode = ReadLong(Map::PressurePresent, "Pressure Present");
    m_PressurePresent = m_PressurePresentCode == Map::PressurePresentCode;
    m_MaxPressure = ReadSingle(Map::MaxPressure, "Max Pressure");
    // 0 is a sensor whose range was never entered; it gets the default below, silently.
    const bool isRecognised =
        m_MaxPressure == 0.0F || m_MaxPressure == 400.0F || m_MaxPressure == 1000.0F;
    if (m_PressurePresent && !isRecognised) {
        Tell("Un-recognised Pressure Value: " + GeneralText(m_MaxPressure) +
                 "\r\n\r\nUsing Default of 1000mBar",
             MessageIcon::Information);
        m_MaxPressure = 1000.0F;
    }
    if (!IsSet(m_VelocitySystemDate) || !m_PressurePresent)
        return;
    m_PressureSystemDate = ReadDate(Map::PressureSystemDate, "Last System Cal Date");
    if (!IsSet(m_PressureSystemDate))
        return;
    m_PressureSystemPassed = ReadLong(Map::PressureSystemPassed, "Last System Cal Date Passed");
    m_PressureSystemUser =
        ReadText(Map::PressureSystemUser, Map::UserLength, "Last System Cal User");
    m_BaseDiameter = ReadSingle(Map::BaseDiameter, "Base Diameter");
    if (m_BaseDiameter > 0.0F) {
        std::int32_t address = Map::PressureCoeff;
        for (const std::size_t slot : {0U, 1U, 2U})
            m_AIB->ReadEPROMSng(address, m_PressureCoeff.at(slot),
                                fmt::format("Pressure Coeff {}", slot));
    }
    m_PressureAuditDate = ReadDate(Map::PressureAuditDate, "Last Audit Cal Date");
    if (IsSet(m_PressureAuditDate)) {
        m_PressureAuditPassed = ReadLong(Map::PressureAuditPassed, "Last Audit Cal Date Passed");
        m_PressureAuditUser =
            ReadText(Map::PressureAuditUser, Map::UserLength, "Last Audit Cal User");
    }
    if (m_MaxPressure == 0.0F)
        m_MaxPressure = 1000.0F;
    CalculatePressureScaling();
}

} // namespace ombrix
