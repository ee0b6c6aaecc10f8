#include "board/AIB.h"

#include "board/AIBTools.h"
#include "platform/text/CodePage.h"
#include "platform/text/Rounding.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <stdexcept>

namespace ombrix {

namespace {

constexpr std::int32_t FlowChannels = 2;
constexpr float MFCFullScale = 32000.0F;

} // namespace

AIBStatus clsAIB::CheckStatus(AIBStatus status) {
    if (status != Status::NoError)
        m_StatusOK = false;
    return status;
}

std::string clsAIB::AIBErrorStr(AIBStatus status) {
    switch (status) {
    case Status::NoError: return "AIB No Error";
    case Status::HardwareError: return "AIB Generic Hardware Error";
    case Status::AccessDenied: return "AIB Access Denied";
    case Status::Timeout: return "AIB Timeout";
    default: return fmt::format("[Unknown Error: {}]", status);
    }
}

void clsAIB::TestDigitalAIB() {
    m_Services.Library.MFCSetParameter(m_Index, {1, 128, 1, 32}, 0);
    for (const std::int32_t selector : {32, 64}) {
        std::int32_t value = -1;
        m_Services.Library.MFCGetParameter(m_Index, {1, 128, 8, selector}, value);
    }
}

std::string clsAIB::BusTypeText() const {
    return IsUsb() ? "USB" : IsFireWire() ? "FireWire" : "UNKNOWN";
}

void clsAIB::GetAccessoryInfo(std::int32_t index) {
    m_Index = index;
    AccessoryInfoRecord record = Encode(m_Info);
    m_Services.Library.GetAccessoryInfo(index, record);
    m_Info = Decode(record);
    m_DigitalSetup = HasDigitalMFCs();
}

std::int32_t clsAIB::ReportedSerial() const {
    // A board that is gone leaves the record as it is given.
    AccessoryInfoRecord record;
    m_Services.Library.GetAccessoryInfo(m_Index, record);
    return record.DevSerialNum;
}

AIBStatus clsAIB::WriteAIBInfo(std::int32_t first, std::int32_t code, std::int32_t serial) {
    return CheckStatus(m_Services.Library.WriteAIBInfo(m_Index, first, code, serial));
}

clsACUCalibration& clsAIB::Calibration() {
    if (!m_Calibration)
        m_Calibration = m_Services.MakeCalibration();
    return *m_Calibration;
}

AIBStatus clsAIB::UploadFPGAImage(std::string_view path) {
    const std::string realPath = m_Services.World.Files.RealPath(path).string();
    return CheckStatus(m_Services.Library.UploadFPGAImage(m_Index, realPath));
}

AIBStatus clsAIB::WriteReg(std::int32_t address, std::int32_t value) {
    return CheckStatus(m_Services.Library.WriteReg(m_Index, address, value));
}

AIBStatus clsAIB::ReadReg(std::int32_t address, std::int32_t& value) {
    return CheckStatus(m_Services.Library.ReadReg(m_Index, address, value));
}

AIBStatus clsAIB::ConfigureGPIO(std::int32_t mask) {
    return CheckStatus(m_Services.Library.ConfigureGPIO(m_Index, mask));
}

AIBStatus clsAIB::SetGPO(std::int32_t pin) {
    return CheckStatus(m_Services.Library.SetGPO(m_Index, pin));
}

AIBStatus clsAIB::ClearGPO(std::int32_t pin) {
    return CheckStatus(m_Services.Library.ClearGPO(m_Index, pin));
}

AIBStatus clsAIB::SetExtGPO(std::int32_t pin) {
    return CheckStatus(m_Services.Library.SetExtGPO(m_Index, pin));
}

AIBStatus clsAIB::ClearExtGPO(std::int32_t pin) {
    return CheckStatus(m_Services.Library.ClearExtGPO(m_Index, pin));
}

AIBStatus clsAIB::GetGPI(std::int32_t pin, std::int32_t& level) {
    return CheckStatus(m_Services.Library.GetGPI(m_Index, pin, level));
}

AIBStatus clsAIB::GetVariable(std::int32_t number, std::int32_t& value) {
    return CheckStatus(m_Services.Library.GetVariable(m_Index, number, value));
}

AIBStatus clsAIB::SetVariable(std::int32_t number, std::int32_t value) {
    return CheckStatus(m_Services.Library.SetVariable(m_Index, number, value));
}

AIBStatus clsAIB::MFCSetFlowRate(std::int32_t channel, float percent) {
    if (!m_MFCReady)
        return Status::NoError;
    m_MayDrive = m_MayDrive || percent > 0.0F;
    m_SetPointStands = m_SetPointStands || percent > 0.0F;
    const std::int32_t setPoint = RoundHalfEven(percent / 100.0F * MFCFullScale);
    return CheckStatus(m_Services.Library.MFCSetFlowrate(
        m_Index, channel, std::clamp(setPoint, 0, static_cast<std::int32_t>(MFCFullScale))));
}

AIBStatus clsAIB::MFCGetFlowRate(std::int32_t channel, std::int32_t& value) {
    if (!m_MFCReady) {
        value = 0;
        return Status::NoError;
    }
    std::int32_t raw = 0;
    const AIBStatus status = m_Services.Library.MFCGetFlowrate(m_Index, channel, raw);
    value = RoundHalfEven(raw * (65535.0 / 32000.0));
    return CheckStatus(status);
}

AIBStatus clsAIB::SetDAC_UART(std::int32_t channel, std::int32_t value) {
    // Two integers divide in Double; only the percentage is a Single.
    const double percent = static_cast<double>(value) / DACFullScale * 100.0;
    return MFCSetFlowRate(channel, static_cast<float>(percent));
}

AIBStatus clsAIB::GetADC_UART(std::int32_t channel, std::int32_t& value) {
    return MFCGetFlowRate(channel, value);
}

AIBStatus clsAIB::SetDAC(std::int32_t channel, std::int32_t value) {
    m_DAC.at(static_cast<std::size_t>(channel)) = value;
    if (m_DigitalSetup && channel < FlowChannels)
        return SetDAC_UART(channel, value);
    m_MayDrive = m_MayDrive || value != 0;
    return CheckStatus(m_Services.Library.SetDAC(m_Index, channel, value));
}

std::int32_t clsAIB::DAC(std::int32_t channel) const {
    return m_DAC.at(static_cast<std::size_t>(channel));
}

bool clsAIB::SwitchOutputsOff() noexcept {
    const auto takesZeros = [](std::int32_t channels, auto sendZero) {
        bool taken = true;
        for (std::int32_t channel = 0; channel < channels; ++channel) {
            try {
                taken = sendZero(channel) == Status::NoError && taken;
            } catch (const std::exception&) {
                taken = false;
            }
        }
        return taken;
    };
    const bool setPointsOff = takesZeros(FlowChannels, [this](std::int32_t channel) {
        return m_Services.Library.MFCSetFlowrate(m_Index, channel, 0);
    });
    const bool outputsOff = takesZeros(DACChannels, [this](std::int32_t channel) {
        return m_Services.Library.SetDAC(m_Index, channel, 0);
    });
    const bool taken = outputsOff && (setPointsOff || !(HasDigitalMFCs() || m_SetPointStands));
    m_SetPointStands = m_SetPointStands && !setPointsOff;
    m_DAC.fill(0);
    m_MayDrive = m_MayDrive && !taken;
    m_StatusOK = m_StatusOK && taken;
    return taken;
}

AIBStatus clsAIB::GetADC(std::int32_t channel, std::int32_t& value) {
    if (m_DigitalSetup && channel < FlowChannels)
        return MFCGetFlowRate(channel, value);
    return CheckStatus(m_Services.Library.GetADC(m_Index, channel, value));
}

std::int32_t clsAIB::MyGetADC(std::int32_t channel) {
    std::int32_t value = 0;
    GetADC(channel, value);
    return value;
}

std::int32_t clsAIB::ADC(std::int32_t channel) const {
    std::int32_t value = 0;
    m_Services.Library.GetADC(m_Index, channel, value);
    return value;
}

// Typed storage over the words of the EPROM.

namespace {

constexpr std::int32_t BytesPerWord = 4;
constexpr std::int32_t ErasedWord = -1;

} // namespace

clsAIB::EpromWriting::EpromWriting(clsAIB& board) : m_Board(board) {
    if (board.m_Writing != nullptr)
        throw std::logic_error("The EPROM is being written already");
    board.m_Writing = this;
}

AIBStatus clsAIB::EpromWriting::Note(std::int32_t address, std::int32_t word, AIBStatus status) {
    m_Words.insert_or_assign(address, word);
    if (m_Failure == Status::NoError)
        m_Failure = status;
    return status;
}

AIBStatus clsAIB::WriteEPROM(std::int32_t address, std::int32_t word) {
    if (m_Writing == nullptr)
        throw std::logic_error("The EPROM is written without having been saved");
    return m_Writing->Note(address, word,
                           CheckStatus(m_Services.Library.WriteEEPROM(m_Index, address, word)));
}

AIBStatus clsAIB::ReadEPROM(std::int32_t address, std::int32_t& word) {
    return CheckStatus(m_Services.Library.ReadEEPROM(m_Index, address, word));
}

AIBStatus clsAIB::DumpEPROM(std::string_view path) {
    const std::string realPath = m_Services.World.Files.RealPath(path).string();
    return CheckStatus(m_Services.Library.DumpEEPROM(m_Index, realPath));
}

AIBStatus clsAIB::WriteEPROMLng(std::int32_t& address, std::int32_t value) {
    const AIBStatus status = WriteEPROM(address, value);
    address += BytesPerWord;
    return status;
}

AIBStatus clsAIB::ReadEPROMLng(std::int32_t& address, std::int32_t& value,
                               std::string_view /*label*/) {
    value = 0;
    const AIBStatus status = ReadEPROM(address, value);
    address += BytesPerWord;
    return status;
}

AIBStatus clsAIB::WriteEPROMSng(std::int32_t& address, float value) {
    return WriteEPROMLng(address, std::bit_cast<std::int32_t>(value));
}

AIBStatus clsAIB::ReadEPROMSng(std::int32_t& address, float& value, std::string_view label) {
    std::int32_t word = 0;
    const AIBStatus status = ReadEPROMLng(address, word, label);
    value = std::bit_cast<float>(word);
    return status;
}

AIBStatus clsAIB::WriteEPROMDate(std::int32_t& address, OleDate value) {
    const auto bits = std::bit_cast<std::uint64_t>(value.Days());
    WriteEPROMLng(address, static_cast<std::int32_t>(bits & 0xFFFFFFFFU));
    return WriteEPROMLng(address, static_cast<std::int32_t>(bits >> 32U));
}

AIBStatus clsAIB::ReadEPROMDate(std::int32_t& address, OleDate& value, std::string_view label) {
    std::int32_t low = 0;
    std::int32_t high = 0;
    ReadEPROMLng(address, low, fmt::format("{} (0)", label));
    const AIBStatus status = ReadEPROMLng(address, high, fmt::format("{} (1)", label));
    const auto half = [](std::int32_t word) {
        return std::uint64_t{word == ErasedWord ? 0U : static_cast<std::uint32_t>(word)};
    };
    value = OleDate(std::bit_cast<double>(half(high) << 32U | half(low)));
    return status;
}

AIBStatus clsAIB::WriteEPROMString(std::int32_t& address, std::string_view text,
                                   std::int32_t length) {
    const std::string bytes = ToWindows1252(text);
    for (std::int32_t offset = 0; offset < length; offset += BytesPerWord) {
        std::uint32_t word = 0;
        for (std::uint32_t i = 0; i < BytesPerWord; ++i) {
            const std::size_t position = static_cast<std::size_t>(offset) + i;
            if (position < bytes.size())
                word |= std::uint32_t{static_cast<unsigned char>(bytes[position])} << (8U * i);
        }
        WriteEPROMLng(address, static_cast<std::int32_t>(word));
    }
    return Status::NoError;
}

AIBStatus clsAIB::ReadEPROMString(std::int32_t& address, std::string& text, std::int32_t length,
                                  std::string_view label) {
    std::string bytes;
    for (std::int32_t offset = 0; offset < length; offset += BytesPerWord) {
        std::int32_t word = 0;
        ReadEPROMLng(address, word, fmt::format("{} ({})", label, offset));
        for (std::uint32_t i = 0; i < BytesPerWord; ++i)
            bytes += static_cast<char>(static_cast<std::uint32_t>(word) >> (8U * i) & 0xFFU);
    }
    bytes.resize(static_cast<std::size_t>(length));
    text = FromWindows1252(std::string_view(bytes).substr(0, bytes.find('\0')));
    return Status::NoError;
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

} // namespace

std::string clsAIB::FPGAFileName() const {
    // An arithmetic shift is the integer part, also of a negative version.
    const std::int32_t number = HWVersion() >> 16;
    if (number < 0 || number >= static_cast<std::int32_t>(FPGAFiles.size()))
        return {};
    const std::string_view file = FPGAFiles.at(static_cast<std::size_t>(number));
    const std::string first = std::string(SystemFolders[0]).append(file);
    return FileExists(first) ? first : std::string(SystemFolders[1]).append(file);
}

bool clsAIB::StartFPGAUpload() {
    const std::string path = FPGAFileName();
    if (!FileExists(path)) {
        m_Services.World.Messages.Ask(
            {"An error occurred while trying to program the Aeration Control Unit\r\n\r\n"
             "The Following filehas not been found:\r\n\r\n   " +
                 path + "\r\n\r\nThe program will now end.",
             MessageIcon::Critical, MessageButtons::Ok});
        m_Services.World.End.EndProgram(ExitStatus::NoBoard);
    }
    m_Services.Library.UploadFPGAImage(m_Index, m_Services.World.Files.RealPath(path).string());
    m_Info.ConfigBits = 0;
    return true;
}

bool clsAIB::CheckMFCReady() {
    m_MFCReady = IsFireWire();
    if (IsUsb() && HWVersion() == 0) {
        m_MFCReady = true;
    } else if (IsUsb() && (HWVersion() == 1 || HWVersion() == 2)) {
        std::int32_t word = 0;
        GetVariable(MFCStatusVariable, word);
        m_MFCReady = IsChannelReady(0, word) && IsChannelReady(1, word);
    }
    return m_MFCReady;
}

bool clsAIB::RunWalkingRegisterTest(std::vector<int>* failedBits) {
    bool passed = true;
    for (int bit = 0; bit < TestRegisterBits; ++bit) {
        const std::int32_t pattern = 1 << bit;
        std::int32_t value = 0;
        WriteReg(TestRegister, pattern);
        ReadReg(TestRegister, value);
        if (value == pattern)
            continue;
        passed = false;
        if (failedBits != nullptr)
            failedBits->push_back(bit);
        m_Services.World.Messages.Ask(
            {"AIB Walking one bus error!", MessageIcon::Critical, MessageButtons::Ok});
    }
    return passed;
}

} // namespace ombrix
