#pragma once

#include <filesystem>

namespace ombrix {

/// Folder of the EPROM images of the simulated bench in a data folder. When the bench first
/// uses a data folder, the FPGA configuration files are laid into its system folder too, so
/// that the bench can be programmed; files that are there are never replaced.
/// @throws DriveError
std::filesystem::path PrepareSimulatorFolder(const std::filesystem::path& dataRoot);

} // namespace ombrix
