#pragma once

#include "board/eprom/EpromFields.h"
#include "platform/text/OleDate.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

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

/// The pressure sensors that units have, by full scale in mBar; 0 stands for none.
inline constexpr std::array<std::int32_t, 3> PressureSensors = {0, 400, 1000};
/// "none", "400 mBar", "1000 mBar"
std::string SensorText(std::int32_t fullScale_mBar);

/// A calibration as it was last done: when (0 = never), by whom, with what result.
struct LastCalibration {
    OleDate CalDate;
    std::string User;
    bool Passed = false;
};

/// Everything that is known about one Aeration Control Unit. Flags are stored as 32-bit values,
/// -1 for true; a "passed" flag counts as true when it is not zero.
struct ACURecord {
    /// The EPROM held a recognised record at the last read.
    bool ACUInitialised = false;
    /// Of the first word that the last read got no answer for: what stands here is not known to be
    /// the unit's then.
    AIBStatus ReadStatus = Status::NoError;
    /// EPROM data version; 2 is written.
    std::int32_t DataVersion = 0;
    /// Full-scale flow of each air channel in ml/min.
    std::array<float, ACUChannels> ChannelCapacity{};
    /// Number of demand points of the velocity calibration, at most 10.
    std::int32_t CalibrationPoints = 0;
    /// The ACU switches its air path between the channels with solenoid valves.
    std::int32_t HasSolenoidValves = 0;
    std::int32_t DigitalMFCConfig = 0;
    /// 0: analog pressure sensor, 1: digital.
    std::int32_t DigitalPressureConfig = 0;
    std::array<ACUChannelCal, ACUChannels> VelocityCal{};

    /// A date of 0 means never; users are 32 characters, filled with blanks.
    OleDate VelocitySystemDate;
    OleDate VelocityAuditDate;
    std::int32_t VelocitySystemPassed = 0;
    std::int32_t VelocityAuditPassed = 0;
    std::string VelocitySystemUser = std::string(32, ' ');
    std::string VelocityAuditUser = std::string(32, ' ');

    /// 12 characters, filled with blanks.
    std::string MFCNumber = "NOT SET     ";

    std::int32_t PressurePresentCode = 0;
    /// Full scale of the pressure sensor in mBar: 400 or 1000.
    float MaxPressure = 0.0F;
    /// Diameter in mm of the base that the pressure calibration was made with.
    float BaseDiameter = 0.0F;
    /// Back-pressure in bits: c0 + c1·F + c2·F², F in ml/min; slot 3 is never stored.
    std::array<float, 4> PressureCoeff{};
    OleDate PressureSystemDate;
    OleDate PressureAuditDate;
    std::int32_t PressureSystemPassed = 0;
    std::int32_t PressureAuditPassed = 0;
    std::string PressureSystemUser = std::string(32, ' ');
    std::string PressureAuditUser = std::string(32, ' ');

    bool PressurePresent = false;
    /// mBar per bit, and the sensor's zero and span in mBar; derived from MaxPressure.
    float PressureScale = 0.0F;
    float PressureOffset = 0.0F;
    float PressureSpan = 0.0F;
    /// Zero of the pressure reading in bits; never stored.
    std::int32_t PressureZero = 0;

    /// Of PressureSensors: the one that the unit has.
    std::int32_t PressureSensor() const {
        return PressurePresent ? static_cast<std::int32_t>(MaxPressure) : 0;
    }

    /// A unit can hold the number: 12 characters of eight bits.
    static bool IsMFCNumber(std::string_view number);
    /// Why it cannot; empty when it can.
    static std::string NumberRefusal(std::string_view number);
    /// The MFC number without surrounding blanks.
    std::string ACUMFCNumber() const;
    /// As a part of names of files and folders: "UNKNOWN" for a unit without one, and for one whose
    /// record could not be read.
    std::string NumberInNames() const;
    /// The same of MFCSerialNumber_Clean.
    std::string CleanNumberInNames() const;
    /// The MFC number reduced to A–Z and 0–9, as it stands in file and folder names.
    std::string MFCSerialNumber_Clean() const;
    bool IsRead() const { return ReadStatus == Status::NoError; }
    /// Why it has not been read, and what to do; empty when it has.
    std::string UnreadText() const;
    LastCalibration LastCalDone_Velocity_System() const;
    LastCalibration LastCalDone_Velocity_Audit() const;
    LastCalibration LastCalDone_Pressure_System() const;
    LastCalibration LastCalDone_Pressure_Audit() const;
    /// Derives scale, offset and span from the sensor's full scale.
    void CalculatePressureScaling();
};

/// An Aeration Control Unit as files and reports tell of it: the number of its board, and its
/// record.
struct ACU {
    std::int32_t Serial = 0;
    ACURecord Record{};

    /// "ACU" and the serial number with five digits.
    std::string SerialNumberStr() const;
};

} // namespace ombrix
