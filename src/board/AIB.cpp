#include "board/AIB.h"

#include "platform/text/Paths.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace ombrix {

namespace {

constexpr float MFCFullScale = 32000.0F;

} // namespace

AIBStatus AIB::CheckStatus(AIBStatus status) {
    if (status != Status::NoError)
        m_StatusOK = false;
    return status;
}

std::string AIB::AIBErrorStr(AIBStatus status) {
    switch (status) {
    case Status::NoError: return "AIB No Error";
    case Status::HardwareError: return "AIB Generic Hardware Error";
    case Status::AccessDenied: return "AIB Access Denied";
    case Status::Timeout: return "AIB Timeout";
    default: return fmt::format("[Unknown Error: {}]", status);
    }
}

std::string BoardAnswer::Text() const {
    return MFCsNotReady ? "The MFCs are not ready." : AIB::AIBErrorStr(Code);
}

std::string BoardAnswer::Sentence() const {
    return MFCsNotReady ? Text() : Text() + ".";
}

void AIB::TestDigitalAIB() {
    m_Services.Library.MFCSetParameter(m_Index, {1, 128, 1, 32}, 0);
    for (const std::int32_t selector : {32, 64}) {
        std::int32_t value = -1;
        m_Services.Library.MFCGetParameter(m_Index, {1, 128, 8, selector}, value);
    }
}

std::string AIB::BusTypeText() const {
    return IsUsb() ? "USB" : IsFireWire() ? "FireWire" : "UNKNOWN";
}

void AIB::GetAccessoryInfo(std::int32_t index) {
    m_Index = index;
    AccessoryInfoBlock record = Encode(m_Info);
    m_Services.Library.GetAccessoryInfo(index, record);
    m_Info = Decode(record);
    m_DigitalSetup = HasDigitalMFCs();
}

std::int32_t AIB::ReportedSerial() const {
    // A board that is gone leaves the record as it is given.
    AccessoryInfoBlock record;
    m_Services.Library.GetAccessoryInfo(m_Index, record);
    return record.DevSerialNum;
}

AIBStatus AIB::WriteAIBInfo(std::int32_t first, std::int32_t code, std::int32_t serial) {
    return CheckStatus(m_Services.Library.WriteAIBInfo(m_Index, first, code, serial));
}

AIBStatus AIB::UploadFPGAImage(std::string_view path) {
    const std::string realPath = m_Services.World.Files.RealPath(path).string();
    return CheckStatus(m_Services.Library.UploadFPGAImage(m_Index, realPath));
}

AIBStatus AIB::WriteReg(std::int32_t address, std::int32_t value) {
    return CheckStatus(m_Services.Library.WriteReg(m_Index, address, value));
}

AIBStatus AIB::ReadReg(std::int32_t address, std::int32_t& value) {
    const AIBStatus status = CheckStatus(m_Services.Library.ReadReg(m_Index, address, value));
    if (address == PressureRegister)
        Tell(BoardNote::Subject::Pressure, 0, status == Status::NoError, value);
    return status;
}

AIBStatus AIB::ConfigureGPIO(std::int32_t mask) {
    const AIBStatus status = CheckStatus(m_Services.Library.ConfigureGPIO(m_Index, mask));
    if (status == Status::NoError)
        m_Directions = mask;
    return status;
}

namespace {

/// A pin's bit; none for a pin that no board has.
std::int32_t BitOf(std::int32_t pin) {
    constexpr std::int32_t bits = 31;
    return pin >= 0 && pin < bits ? 1 << pin : 0;
}

} // namespace

std::optional<bool> AIB::Levels::Of(std::int32_t pin) const {
    return (Told & BitOf(pin)) != 0 ? std::optional((Set & BitOf(pin)) != 0) : std::nullopt;
}

AIBStatus AIB::NoteLevel(AIBStatus status, Levels& levels, std::int32_t pin, bool set) {
    if (status == Status::NoError) {
        levels.Told |= BitOf(pin);
        levels.Set = set ? levels.Set | BitOf(pin) : levels.Set & ~BitOf(pin);
    }
    return CheckStatus(status);
}

