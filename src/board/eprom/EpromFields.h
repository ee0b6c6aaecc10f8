#pragma once

#include "board/eprom/EpromImage.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

/// Byte addresses of the ACU's record in a board's EPROM. A stored format: units in the field
/// carry data laid out like this.
namespace ombrix::ACUMemoryMap {

constexpr std::int32_t DataVersion_FireWire = 0;
/// A FireWire board that holds this word ("AIBv") in place of a version keeps its version
/// where USB boards do.
constexpr std::int32_t AIBvMark = 0x76424941;
constexpr std::int32_t DataVersion_USB = 8;
constexpr std::int32_t ChannelCapacity = 16; // four Singles, ml/min
constexpr std::int32_t CalibrationPoints = 32;
constexpr std::int32_t HasSolenoidValves = 36;
constexpr std::int32_t DigitalMFCConfig = 40;
constexpr std::int32_t DigitalPressureConfig = 44;

/// One area for each of four channels: ten demands (in channel 0's area only, shared by all),
/// then nine pairs of slope and intercept.
constexpr std::int32_t VelocityCal = 48;
constexpr std::int32_t VelocityCalBytes = 112;
constexpr std::int32_t VelocityCalDemandBytes = 40;

constexpr std::int32_t VelocitySystemDate = 496;
constexpr std::int32_t VelocityAuditDate = 504;
constexpr std::int32_t VelocitySystemPassed = 512;
constexpr std::int32_t VelocityAuditPassed = 516;
constexpr std::int32_t VelocitySystemUser = 520;
constexpr std::int32_t VelocityAuditUser = 552;

constexpr std::int32_t PressurePresent = 600;
constexpr std::int32_t MaxPressure = 604;
constexpr std::int32_t PressureSystemDate = 644;
constexpr std::int32_t PressureAuditDate = 652;
constexpr std::int32_t PressureSystemPassed = 660;
constexpr std::int32_t PressureAuditPassed = 664;
constexpr std::int32_t PressureSystemUser = 668;
constexpr std::int32_t PressureAuditUser = 700;
constexpr std::int32_t BaseDiameter = 748;
constexpr std::int32_t PressureCoeff = 752; // three Singles

constexpr std::int32_t MFCNumber = 1024;

constexpr std::int32_t Channels = 4;
constexpr std::int32_t LargestPointCount = 10;
constexpr std::int32_t UserLength = 32;
constexpr std::int32_t MFCNumberLength = 12;

/// Code for a pressure sensor that is present.
constexpr std::int32_t PressurePresentCode = 16;

} // namespace ombrix::ACUMemoryMap

namespace ombrix {

/// How the words of a field are to be understood.
enum class EpromKind { Long, Single, Date, Text };

/// A field of the ACU's record, or a word that belongs to none.
struct EpromField {
    /// Of its first word.
    std::int32_t Address = 0;
    std::int32_t Words = 1;
    /// "Channel 1 slope 3"; empty where no field of the ACU stands.
    std::string Name{};
    EpromKind Kind = EpromKind::Long;
    /// The part of the record that it belongs to ("velocity table"); empty for none.
    std::string Part{};
};

/// Everything in an EPROM, in the order of the addresses: each of the 512 words belongs to one
/// field. The first two words, which differ between kinds of boards, have no name.
std::vector<EpromField> EpromFields();

/// What stands in a field, for people: a number, a date and time, or a text in quotes.
std::string ShowField(const EpromField& field, const EpromImage& image);

/// The words of a field in hexadecimal: "00000000 40E1D5C0".
std::string WordsText(const EpromField& field, const EpromImage& image);

/// A field that two images do not have in common.
struct EpromDifference {
    std::int32_t Address = 0;
    /// As in EpromField.
    std::string Name{};
    std::string Old{};
    std::string New{};
};

/// The fields that differ, in the order of their addresses. The two texts are never the same:
/// where they would be, they are followed by the words in hexadecimal.
std::vector<EpromDifference> EpromDifferences(const EpromImage& before, const EpromImage& after);

/// "1024 MFC number", "1040" for a word without a name.
std::string PlaceText(const EpromDifference& difference);

/// "1024 MFC number: "M1" → "M2""
std::string DifferenceText(const EpromDifference& difference);

/// The parts of the record that the words at the addresses belong to, each named once:
/// "capacities, velocity table"; of many words that belong to none, the number.
std::string PartsText(const std::set<std::int32_t>& addresses);

} // namespace ombrix
