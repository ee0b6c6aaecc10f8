#include "platform/os/FolderDrive.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <optional>
#include <system_error>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

/// The components of a Windows-style path; nothing when one of them would lead elsewhere.
std::optional<std::vector<std::string>> Components(std::string_view path) {
    std::vector<std::string> parts;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of("\\/"), path.size());
        const std::string_view part = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (part.empty() || part == ".")
            continue;
        const bool isDrive = parts.empty() && part.size() == 2 && part[1] == ':';
        if (part == ".." || part.find('\0') != std::string_view::npos ||
            (!isDrive && part.find(':') != std::string_view::npos))
            return std::nullopt;
        parts.emplace_back(part);
    }
    return parts;
}

} // namespace

std::string ReadWholeFile(const fs::path& path) {
    std::error_code error;
    if (fs::is_directory(path, error))
        throw DriveError(fmt::format("{} is a folder, not a file", path.string()));
    // A pipe or a device may have no end.
    if (fs::is_other(path, error))
        throw DriveError(fmt::format("{} is no file", path.string()));
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw DriveError(fmt::format("{} cannot be opened: {}", path.string(),
                                     std::generic_category().message(errno)));
    std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad())
        throw DriveError(fmt::format("{} cannot be read: {}", path.string(),
                                     std::generic_category().message(errno)));
    return content;
}

FolderDrive::FolderDrive(const fs::path& dataRoot) {
    Mount("C:", dataRoot);
}

void FolderDrive::Mount(std::string_view prefix, const fs::path& folder) {
    m_Mounts.push_back({Components(prefix).value(), fs::absolute(folder)});
    // The longest prefix is found first.
    std::stable_sort(m_Mounts.begin(), m_Mounts.end(),
                     [](const MountPoint& left, const MountPoint& right) {
                         return left.Prefix.size() > right.Prefix.size();
                     });
}

fs::path FolderDrive::RealPath(std::string_view path) const {
    const auto parts = Components(path);
    if (!parts)
        throw DriveError(fmt::format("\"{}\" is not a path inside the data folder", path));
    for (const MountPoint& mount : m_Mounts) {
        if (parts->size() < mount.Prefix.size() ||
            !std::equal(mount.Prefix.begin(), mount.Prefix.end(), parts->begin()))
            continue;
        fs::path real = mount.Folder;
        for (std::size_t i = mount.Prefix.size(); i < parts->size(); ++i)
            real /= (*parts)[i];
        return real;
    }
    throw DriveError(fmt::format("\"{}\" is on no drive that the program knows", path));
}

bool FolderDrive::FileExists(std::string_view path) const {
    std::error_code error;
    try {
        return fs::is_regular_file(RealPath(path), error);
    } catch (const DriveError&) {
        return false;
    }
}

bool FolderDrive::FolderExists(std::string_view path) const {
    std::error_code error;
    try {
        return fs::is_directory(RealPath(path), error);
    } catch (const DriveError&) {
        return false;
    }
}

bool FolderDrive::CreateFolder(std::string_view path) {
    std::error_code error;
    try {
        fs::create_directory(RealPath(path), error);
    } catch (const DriveError&) {
        return false;
    }
    return FolderExists(path);
}

std::string FolderDrive::ReadFile(std::string_view path) const {
    return ReadWholeFile(RealPath(path));
}

std::vector<std::string> FolderDrive::FilesIn(std::string_view folder) const {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(RealPath(folder), error))
        if (entry.is_regular_file(error))
            names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void FolderDrive::RemoveFile(std::string_view path) {
    const fs::path real = RealPath(path);
    std::error_code error;
    fs::remove(real, error);
    if (error)
        throw DriveError(fmt::format("{} cannot be removed: {}", real.string(), error.message()));
}

} // namespace ombrix
