#pragma once

#include <filesystem>
#include <string>

namespace ombrix {

/// The files below a folder, a line each: bytes, date of the last change (UTC) and path within
/// the folder. At most LongestFileList of them; links are not followed.
inline constexpr std::size_t LongestFileList = 20000;
std::string FileList(const std::filesystem::path& folder);

} // namespace ombrix
