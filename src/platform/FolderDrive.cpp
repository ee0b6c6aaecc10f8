#include "platform/FolderDrive.h"

#include "platform/FileDescriptor.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

std::string Reason() {
    return std::generic_category().message(errno);
}

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

void WriteAll(const FileDescriptor& file, std::string_view content, const fs::path& path) {
    while (!content.empty()) {
        const ssize_t written = ::write(file.Get(), content.data(), content.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw DriveError(fmt::format("{} cannot be written: {}", path.string(), Reason()));
        content.remove_prefix(static_cast<std::size_t>(written));
    }
}

class FolderOutputFile final : public OutputFile {
  public:
    explicit FolderOutputFile(fs::path path)
        : m_Path(std::move(path)),
          m_File(::open(m_Path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
        if (!m_File.IsOpen())
            throw DriveError(
                fmt::format("{} cannot be opened for writing: {}", m_Path.string(), Reason()));
    }

    void Write(std::string_view text) override {
        try {
            WriteAll(m_File, text, m_Path);
            m_Length += static_cast<off_t>(text.size());
        } catch (const DriveError&) {
            // A disk that fills up takes a part of the text: the file keeps whole texts only.
            if (::ftruncate(m_File.Get(), m_Length) == 0)
                ::lseek(m_File.Get(), m_Length, SEEK_SET);
            throw;
        }
    }
    fs::path RealPath() const override { return m_Path; }

  private:
    fs::path m_Path;
    FileDescriptor m_File;
    /// What has been written whole.
    off_t m_Length = 0;
};

} // namespace

std::string ReadWholeFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::error_code error;
    if (!file || fs::is_directory(path, error))
        throw DriveError(fmt::format("{} cannot be opened: {}", path.string(), Reason()));
    std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad())
        throw DriveError(fmt::format("{} cannot be read: {}", path.string(), Reason()));
    return content;
}

void ReplaceWholeFile(const fs::path& path, std::string_view content) {
    std::string temporary = path.string() + ".XXXXXX";
    const FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.IsOpen())
        throw DriveError(fmt::format("{} cannot be written: {}", path.string(), Reason()));
    try {
        WriteAll(file, content, path);
        ::fchmod(file.Get(), 0644);
        if (::fsync(file.Get()) != 0 || ::rename(temporary.c_str(), path.c_str()) != 0)
            throw DriveError(fmt::format("{} cannot be written: {}", path.string(), Reason()));
    } catch (...) {
        ::unlink(temporary.c_str());
        throw;
    }
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

std::unique_ptr<OutputFile> FolderDrive::OpenForWriting(std::string_view path) {
    return std::make_unique<FolderOutputFile>(RealPath(path));
}

std::string FolderDrive::ReadFile(std::string_view path) const {
    return ReadWholeFile(RealPath(path));
}

void FolderDrive::ReplaceFile(std::string_view path, std::string_view content) {
    ReplaceWholeFile(RealPath(path), content);
}

} // namespace ombrix