std::optional<bool> AIB::ValveIsSet() const {
    if (IsUsb())
        return ExtendedIsSet(ACUWiring::UsbValveOutput);
    return IsFireWire() ? PinIsSet(ACUWiring::FireWireValvePin) : std::nullopt;
}

AIBStatus AIB::SetGPO(std::int32_t pin) {
    return NoteLevel(m_Services.Library.SetGPO(m_Index, pin), m_Pins, pin, true);
}

AIBStatus AIB::ClearGPO(std::int32_t pin) {
    return NoteLevel(m_Services.Library.ClearGPO(m_Index, pin), m_Pins, pin, false);
}

AIBStatus AIB::SetExtGPO(std::int32_t pin) {
    return NoteLevel(m_Services.Library.SetExtGPO(m_Index, pin), m_Extended, pin, true);
}

AIBStatus AIB::ClearExtGPO(std::int32_t pin) {
    return NoteLevel(m_Services.Library.ClearExtGPO(m_Index, pin), m_Extended, pin, false);
}

AIBStatus AIB::GetGPI(std::int32_t pin, std::int32_t& level) {
    return CheckStatus(m_Services.Library.GetGPI(m_Index, pin, level));
}

AIBStatus AIB::GetVariable(std::int32_t number, std::int32_t& value) {
    return CheckStatus(m_Services.Library.GetVariable(m_Index, number, value));
}

AIBStatus AIB::SetVariable(std::int32_t number, std::int32_t value) {
    return CheckStatus(m_Services.Library.SetVariable(m_Index, number, value));
}

AIBStatus AIB::MFCSetFlowRate(std::int32_t channel, float percent) {
    if (!m_MFCReady)
        return Status::NoError;
    m_MayDrive = m_MayDrive || percent > 0.0F;
    m_SetPointStands = m_SetPointStands || percent > 0.0F;
    const std::int32_t setPoint = RoundHalfEven(percent / 100.0F * MFCFullScale);
    return CheckStatus(m_Services.Library.MFCSetFlowrate(
        m_Index, channel, std::clamp(setPoint, 0, static_cast<std::int32_t>(MFCFullScale))));
}

AIBStatus AIB::MFCGetFlowRate(std::int32_t channel, std::int32_t& value) {
    if (!m_MFCReady) {
        value = 0;
        Tell(BoardNote::Subject::Input, channel, false, value);
        return Status::NoError;
    }
    std::int32_t raw = 0;
    const AIBStatus status = m_Services.Library.MFCGetFlowrate(m_Index, channel, raw);
    value = RoundHalfEven(raw * (65535.0 / 32000.0));
    Tell(BoardNote::Subject::Input, channel, status == Status::NoError, value);
    return CheckStatus(status);
}

AIBStatus AIB::SetDAC_UART(std::int32_t channel, std::int32_t value) {
    // Two integers divide in Double; only the percentage is a Single.
    const double percent = static_cast<double>(value) / DACFullScale * 100.0;
    const AIBStatus status = MFCSetFlowRate(channel, static_cast<float>(percent));
    Tell(BoardNote::Subject::Output, channel, m_MFCReady && status == Status::NoError, value);
    return status;
}

AIBStatus AIB::GetADC_UART(std::int32_t channel, std::int32_t& value) {
    return MFCGetFlowRate(channel, value);
}

AIBStatus AIB::SetDAC(std::int32_t channel, std::int32_t value) {
    std::int32_t& taken = m_DAC.at(static_cast<std::size_t>(channel));
    AIBStatus status = Status::NoError;
    if (IsDigitalChannel(channel)) {
        status = SetDAC_UART(channel, value);
    } else {
        m_MayDrive = m_MayDrive || value != 0;
        status = CheckStatus(m_Services.Library.SetDAC(m_Index, channel, value));
        Tell(BoardNote::Subject::Output, channel, status == Status::NoError, value);
    }
    if (status == Status::NoError && Reaches(channel))
        taken = value;
    return status;
}

std::int32_t AIB::DAC(std::int32_t channel) const {
    return m_DAC.at(static_cast<std::size_t>(channel));
}

