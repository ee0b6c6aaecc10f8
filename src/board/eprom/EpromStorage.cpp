#include "board/eprom/EpromStorage.h"

#include "platform/text/Text.h"

#include <bit>

namespace ombrix {

namespace {

constexpr std::int32_t ErasedWord = -1;

} // namespace

AIBStatus EpromSource::ReadEPROMLng(std::int32_t& address, std::int32_t& value) {
    value = 0;
    const AIBStatus status = ReadEPROM(address, value);
    address += EpromWordBytes;
    return status;
}

AIBStatus EpromSource::ReadEPROMSng(std::int32_t& address, float& value) {
    std::int32_t word = 0;
    const AIBStatus status = ReadEPROMLng(address, word);
    value = std::bit_cast<float>(word);
    return status;
}

AIBStatus EpromSource::ReadEPROMDate(std::int32_t& address, OleDate& value) {
    std::int32_t low = 0;
    std::int32_t high = 0;
    ReadEPROMLng(address, low); // one that failed shows in the status of the board
    const AIBStatus status = ReadEPROMLng(address, high);
    const auto half = [](std::int32_t word) {
        return std::uint64_t{word == ErasedWord ? 0U : static_cast<std::uint32_t>(word)};
    };
    value = OleDate(std::bit_cast<double>(half(high) << 32U | half(low)));
    return status;
}

AIBStatus EpromSource::ReadEPROMString(std::int32_t& address, std::string& text,
                                       std::int32_t length) {
    std::string bytes;
    for (std::int32_t offset = 0; offset < length; offset += EpromWordBytes) {
        std::int32_t word = 0;
        ReadEPROMLng(address, word);
        for (std::uint32_t i = 0; i < EpromWordBytes; ++i)
            bytes += static_cast<char>(static_cast<std::uint32_t>(word) >> (8U * i) & 0xFFU);
    }
    bytes.resize(static_cast<std::size_t>(length));
    text = FromWindows1252(std::string_view(bytes).substr(0, bytes.find('\0')));
    return Status::NoError;
}

AIBStatus EpromSink::WriteEPROMLng(std::int32_t& address, std::int32_t value) {
    const AIBStatus status = WriteEPROM(address, value);
    address += EpromWordBytes;
    return status;
}

AIBStatus EpromSink::WriteEPROMSng(std::int32_t& address, float value) {
    return WriteEPROMLng(address, std::bit_cast<std::int32_t>(value));
}

AIBStatus EpromSink::WriteEPROMDate(std::int32_t& address, OleDate value) {
    const auto bits = std::bit_cast<std::uint64_t>(value.Days());
    WriteEPROMLng(address, static_cast<std::int32_t>(bits & 0xFFFFFFFFU));
    return WriteEPROMLng(address, static_cast<std::int32_t>(bits >> 32U));
}

AIBStatus EpromSink::WriteEPROMString(std::int32_t& address, std::string_view text,
                                      std::int32_t length) {
    const std::string bytes = ToWindows1252(text);
    for (std::int32_t offset = 0; offset < length; offset += EpromWordBytes) {
        std::uint32_t word = 0;
        for (std::uint32_t i = 0; i < EpromWordBytes; ++i) {
            const std::size_t position = static_cast<std::size_t>(offset) + i;
            if (position < bytes.size())
                word |= std::uint32_t{static_cast<unsigned char>(bytes[position])} << (8U * i);
        }
        WriteEPROMLng(address, static_cast<std::int32_t>(word));
    }
    return Status::NoError;
}

} // namespace ombrix
