#pragma once

#include "board/eprom/EpromStorage.h"

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace ombrix {

/// The content of a board's EPROM: 512 words at byte addresses 0, 4, … 2044. As a file it has
/// 2048 bytes, the word at address a little-endian at offset a.
class EpromImage {
  public:
    static constexpr std::int32_t WordCount = EpromBytes / EpromWordBytes;

    /// Reads every word once. @throws BoardError that names the first word that cannot be read
    static EpromImage Read(EpromSource& board);
    /// @throws std::invalid_argument unless there are 2048 bytes
    static EpromImage FromBytes(std::string_view bytes);
    std::string Bytes() const;

    /// The word at a byte address. @throws std::out_of_range
    std::int32_t Word(std::int32_t address) const { return m_Words.at(Index(address)); }
    void SetWord(std::int32_t address, std::int32_t word) { m_Words.at(Index(address)) = word; }

    bool operator==(const EpromImage&) const = default;

  private:
    static std::size_t Index(std::int32_t address) {
        return static_cast<std::size_t>(address / EpromWordBytes);
    }

    std::array<std::int32_t, static_cast<std::size_t>(WordCount)> m_Words{};
};

/// Addresses of the words that two images do not have in common.
std::set<std::int32_t> DifferingWords(const EpromImage& before, const EpromImage& after);

} // namespace ombrix