bool AIB::SwitchOutputsOff() noexcept {
    const auto takesZeros = [this](std::int32_t channels, bool digital, auto sendZero) {
        bool allTaken = true;
        for (std::int32_t channel = 0; channel < channels; ++channel) {
            bool taken = false;
            try {
                taken = sendZero(channel) == Status::NoError;
            } catch (const std::exception&) {
                taken = false;
            }
            if (taken && IsDigitalChannel(channel) == digital)
                m_DAC.at(static_cast<std::size_t>(channel)) = 0;
            if (IsDigitalChannel(channel) == digital)
                Tell(BoardNote::Subject::Output, channel, taken, 0);
            allTaken = allTaken && taken;
        }
        return allTaken;
    };
    const bool setPointsOff = takesZeros(MFCChannels, true, [this](std::int32_t channel) {
        return m_Services.Library.MFCSetFlowrate(m_Index, channel, 0);
    });
    const bool outputsOff = takesZeros(DACChannels, false, [this](std::int32_t channel) {
        return m_Services.Library.SetDAC(m_Index, channel, 0);
    });
    const bool taken = outputsOff && (setPointsOff || !(HasDigitalMFCs() || m_SetPointStands));
    m_SetPointStands = m_SetPointStands && !setPointsOff;
    m_MayDrive = m_MayDrive && !taken;
    m_StatusOK = m_StatusOK && taken;
    return taken;
}

bool AIB::Drives() const {
    return m_SetPointStands ||
           std::any_of(m_DAC.begin(), m_DAC.end(), [](std::int32_t bits) { return bits > 0; });
}

AIBStatus AIB::GetADC(std::int32_t channel, std::int32_t& value) {
    if (IsDigitalChannel(channel))
        return MFCGetFlowRate(channel, value);
    return CheckStatus(ADC(channel, value));
}

std::int32_t AIB::MyGetADC(std::int32_t channel) {
    std::int32_t value = 0;
    GetADC(channel, value);
    return value;
}

std::optional<std::int32_t> AIB::Reading(std::int32_t channel, BoardAnswer* answer) {
    std::int32_t value = 0;
    const BoardAnswer how{GetADC(channel, value), !Reaches(channel)};
    if (answer != nullptr)
        *answer = how;
    return how.Taken() ? std::optional(value) : std::nullopt;
}

std::int32_t AIB::ADC(std::int32_t channel) const {
    std::int32_t value = 0;
    ADC(channel, value);
    return value;
}

AIBStatus AIB::ADC(std::int32_t channel, std::int32_t& value) const {
    const AIBStatus status = m_Services.Library.GetADC(m_Index, channel, value);
    Tell(BoardNote::Subject::Input, channel, status == Status::NoError, value);
    return status;
}

void AIB::TellFeed(BoardNote::Subject what, std::int32_t channel, bool answered,
                   std::int32_t value_bits) const noexcept {
    try {
        m_Services.Feed->Tell({*this, what, channel,
                               answered ? std::optional(value_bits) : std::nullopt,
                               MonotonicSeconds(m_Services.World.Time)});
    } catch (const std::exception&) {
        return; // who only looks on must not stop what is measured or switched off
    }
}

AIB::EpromWriting::EpromWriting(AIB& board) : m_Board(board) {
    if (std::exchange(board.m_EpromIsWritten, true))
        throw std::logic_error("The EPROM is written already");
}

AIBStatus AIB::WriteEPROM(std::int32_t address, std::int32_t word) {
    if (!m_EpromIsWritten)
        throw std::logic_error("The EPROM is written without having been saved");
    return CheckStatus(m_Services.Library.WriteEEPROM(m_Index, address, word));
}

AIBStatus AIB::ReadEPROM(std::int32_t address, std::int32_t& word) {
    return CheckStatus(m_Services.Library.ReadEEPROM(m_Index, address, word));
}

AIBStatus AIB::DumpEPROM(std::string_view path) {
    const std::string realPath = m_Services.World.Files.RealPath(path).string();
    return CheckStatus(m_Services.Library.DumpEEPROM(m_Index, realPath));
}

// What makes a board ready for use: its FPGA configuration and its self-tests.

