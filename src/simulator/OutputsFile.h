#pragma once

#include "platform/os/FileDescriptor.h"

#include <array>
#include <cstdint>
#include <filesystem>

namespace ombrix {

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
