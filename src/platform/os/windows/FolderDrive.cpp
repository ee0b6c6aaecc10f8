#include "platform/os/FolderDrive.h"

#include "platform/os/Files.h"
#include "platform/os/windows/WindowsApi.h"
#include "platform/text/Utf8Path.h"

#include <fmt/format.h>

#include <random>
#include <sddl.h>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

DriveError NotWritten(const fs::path& path) {
    return DriveError(fmt::format("{} cannot be written: {}", TextOf(path), LastErrorText()));
}

/// Others may read, write, rename and remove it meanwhile, as they are used to from elsewhere.
/// @param flags FILE_FLAG_OPEN_REPARSE_POINT for a link itself in place of where it leads
FileDescriptor OpenShared(const fs::path& path, DWORD access, DWORD disposition, DWORD flags = 0) {
    return Owned(::CreateFileW(path.c_str(), access,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                               disposition, FILE_ATTRIBUTE_NORMAL | flags, nullptr));
}

/// @throws DriveError
FileDescriptor OpenFile(const fs::path& path, DWORD access, DWORD disposition, DWORD flags = 0) {
    FileDescriptor file = OpenShared(path, access, disposition, flags);
    if (!file.IsOpen())
        throw DriveError(
            fmt::format("{} cannot be opened for writing: {}", TextOf(path), LastErrorText()));
    return file;
}

/// Refuses a link, which may lead anywhere. @throws DriveError
void RequireNoLink(const fs::path& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        throw DriveError(
            fmt::format("{} is a link, which may lead anywhere. Please remove it.", TextOf(path)));
}

void WriteAll(const FileDescriptor& file, std::string_view content, const fs::path& path) {
    while (!content.empty()) {
        // At the end, wherever that has got to: another program may add lines to the same log.
        OVERLAPPED atEnd{};
        atEnd.Offset = MAXDWORD;
        atEnd.OffsetHigh = MAXDWORD;
        DWORD written = 0;
        if (::WriteFile(HandleOf(file), content.data(), static_cast<DWORD>(content.size()),
                        &written, &atEnd) == 0)
            throw NotWritten(path);
        content.remove_prefix(written);
    }
}

bool CutOff(const FileDescriptor& file, LARGE_INTEGER length) {
    return ::SetFilePointerEx(HandleOf(file), length, nullptr, FILE_BEGIN) != 0 &&
           ::SetEndOfFile(HandleOf(file)) != 0;
}

class FolderOutputFile final : public OutputFile {
  public:
    /// @param disposition CREATE_ALWAYS, CREATE_NEW or OPEN_ALWAYS
    FolderOutputFile(fs::path path, DWORD disposition)
        : m_Path(std::move(path)), m_File(OpenFile(m_Path, GENERIC_WRITE, disposition)) {}

