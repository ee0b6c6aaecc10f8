// The typed storage of clsAIB over the words of the board's EPROM.
#include "board/AIB.h"
#include "platform/text/CodePage.h"

#include <fmt/format.h>

#include <bit>
#include <stdexcept>

namespace ombrix {

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

} // namespace ombrix