namespace {

constexpr std::int32_t TestRegister = 16;
constexpr std::int32_t TestRegisterBits = 16;
constexpr std::int32_t MFCStatusVariable = 6;

constexpr std::array<std::string_view, 4> FPGAFiles = {"AIBCNF00.bin", "AIBCNF01.bin",
                                                       "AIBCNF02.bin", "AIBCNF03.bit"};

bool IsChannelReady(std::uint32_t channel, std::int32_t statusWord) {
    constexpr std::uint32_t FirstReadyBit = 16;
    return channel < 2 &&
           (static_cast<std::uint32_t>(statusWord) >> (FirstReadyBit + channel) & 1U) != 0;
}

/// Where on this computer a file that is missing is looked for.
std::string WhereFPGAFileBelongs(const Drive& files, std::string_view path, std::int32_t version) {
    if (path.empty())
        return fmt::format("There is no such file for hardware version 0x{}. Please have the "
                           "identity of the board looked at.",
                           HexText(version));
    std::string folders;
    for (const std::string_view folder : Paths::SystemFolders) {
        const std::string real = "   " + files.RealPath(folder).string() + "\r\n";
        folders += folders.find(real) == std::string::npos ? real : "";
    }
    return "On this computer it is looked for in:\r\n\r\n" + folders +
           "\r\nPlease put it there, or give its folder with --fpga-folder.";
}

} // namespace

std::string AIB::FPGAFileName() const {
    // An arithmetic shift is the integer part, also of a negative version.
    const std::int32_t number = HWVersion() >> 16;
    if (number < 0 || number >= static_cast<std::int32_t>(FPGAFiles.size()))
        return {};
    const std::string_view file = FPGAFiles.at(static_cast<std::size_t>(number));
    const std::string first = std::string(Paths::SystemFolders[0]).append(file);
    return FileExists(first) ? first : std::string(Paths::SystemFolders[1]).append(file);
}

bool AIB::StartFPGAUpload() {
    const std::string path = FPGAFileName();
    if (!FileExists(path)) {
        m_Services.World.Messages.Ask(
            {"An error occurred while trying to program the Aeration Control Unit\r\n\r\n"
             "The Following filehas not been found:\r\n\r\n   " +
                 path + "\r\n\r\nThe program will now end.\r\n\r\n" +
                 WhereFPGAFileBelongs(m_Services.World.Files, path, HWVersion()),
             MessageIcon::Critical, MessageButtons::Ok});
        m_Services.World.End.EndProgram(ExitStatus::NoBoard);
    }
    // What is refused ends nothing: the board is shown as not programmed.
    m_Programmed = m_Services.Library.UploadFPGAImage(
                       m_Index, m_Services.World.Files.RealPath(path).string()) == Status::NoError;
    m_Info.ConfigBits = 0;
    return true;
}

bool AIB::CheckMFCReady() {
    m_MFCReady = IsFireWire();
    m_MFCReadyAnswer = {};
    if (IsUsb() && HWVersion() == 0) {
        m_MFCReady = true;
    } else if (IsUsb() && (HWVersion() == 1 || HWVersion() == 2)) {
        std::int32_t word = 0;
        m_MFCReadyAnswer.Code = GetVariable(MFCStatusVariable, word);
        m_MFCReady = m_MFCReadyAnswer.Taken() && IsChannelReady(0, word) && IsChannelReady(1, word);
    }
    return m_MFCReady;
}

bool AIB::RunWalkingRegisterTest(WalkingFindings* findings) {
    WalkingFindings found;
    bool passed = true;
    for (int bit = 0; bit < TestRegisterBits; ++bit) {
        const std::int32_t pattern = 1 << bit;
        std::int32_t value = 0;
        const AIBStatus written = WriteReg(TestRegister, pattern);
        const BoardAnswer answer{written == Status::NoError ? ReadReg(TestRegister, value)
                                                            : written};
        if (answer.Taken() && value == pattern)
            continue;
        passed = false;
        if (answer.Taken())
            found.FailedBits.push_back(bit);
        else if (found.Refusal.Taken())
            found.Refusal = answer;
        m_Services.World.Messages.Ask(
            {"AIB Walking one bus error!", MessageIcon::Critical, MessageButtons::Ok});
    }
    if (findings != nullptr)
        *findings = std::move(found);
    return passed;
}

} // namespace ombrix
