#include "platform/os/FolderDrive.h"

#include "platform/os/FileDescriptor.h"

#include <fmt/format.h>

#include <cerrno>
#include <fcntl.h>
#include <functional>
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

DriveError NotWritable(const fs::path& path) {
    return DriveError(fmt::format("{} cannot be opened for writing: {}", path.string(), Reason()));
}

/// A descriptor of the file. @throws DriveError
FileDescriptor OpenFile(const fs::path& path, int flags) {
    constexpr mode_t everybody = 0666;
    FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC, everybody));
    if (!file.IsOpen())
        throw NotWritable(path);
    return file;
}

/// A file that every user may read, write and lock; one that is a link, or no file, is refused.
FileDescriptor OpenShared(const fs::path& path) {
    constexpr int flags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    constexpr mode_t everybody = 0666;
    // Where users share a folder, the system lets nobody make a file that another user has made
    // already: one that is there is opened as it is.
    FileDescriptor file(::open(path.c_str(), flags));
    if (!file.IsOpen() && errno == ENOENT) {
        file = FileDescriptor(::open(path.c_str(), flags | O_CREAT | O_EXCL, everybody));
        if (file.IsOpen())
            ::fchmod(file.Get(), everybody); // whatever the user's mask
        else if (errno == EEXIST)            // made by another program meanwhile
            file = FileDescriptor(::open(path.c_str(), flags));
    }
    struct stat status {};
    if (file.IsOpen() && (::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)))
        throw DriveError(fmt::format("{} is no file", path.string()));
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

void MakeSharedFolder(const fs::path& folder) {
    constexpr mode_t everybody = 01777;
    if (::mkdir(folder.c_str(), everybody) == 0)
        ::chmod(folder.c_str(), everybody); // whatever the user's mask
    std::error_code error;
    if (fs::is_symlink(folder, error))
        throw DriveError(fmt::format("The folder {} is a link, which may lead anywhere. Please "
                                     "remove it.",
                                     folder.string()));
}

void ReplaceWholeFile(const fs::path& path, std::string_view content) {
    StoreByTemporaryName(path, content, [&path](const char* temporary) {
        return ::rename(temporary, path.c_str());
    });
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

void FolderDrive::ReplaceFile(std::string_view path, std::string_view content) {
    ReplaceWholeFile(RealPath(path), content);
}

void FolderDrive::OverwriteFile(std::string_view path, std::string_view content) {
    const fs::path real = RealPath(path);
    const FileDescriptor file = OpenShared(real);
    if (!file.IsOpen())
        throw NotWritable(real);
    WriteAll(file, content, real);
    if (::ftruncate(file.Get(), static_cast<off_t>(content.size())) != 0 ||
        ::fsync(file.Get()) != 0)
        throw DriveError(fmt::format("{} cannot be written: {}", real.string(), Reason()));
}

void FolderDrive::CreateFile(std::string_view path, std::string_view content) {
    const fs::path real = RealPath(path);
    StoreByTemporaryName(real, content,
                         [&real](const char* temporary) { return TakeFreeName(temporary, real); });
}

std::unique_ptr<FileLock> FolderDrive::TryLock(std::string_view path, std::string_view holder) {
    const fs::path real = RealPath(path);
    FileDescriptor file = OpenShared(real);
    // A file that another user has made for himself can be locked all the same.
    const bool readOnly = !file.IsOpen();
    if (readOnly)
        file = OpenFile(real, O_RDONLY | O_NOFOLLOW);
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
