#include "boardhost/Protocol.h"

#include <algorithm>

namespace ombrix::hostprotocol {

namespace {

constexpr std::array<std::string_view, Operations> Names = {
    "Load",           "OpenAIBAPI",      "CloseAIBAPI",     "GetAccessoryInfo", "UploadFPGAImage",
    "WriteReg",       "ReadReg",         "ConfigureGPIO",   "SetGPO",           "ClearGPO",
    "SetExtGPO",      "ClearExtGPO",     "GetGPI",          "SetDAC",           "GetADC",
    "WriteAIBInfo",   "WriteEEPROM",     "ReadEEPROM",      "DumpEEPROM",       "MFCSetFlowrate",
    "MFCGetFlowrate", "MFCSetParameter", "MFCGetParameter", "GetVariable",      "SetVariable",
    "Leave"};

constexpr std::string_view Magic = "AIB host";
constexpr std::int32_t Version = 1;
constexpr std::size_t WordBytes = 4;

class Writer {
  public:
    explicit Writer(std::span<char> bytes) : m_Bytes(bytes) {}
    Writer& Put(std::int32_t word) {
        const auto bits = static_cast<std::uint32_t>(word);
        for (std::size_t i = 0; i < WordBytes; ++i)
            m_Bytes[m_At++] = static_cast<char>(bits >> (8 * i) & 0xFFU);
        return *this;
    }

  private:
    std::span<char> m_Bytes;
    std::size_t m_At = 0;
};

class Reader {
  public:
    explicit Reader(std::span<const char> bytes) : m_Bytes(bytes) {}
    std::int32_t Take() {
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < WordBytes; ++i)
            bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(m_Bytes[m_At++]))
                    << (8 * i);
        return static_cast<std::int32_t>(bits);
    }

  private:
    std::span<const char> m_Bytes;
    std::size_t m_At = 0;
};

} // namespace

std::string_view NameOf(Operation operation) {
    return Names.at(static_cast<std::size_t>(operation));
}

bool IsOperation(std::int32_t number) {
    return number >= 0 && number < Operations;
}

Greeting MakeGreeting() {
    Greeting greeting{};
    std::copy(Magic.begin(), Magic.end(), greeting.begin());
    Writer(std::span(greeting).subspan(Magic.size())).Put(Version);
    return greeting;
}

bool IsGreeting(const Greeting& greeting) {
    return greeting == MakeGreeting();
}

std::array<char, Request::Bytes> Encode(const Request& request) {
    std::array<char, Request::Bytes> bytes{};
    Writer writer(bytes);
    writer.Put(request.Number)
        .Put(static_cast<std::int32_t>(request.What))
        .Put(request.Limit_ms)
        .Put(request.Index);
    for (const std::int32_t selector : request.Selectors)
        writer.Put(selector);
    writer.Put(request.Value);
    return bytes;
}

Request DecodeRequest(const std::array<char, Request::Bytes>& bytes) {
    Reader reader(bytes);
    Request request;
    request.Number = reader.Take();
    request.What = static_cast<Operation>(reader.Take());
    request.Limit_ms = reader.Take();
    request.Index = reader.Take();
    for (std::int32_t& selector : request.Selectors)
        selector = reader.Take();
    request.Value = reader.Take();
    return request;
}

std::array<char, Answer::Bytes> Encode(const Answer& answer) {
    std::array<char, Answer::Bytes> bytes{};
    Writer(bytes)
        .Put(answer.Number)
        .Put(static_cast<std::int32_t>(answer.What))
        .Put(answer.Result)
        .Put(answer.Value);
    return bytes;
}

Answer DecodeAnswer(const std::array<char, Answer::Bytes>& bytes) {
    Reader reader(bytes);
    Answer answer;
    answer.Number = reader.Take();
    answer.What = static_cast<Operation>(reader.Take());
    answer.Result = reader.Take();
    answer.Value = reader.Take();
    return answer;
}

std::string TextOf(std::span<const char> block) {
    return {block.begin(), std::find(block.begin(), block.end(), '\0')};
}

} // namespace ombrix::hostprotocol