    void Write(std::string_view text) override {
        LARGE_INTEGER begin{};
        ::GetFileSizeEx(HandleOf(m_File), &begin);
        try {
            WriteAll(m_File, text, m_Path);
        } catch (const DriveError&) {
            // A disk that fills up takes a part of the text: the file keeps whole texts only.
            CutOff(m_File, begin);
            throw;
        }
    }
    void Sync() override {
        if (::FlushFileBuffers(HandleOf(m_File)) == 0)
            throw NotWritten(m_Path);
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

/// A new file beside the path, with a name of its own. @param temporary takes its path
FileDescriptor OpenTemporary(const fs::path& path, fs::path& temporary) {
    constexpr int tries = 100;
    std::random_device random;
    FileDescriptor file;
    for (int i = 0; i < tries && !file.IsOpen(); ++i) {
        temporary = path;
        temporary += fmt::format(".{:08x}", random());
        file = OpenShared(temporary, GENERIC_WRITE, CREATE_NEW);
        if (!file.IsOpen() && ::GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    if (!file.IsOpen())
        throw NotWritten(path);
    return file;
}

/// @param flags MOVEFILE_REPLACE_EXISTING, or nothing for a name that must be free
bool TakeName(const fs::path& temporary, const fs::path& path, DWORD flags) {
    constexpr int tries = 20;
    constexpr DWORD between_ms = 25;
    for (int i = 0; i < tries; ++i) {
        if (::MoveFileExW(temporary.c_str(), path.c_str(), flags | MOVEFILE_WRITE_THROUGH) != 0)
            return true;
        // Who looks for viruses, or reads the file, has it for a moment.
        const DWORD error = ::GetLastError();
        if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)
            return false;
        ::Sleep(between_ms);
        ::SetLastError(error);
    }
    return false;
}

/// Writes under a temporary name beside the path, flushes, then has the file take its name.
void StoreByTemporaryName(const fs::path& path, std::string_view content, DWORD flags) {
    fs::path temporary;
    FileDescriptor file = OpenTemporary(path, temporary);
    try {
        WriteAll(file, content, path);
        const bool isOnDisk = ::FlushFileBuffers(HandleOf(file)) != 0;
        file = FileDescriptor();
        if (!isOnDisk || !TakeName(temporary, path, flags))
            throw NotWritten(path);
    } catch (...) {
        file = FileDescriptor();
        ::DeleteFileW(temporary.c_str());
        throw;
    }
}

/// Locks a byte that no content reaches: a locked one cannot be read, and who comes too late reads
/// who has the file.
bool Lock(const FileDescriptor& file) {
    OVERLAPPED place{};
    place.OffsetHigh = 0x7FFFFFFF;
    return ::LockFileEx(HandleOf(file), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1,
                        0, &place) != 0;
}

} // namespace

void MakeSharedFolder(const fs::path& folder) {
    // All may do everything with what is in it: what others have left is emptied, and removed.
    SECURITY_ATTRIBUTES everybody{sizeof everybody, nullptr, FALSE};
    ::ConvertStringSecurityDescriptorToSecurityDescriptorW(
        L"D:(A;OICI;GA;;;WD)", SDDL_REVISION_1, &everybody.lpSecurityDescriptor, nullptr);
    ::CreateDirectoryW(folder.c_str(), &everybody);
    ::LocalFree(everybody.lpSecurityDescriptor);
    RequireNoLink(folder);
}

void ReplaceWholeFile(const fs::path& path, std::string_view content) {
    StoreByTemporaryName(path, content, MOVEFILE_REPLACE_EXISTING);
}

std::unique_ptr<OutputFile> FolderDrive::OpenForWriting(std::string_view path) {
    return std::make_unique<FolderOutputFile>(RealPath(path), CREATE_ALWAYS);
}

std::unique_ptr<OutputFile> FolderDrive::OpenNew(std::string_view path) {
    return std::make_unique<FolderOutputFile>(RealPath(path), CREATE_NEW);
}

std::unique_ptr<OutputFile> FolderDrive::OpenForAppending(std::string_view path) {
    return std::make_unique<FolderOutputFile>(RealPath(path), OPEN_ALWAYS);
}

void FolderDrive::ReplaceFile(std::string_view path, std::string_view content) {
    ReplaceWholeFile(RealPath(path), content);
}

void FolderDrive::OverwriteFile(std::string_view path, std::string_view content) {
    const fs::path real = RealPath(path);
    const FileDescriptor file =
        OpenFile(real, GENERIC_WRITE, OPEN_ALWAYS, FILE_FLAG_OPEN_REPARSE_POINT);
    RequireNoLink(real);
    LARGE_INTEGER length{};
    length.QuadPart = static_cast<LONGLONG>(content.size());
    if (!WriteAt(file, 0, content) || !CutOff(file, length) ||
        ::FlushFileBuffers(HandleOf(file)) == 0)
        throw NotWritten(real);
}

void FolderDrive::CreateFile(std::string_view path, std::string_view content) {
    StoreByTemporaryName(RealPath(path), content, 0);
}

std::unique_ptr<FileLock> FolderDrive::TryLock(std::string_view path, std::string_view holder) {
    const fs::path real = RealPath(path);
    RequireNoLink(real);
    FileDescriptor file =
        OpenShared(real, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS, FILE_FLAG_OPEN_REPARSE_POINT);
    // Another user's file can be locked all the same.
    const bool readOnly = !file.IsOpen();
    if (readOnly)
        file = OpenFile(real, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT);
    if (!Lock(file)) {
        if (::GetLastError() == ERROR_LOCK_VIOLATION || ::GetLastError() == ERROR_IO_PENDING)
            return nullptr;
        throw DriveError(fmt::format("{} cannot be locked: {}", TextOf(real), LastErrorText()));
    }
    if (!readOnly) {
        if (!CutOff(file, {}))
            throw NotWritten(real);
        WriteAll(file, holder, real);
    }
    return std::make_unique<FolderFileLock>(std::move(file));
}

} // namespace ombrix
