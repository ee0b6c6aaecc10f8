#include "platform/os/FolderDrive.h"

#include "platform/os/FileDescriptor.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <optional>
#include <sys/file.h>
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

/// A descriptor of the file. @throws DriveError
FileDescriptor OpenFile(const fs::path& path, int flags) {
    constexpr mode_t everybody = 0666;
    FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC, everybody));
    if (!file.IsOpen())
        throw DriveError(
            fmt::format("{} cannot be opened for writing: {}", path.string(), Reason()));
    return file;
}

class FolderOutputFile final : public OutputFile {
  public:
    /// @param mode O_TRUNC, O_EXCL or O_APPEND
    FolderOutputFile(fs::path path, int mode)
        : m_Path(std::move(path)), m_File(OpenFile(m_Path, O_WRONLY | O_CREAT | mode)) {}

    void Write(std::string_view text) override {
        const off_t begin = ::lseek(m_File.Get(), 0, SEEK_END);
        try {
            WriteAll(m_File, text, m_Path);
        } catch (const DriveError&) {
            // A disk that fills up takes a part of the text: the file keeps whole texts only.
            if (::ftruncate(m_File.Get(), begin) == 0)
                ::lseek(m_File.Get(), begin, SEEK_SET);
            throw;
        }
    }
    void Sync() override {
        if (::fdatasync(m_File.Get()) != 0)
            throw DriveError(fmt::format("{} cannot be written: {}", m_Path.string(), Reason()));
    }
    fs::path RealPath() const override { return m_Path; }

  private:
    fs::path m_Path;
    FileDescriptor m_File;
};

class FolderFileLock final : public FileLock {
  public:
    explicit FolderFileLock(FileDescriptor file) : m_File(std::move(file)) {}

  private:
    FileDescriptor m_File;
};

/// Writes under a temporary name beside the path, flushes, then has the file take its name.
/// @param takeName returns 0 when the temporary name has become the wanted one
void StoreByTemporaryName(const fs::path& path, std::string_view content,
                          const std::function<int(const char* temporary)>& takeName) {
    std::string temporary = path.string() + ".XXXXXX";
    const FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.IsOpen())
        throw DriveError(fmt::format("{} cannot be written: {}", path.string(), Reason()));
    try {
        WriteAll(file, content, path);
        ::fchmod(file.Get(), 0644);
        if (::fsync(file.Get()) != 0 || takeName(temporary.c_str()) != 0)
            throw DriveError(fmt::format("{} cannot be written: {}", path.string(), Reason()));
    } catch (...) {
        ::unlink(temporary.c_str());
        throw;
    }
    // The name is to last as well as the content.
    const FileDescriptor folder(
        ::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen())
        ::fsync(folder.Get());
}

/// Unlike a plain renaming this never takes the place of a file.
int TakeFreeName(const char* temporary, const fs::path& path) {
    if (::link(temporary, path.c_str()) == 0)
        return ::unlink(temporary);
    if (errno != EPERM && errno != EOPNOTSUPP)
        return -1;
    // Memory sticks and some shares know no second name for a file.
    return ::renameat2(AT_FDCWD, temporary, AT_FDCWD, path.c_str(), RENAME_NOREPLACE);
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
        throw DriveError(fmt::format("{} cannot be opened: {}", path.string(), Reason()));
    std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad())
        throw DriveError(fmt::format("{} cannot be read: {}", path.string(), Reason()));
    return content;
}

void ReplaceWholeFile(const fs::path& path, std::string_view content) {
    StoreByTemporaryName(path, content, [&path](const char* temporary) {
        return ::rename(temporary, path.c_str());
    });
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
    return std::make_unique<FolderOutputFile>(RealPath(path), O_TRUNC);
}

std::unique_ptr<OutputFile> FolderDrive::OpenNew(std::string_view path) {
    return std::make_unique<FolderOutputFile>(RealPath(path), O_EXCL);
}

std::unique_ptr<OutputFile> FolderDrive::OpenForAppending(std::string_view path) {
    return std::make_unique<FolderOutputFile>(RealPath(path), O_APPEND);
}

std::string FolderDrive::ReadFile(std::string_view path) const {
    return ReadWholeFile(RealPath(path));
}

void FolderDrive::ReplaceFile(std::string_view path, std::string_view content) {
    ReplaceWholeFile(RealPath(path), content);
}

void FolderDrive::CreateFile(std::string_view path, std::string_view content) {
    const fs::path real = RealPath(path);
    StoreByTemporaryName(real, content,
                         [&real](const char* temporary) { return TakeFreeName(temporary, real); });
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

std::unique_ptr<FileLock> FolderDrive::TryLock(std::string_view path, std::string_view holder) {
    const fs::path real = RealPath(path);
    FileDescriptor file(::open(real.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
    // Another user's file can be locked all the same.
    const bool readOnly = !file.IsOpen();
    if (readOnly)
        file = OpenFile(real, O_RDONLY);
    if (::flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK)
            return nullptr;
        throw DriveError(fmt::format("{} cannot be locked: {}", real.string(), Reason()));
    }
    if (!readOnly) {
        if (::ftruncate(file.Get(), 0) != 0)
            throw DriveError(fmt::format("{} cannot be written: {}", real.string(), Reason()));
        WriteAll(file, holder, real);
    }
    return std::make_unique<FolderFileLock>(std::move(file));
}

} // namespace ombrix
