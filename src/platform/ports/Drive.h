#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// A file could not be read or written, or a path leads out of the folders the program may use.
/// The text names the path and the reason.
class DriveError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A text file being written. Each line reaches the operating system as it is written, so that
/// a crash loses at most the line in the making.
class OutputFile {
  public:
    virtual ~OutputFile() = default;

    /// Appends the text as it is, all of it or nothing. @throws DriveError
    virtual void Write(std::string_view text) = 0;
    /// Returns once the disk holds what has been written. @throws DriveError
    virtual void Sync() = 0;
    /// The real path, for people and for scripts.
    virtual std::filesystem::path RealPath() const = 0;
};

/// Stands for a file that this program has to itself. Ends with the object, and with the
/// program, however that dies.
class FileLock {
  public:
    virtual ~FileLock() = default;
};

/// The drives as operators know them, on this machine. Paths are Windows-style texts
/// ("C:\ACUs\…", UTF-8); only a drive knows which real folders stand behind them, and no path
/// leaves those folders.
class Drive {
  public:
    virtual ~Drive() = default;

    /// Queries answer false for a path that leaves the drive's folders.
    virtual bool FileExists(std::string_view path) const = 0;
    virtual bool FolderExists(std::string_view path) const = 0;
    /// Creates one folder whose parent exists; true when it then exists.
    virtual bool CreateFolder(std::string_view path) = 0;

    /// Creates a text file, replacing one of that name. @throws DriveError
    virtual std::unique_ptr<OutputFile> OpenForWriting(std::string_view path) = 0;
    /// Creates a text file under a name that is still free.
    /// @throws DriveError also when there is a file of that name
    virtual std::unique_ptr<OutputFile> OpenNew(std::string_view path) = 0;
    /// Goes on with a text file, which is made when there is none; several programs may write
    /// to it at a time. @throws DriveError
    virtual std::unique_ptr<OutputFile> OpenForAppending(std::string_view path) = 0;
    /// The whole content of a file. @throws DriveError
    virtual std::string ReadFile(std::string_view path) const = 0;
    /// Stores a whole file: under a temporary name, flushed, then renamed, so that the name
    /// holds either what it held or all of the new content. @throws DriveError
    virtual void ReplaceFile(std::string_view path, std::string_view content) = 0;
    /// Stores a whole file in its place, readable and writable by every user: for folders that
    /// users share, where none may put a file in the place of another one's. Never through a link.
    /// @throws DriveError
    virtual void OverwriteFile(std::string_view path, std::string_view content) = 0;
    /// Stores a whole file by way of a temporary name under a name that is still free.
    /// @throws DriveError also when there is a file of that name
    virtual void CreateFile(std::string_view path, std::string_view content) = 0;
    /// Names of the files of a folder in their alphabetical order; none when there is no folder.
    virtual std::vector<std::string> FilesIn(std::string_view folder) const = 0;
    /// Removes a file; no error when there is none. @throws DriveError
    virtual void RemoveFile(std::string_view path) = 0;
    /// Takes a file, made for every user when there is none, for this program alone; empty while
    /// another one has it. Never through a link. @param holder text that the file then holds, for
    /// those who come too late
    /// @throws DriveError
    virtual std::unique_ptr<FileLock> TryLock(std::string_view path, std::string_view holder) = 0;

    /// The real path behind a path of the program. @throws DriveError
    virtual std::filesystem::path RealPath(std::string_view path) const = 0;
};

} // namespace ombrix
