#include "board/unit/ACURecord.h"

#include "board/AIB.h"
#include "platform/text/Paths.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace ombrix {

bool ACURecord::IsMFCNumber(std::string_view number) {
    return NumberRefusal(number).empty();
}

std::string ACURecord::NumberRefusal(std::string_view number) {
    const auto characters = std::count_if(number.begin(), number.end(), [](char byte) {
        constexpr unsigned continuation = 0x80U;
        constexpr unsigned highBits = 0xC0U;
        return (static_cast<unsigned char>(byte) & highBits) != continuation;
    });
    if (characters > ACUMemoryMap::MFCNumberLength)
        return fmt::format("The MFC number \"{}\" is too long: a unit holds {} characters.", number,
                           ACUMemoryMap::MFCNumberLength);
    const bool isHeld = std::all_of(number.begin(), number.end(), [](char byte) {
        constexpr unsigned char firstBeyondEightBits = 0xC4U;
        return static_cast<unsigned char>(byte) < firstBeyondEightBits;
    });
    return isHeld ? ""
                  : fmt::format("The MFC number \"{}\" has characters that a unit cannot hold.",
                                number);
}

std::string ACURecord::ACUMFCNumber() const {
    return Trimmed(MFCNumber);
}

namespace {

std::string InNames(bool isRead, std::string number) {
    return !isRead || number.empty() ? "UNKNOWN" : FileNamePart(std::move(number));
}

} // namespace

std::string ACURecord::NumberInNames() const {
    return InNames(IsRead(), ACUMFCNumber());
}

std::string ACURecord::CleanNumberInNames() const {
    return InNames(IsRead(), MFCSerialNumber_Clean());
}

std::string ACURecord::MFCSerialNumber_Clean() const {
    std::string clean;
    for (const char character : ACUMFCNumber()) {
        const bool isLetter = character >= 'A' && character <= 'Z';
        const bool isDigit = character >= '0' && character <= '9';
        if (isLetter || isDigit)
            clean += character;
    }
    return clean;
}

std::string ACURecord::UnreadText() const {
    return IsRead() ? ""
                    : fmt::format("The EPROM of the board cannot be read: {}.\r\n\r\nPlease check "
                                  "its cable and its power, then detect the boards again.",
                                  AIB::AIBErrorStr(ReadStatus));
}

LastCalibration ACURecord::LastCalDone_Velocity_System() const {
    return {VelocitySystemDate, VelocitySystemUser, VelocitySystemPassed != 0};
}

LastCalibration ACURecord::LastCalDone_Velocity_Audit() const {
    return {VelocityAuditDate, VelocityAuditUser, VelocityAuditPassed != 0};
}

LastCalibration ACURecord::LastCalDone_Pressure_System() const {
    return {PressureSystemDate, PressureSystemUser, PressureSystemPassed != 0};
}

LastCalibration ACURecord::LastCalDone_Pressure_Audit() const {
    return {PressureAuditDate, PressureAuditUser, PressureAuditPassed != 0};
}

std::string SensorText(std::int32_t fullScale_mBar) {
    return fullScale_mBar == 0 ? "none" : fmt::format("{} mBar", fullScale_mBar);
}

void ACURecord::CalculatePressureScaling() {
    // The sensor gives 0.5 V at zero and 4.5 V at full scale; 5 V read as 65534 bits.
    PressureScale = static_cast<float>(MaxPressure / (4.0 * 65534.0 / 5.0));
    PressureOffset = static_cast<float>(PressureScale * -6553.4);
    PressureSpan = static_cast<float>(PressureScale * 52427.2);
}

std::string ACU::SerialNumberStr() const {
    return fmt::format("ACU{:05}", Serial);
}

} // namespace ombrix
