// What makes a board ready for use: its FPGA configuration and its self-tests.
#include "board/AIB.h"
#include "board/AIBTools.h"

#include <array>

namespace ombrix {

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
