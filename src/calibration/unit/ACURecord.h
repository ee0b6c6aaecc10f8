#pragma once

#include "board/eprom/EpromFields.h"
#include "platform/text/OleDate.h"

#include <array>
#include <cstdint>
#include <string>

namespace ombrix {

inline constexpr std::size_t ACUChannels = ACUMemoryMap::Channels;
inline constexpr std::size_t MaxCalibrationPoints = ACUMemoryMap::LargestPointCount;
inline constexpr std::size_t MaxCalibrationSegments = MaxCalibrationPoints - 1;

/// The user that stands in reports and in every calibration date block.
inline constexpr const char* CalibrationUser = "QUILLON";

/// One channel's velocity calibration. Segment j runs from point j to point j + 1 and maps a
/// demand to the measured output: output bits = M(j) × demand bits + C(j).
struct ACUChannelCal {
    /// Demand of the calibration points in DAC bits, 0 to 65534.
    std::array<std::int32_t, MaxCalibrationPoints> Demand{};
    std::array<float, MaxCalibrationSegments> M{};
    std::array<float, MaxCalibrationSegments> C{};

    bool operator==(const ACUChannelCal&) const = default;
};

/// What a pressure calibration determines.
struct PressureCal {
    float BaseDiameter_mm = 0.0F;
    /// Back-pressure in bits: c0 + c1·F + c2·F², F in ml/min; the fourth is not used.
    std::array<float, 4> Coefficients{};
};

/// Everything that is known about one Aeration Control Unit. Flags are stored as 32-bit values,
/// -1 for true; a "passed" flag counts as true when it is not zero.
struct ACURecord {
    /// The EPROM held a recognised record at the last read.
    bool m_ACUInitialised = false;
    /// EPROM data version; 2 is written.
    std::int32_t m_DataVersion = 0;
    /// Full-scale flow of each air channel in ml/min.
    std::array<float, ACUChannels> m_ChannelCapacity{};
    /// Number of demand points of the velocity calibration, at most 10.
    std::int32_t m_CalibrationPoints = 0;
    /// The ACU switches its air path between the channels with solenoid valves.
    std::int32_t m_HasSolenoidValves = 0;
    std::int32_t m_DigitalMFCConfig = 0;
    /// 0: analog pressure sensor, 1: digital.
    std::int32_t m_DigitalPressureConfig = 0;
    std::array<ACUChannelCal, ACUChannels> m_VelocityCal{};

    /// A date of 0 means never; users are 32 characters, filled with blanks.
    OleDate m_VelocitySystemDate;
    OleDate m_VelocityAuditDate;
    std::int32_t m_VelocitySystemPassed = 0;
    std::int32_t m_VelocityAuditPassed = 0;
    std::string m_VelocitySystemUser = std::string(32, ' ');
    std::string m_VelocityAuditUser = std::string(32, ' ');

    /// 12 characters, filled with blanks.
    std::string m_MFCNumber = "NOT SET     ";

    std::int32_t m_PressurePresentCode = 0;
    /// Full scale of the pressure sensor in mBar: 400 or 1000.
    float m_MaxPressure = 0.0F;
    /// Diameter in mm of the base that the pressure calibration was made with.
    float m_BaseDiameter = 0.0F;
    /// Back-pressure in bits: c0 + c1·F + c2·F², F in ml/min; slot 3 is never stored.
    std::array<float, 4> m_PressureCoeff{};
    OleDate m_PressureSystemDate;
    OleDate m_PressureAuditDate;
    std::int32_t m_PressureSystemPassed = 0;
    std::int32_t m_PressureAuditPassed = 0;
    std::string m_PressureSystemUser = std::string(32, ' ');
    std::string m_PressureAuditUser = std::string(32, ' ');

    bool m_PressurePresent = false;
    /// mBar per bit, and the sensor's zero and span in mBar; derived from m_MaxPressure.
    float m_PressureScale = 0.0F;
    float m_PressureOffset = 0.0F;
    float m_PressureSpan = 0.0F;
    /// Zero of the pressure reading in bits; never stored.
    std::int32_t m_PressureZero = 0;
};

} // namespace ombrix
