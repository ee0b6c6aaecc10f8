#pragma once

#include "board/AIBControl.h"
#include "platform/os/FileDescriptor.h"
#include "simulator/BenchDescription.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace ombrix {

/// Folder of the EPROM images of the simulated bench in a data folder. When the bench first
/// uses a data folder, the FPGA configuration files are laid into its system folder too, so
/// that the bench can be programmed; files that are there are never replaced.
/// @throws DriveError
std::filesystem::path PrepareSimulatorFolder(const std::filesystem::path& dataRoot);

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

/// What the outputs of a simulated board were told last.
struct BoardOutputs {
    std::array<std::int32_t, 4> DAC{};
    /// Set points of the digital MFC link, 0 to 32000.
    std::array<std::int32_t, 2> SetPoint{};
    /// What the air channels follow, in bits of full scale: a DAC or a set point, whichever was
    /// told last.
    std::array<std::int32_t, 2> Demand_bits{};

    bool operator==(const BoardOutputs&) const = default;
};

/// Keeps a board's outputs in a text file, a line for each: a board holds its outputs when the
/// program that drives it is gone, whatever way that has gone.
class OutputsFile {
  public:
    /// Of a board whose outputs live in memory only.
    OutputsFile() = default;
    /// @throws DriveError for a file that cannot be used
    explicit OutputsFile(const std::filesystem::path& file);

    /// What the file holds; zeros when there is no file, or it is damaged.
    BoardOutputs Kept() const { return m_Kept; }
    /// Writes what has changed, in a single call to the operating system.
    void Keep(const BoardOutputs& outputs);

  private:
    FileDescriptor m_File;
    BoardOutputs m_Kept;
};

} // namespace ombrix
