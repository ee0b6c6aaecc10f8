#include "boardhost/HostCalls.h"

#include <algorithm>

namespace ombrix {

using hostprotocol::Answer;
using hostprotocol::Operation;
using hostprotocol::Request;

namespace {

constexpr std::int32_t HardwareError = -1;

} // namespace

/// What the library is given pointers to, with room around it.
struct HostCalls::Arguments {
    static constexpr std::size_t Room = 65'536;

    std::array<char, Room> Before{};
    alignas(8) std::array<char, hostprotocol::TextBytes> Block{};
    std::array<char, Room> Between{};
    std::int32_t Value = 0;
    std::array<char, Room> After{};
};

HostCalls::HostCalls() : m_Arguments(std::make_unique<Arguments>()) {}

HostCalls::~HostCalls() = default;

Answer HostCalls::Make(const Request& request, std::span<char> block) {
    Answer answer;
    if (request.What == Operation::Load) {
        answer = Load(block);
    } else if (!m_Library) {
        answer.Result = HardwareError;
    } else {
        Arguments& arguments = *m_Arguments;
        std::copy_n(block.begin(), BlockOfRequest(request.What), arguments.Block.begin());
        arguments.Block.back() = '\0';
        arguments.Value = request.Value;
        m_Driven.Note(request);
        answer.Result = Call(request, arguments);
        m_Driven.NoteResult(request, answer.Result);
        answer.Value = arguments.Value;
        std::copy_n(arguments.Block.begin(), BlockOfAnswer(request.What), block.begin());
    }
    answer.Number = request.Number;
    answer.What = request.What;
    return answer;
}

Answer HostCalls::Load(std::span<char> block) {
    Answer answer;
    std::string trouble;
    try {
        m_Library.emplace(hostprotocol::TextOf(block));
    } catch (const AIBLibraryError& error) {
        answer.Result = error.Number();
        trouble = error.what();
    }
    std::fill(block.begin(), block.end(), '\0');
    std::copy_n(trouble.begin(), std::min(trouble.size(), block.size()), block.begin());
    return answer;
}

std::int32_t HostCalls::Call(const Request& request, Arguments& arguments) {
    const BoardLibrary& library = *m_Library;
    const std::int32_t index = request.Index;
    switch (request.What) {
    case Operation::OpenAIBAPI: return library.OpenAIBAPI();
    case Operation::CloseAIBAPI: return library.CloseAIBAPI();
    case Operation::GetAccessoryInfo:
        return library.GetAccessoryInfo(index, arguments.Block.data());
    case Operation::UploadFPGAImage: return library.UploadFPGAImage(index, arguments.Block.data());
    case Operation::DumpEEPROM: return library.DumpEEPROM(index, arguments.Block.data());
    case Operation::ReadReg:
    case Operation::GetGPI:
    case Operation::GetADC:
    case Operation::ReadEEPROM:
    case Operation::MFCGetFlowrate:
    case Operation::MFCGetParameter:
    case Operation::GetVariable: return Read(request, arguments.Value);
    default: return Write(request);
    }
}

std::int32_t HostCalls::Read(const Request& request, std::int32_t& value) {
    const BoardLibrary& library = *m_Library;
    const std::int32_t index = request.Index;
    const auto& [first, second, third, fourth] = request.Selectors;
    switch (request.What) {
    case Operation::ReadReg: return library.ReadReg(index, first, &value);
    case Operation::GetGPI: return library.GetGPI(index, first, &value);
    case Operation::GetADC: return library.GetADC(index, first, &value);
    case Operation::ReadEEPROM: return library.ReadEEPROM(index, first, &value);
    case Operation::MFCGetFlowrate: return library.MFCGetFlowrate(index, first, &value);
    case Operation::MFCGetParameter:
        return library.MFCGetParameter(index, first, second, third, fourth, &value);
    default: return library.GetVariable(index, first, &value);
    }
}

std::int32_t HostCalls::Write(const Request& request) {
    const BoardLibrary& library = *m_Library;
    const std::int32_t index = request.Index;
    const std::int32_t value = request.Value;
    const auto& [first, second, third, fourth] = request.Selectors;
    switch (request.What) {
    case Operation::WriteReg: return library.WriteReg(index, first, value);
    case Operation::ConfigureGPIO: return library.ConfigureGPIO(index, value);
    case Operation::SetGPO: return library.SetGPO(index, first);
    case Operation::ClearGPO: return library.ClearGPO(index, first);
    case Operation::SetExtGPO: return library.SetExtGPO(index, first);
    case Operation::ClearExtGPO: return library.ClearExtGPO(index, first);
    case Operation::SetDAC: return library.SetDAC(index, first, value);
    case Operation::WriteAIBInfo: return library.WriteAIBInfo(index, first, second, value);
    case Operation::WriteEEPROM: return library.WriteEEPROM(index, first, value);
    case Operation::MFCSetFlowrate: return library.MFCSetFlowrate(index, first, value);
    case Operation::MFCSetParameter:
        return library.MFCSetParameter(index, first, second, third, fourth, value);
    case Operation::SetVariable:
        return library.SetVariable == nullptr ? HardwareError
                                              : library.SetVariable(index, first, value);
    default: return HardwareError;
    }
}

void HostCalls::SwitchOff() {
    std::array<char, hostprotocol::TextBytes> block{};
    for (const std::int32_t index : m_Driven.Boards())
        for (const Request& zero : DrivenOutputs::ZerosFor(index))
            Make(zero, block);
}

} // namespace ombrix
