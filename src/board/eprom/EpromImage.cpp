#include "board/eprom/EpromImage.h"

#include "board/AIB.h"

#include <fmt/format.h>

#include <cstring>
#include <stdexcept>

namespace ombrix {

EpromImage EpromImage::Read(EpromSource& board) {
    EpromImage image;
    for (std::int32_t address = 0; address < EpromBytes; address += EpromWordBytes) {
        std::int32_t word = 0;
        const AIBStatus status = board.ReadEPROM(address, word);
        if (status != Status::NoError)
            throw BoardError(fmt::format("The EPROM cannot be read at {}: {}", address,
                                         AIB::AIBErrorStr(status)));
        image.SetWord(address, word);
    }
    return image;
}

EpromImage EpromImage::FromBytes(std::string_view bytes) {
    EpromImage image;
    if (bytes.size() != sizeof image.m_Words)
        throw std::invalid_argument(
            fmt::format("An EPROM image has {} bytes, not {}", sizeof image.m_Words, bytes.size()));
    std::memcpy(image.m_Words.data(), bytes.data(), bytes.size());
    return image;
}

std::string EpromImage::Bytes() const {
    std::string bytes(sizeof m_Words, '\0');
    std::memcpy(bytes.data(), m_Words.data(), bytes.size());
    return bytes;
}

std::set<std::int32_t> DifferingWords(const EpromImage& before, const EpromImage& after) {
    std::set<std::int32_t> differing;
    for (std::int32_t address = 0; address < EpromBytes; address += EpromWordBytes) {
        if (before.Word(address) != after.Word(address))
            differing.insert(address);
    }
    return differing;
}

} // namespace ombrix
