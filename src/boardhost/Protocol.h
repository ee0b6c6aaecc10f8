#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace ombrix::hostprotocol {

/// What the program asks of the board host: an operation of the board library each, but the first
/// and the last.
enum class Operation : std::int32_t {
    Load,
    OpenAIBAPI,
    CloseAIBAPI,
    GetAccessoryInfo,
    UploadFPGAImage,
    WriteReg,
    ReadReg,
    ConfigureGPIO,
    SetGPO,
    ClearGPO,
    SetExtGPO,
    ClearExtGPO,
    GetGPI,
    SetDAC,
    GetADC,
    WriteAIBInfo,
    WriteEEPROM,
    ReadEEPROM,
    DumpEEPROM,
    MFCSetFlowrate,
    MFCGetFlowrate,
    MFCSetParameter,
    MFCGetParameter,
    GetVariable,
    SetVariable,
    /// The program ends as it should: outputs stay as they are.
    Leave,
};
inline constexpr std::int32_t Operations = 26;

/// As the board library and messages have it ("GetADC").
std::string_view NameOf(Operation operation);

/// What the host says first.
inline constexpr std::size_t GreetingBytes = 12;
using Greeting = std::array<char, GreetingBytes>;
Greeting MakeGreeting();
bool IsGreeting(const Greeting& greeting);

/// A call of the library. All numbers travel as little-endian integers of 32 bits.
struct Request {
    static constexpr std::size_t Bytes = 36;

    /// The answer repeats it.
    std::int32_t Number = 0;
    Operation What = Operation::Load;
    /// How long the call may take, in ms.
    std::int32_t Limit_ms = 0;
    std::int32_t Index = 0;
    /// What selects, in the order of the library's arguments.
    std::array<std::int32_t, 4> Selectors{};
    /// What is written, or what an out argument holds before the call.
    std::int32_t Value = 0;
};

struct Answer {
    static constexpr std::size_t Bytes = 16;

    std::int32_t Number = 0;
    Operation What = Operation::Load;
    /// What the library has returned; of Load 0 or the number of an AIBLibraryError.
    std::int32_t Result = 0;
    /// What an out argument holds after the call.
    std::int32_t Value = 0;
};

std::array<char, Request::Bytes> Encode(const Request& request);
std::array<char, Answer::Bytes> Encode(const Answer& answer);
Answer DecodeAnswer(const std::array<char, Answer::Bytes>& bytes);
/// @param bytes of an operation that there is, see IsOperation
Request DecodeRequest(const std::array<char, Request::Bytes>& bytes);
bool IsOperation(std::int32_t number);

/// What follows the head of a message has one size for each operation, so that no length can be
/// wrong: a text that ends with NUL, or the accessory record.
inline constexpr std::size_t TextBytes = 4096;
inline constexpr std::size_t RecordBytes = 788;
constexpr std::size_t BlockOfRequest(Operation operation) {
    switch (operation) {
    case Operation::Load:
    case Operation::UploadFPGAImage:
    case Operation::DumpEEPROM: return TextBytes;
    case Operation::GetAccessoryInfo: return RecordBytes;
    default: return 0;
    }
}
constexpr std::size_t BlockOfAnswer(Operation operation) {
    switch (operation) {
    case Operation::Load: return TextBytes;
    case Operation::GetAccessoryInfo: return RecordBytes;
    default: return 0;
    }
}

/// The text of a block, which need not have its end. @param block of TextBytes
std::string TextOf(std::span<const char> block);

} // namespace ombrix::hostprotocol
