#pragma once

#include "board/AIBControl.h"
#include "simulator/BenchDescription.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace ombrix {

/// The EPROM of a simulated board: 512 words, kept in a file of 2048 bytes (word at byte
/// address a little-endian at offset a) so that a second start finds what the first one wrote.
class SimulatedEPROM {
  public:
    static constexpr std::int32_t Bytes = 2048;
    using Words = std::array<std::int32_t, Bytes / 4>;

    /// An EPROM that lives in memory only.
    explicit SimulatedEPROM(const Words& content) : m_Words(content) {}
    /// An EPROM kept in a file, which is made with the given content when there is none.
    /// @throws DriveError for a file that cannot be used or has not 2048 bytes
    SimulatedEPROM(std::filesystem::path file, const Words& content);

    AIBStatus Read(std::int32_t address, std::int32_t& word) const;
    AIBStatus Write(std::int32_t address, std::int32_t word);

    /// The image as the file holds it.
    std::string Image() const;
    /// Replaces the whole content. @throws DriveError unless there are 2048 bytes
    void Load(std::string_view image);

  private:
    static bool IsWordAddress(std::int32_t address);

    std::filesystem::path m_File;
    Words m_Words{};
};

/// What a unit's EPROM holds when it comes from its maker: erased words, and for a calibrated
/// unit the record of its calibration.
SimulatedEPROM::Words FactoryContent(const BoardDescription& board);

} // namespace ombrix
