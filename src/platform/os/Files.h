#pragma once

#include "platform/os/FileDescriptor.h"

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace ombrix {

/// A file that is there, opened for writing in place; none when it cannot be.
FileDescriptor OpenInPlace(const std::filesystem::path& path);

/// Writes in a single call to the operating system. False when not all of it was taken.
bool WriteAt(const FileDescriptor& file, std::int64_t offset, std::string_view bytes);

/// A new folder that nobody else has, for this user alone.
/// @param error says why none could be made
std::filesystem::path MakeScratchFolder(const std::filesystem::path& parent,
                                        std::error_code& error);

} // namespace ombrix
