#pragma once

#include "platform/Drive.h"

#include <limits>

namespace ombrix {

/// A text file on a disk that takes so many more writes.
class FileOnFullDisk final : public OutputFile {
  public:
    FileOnFullDisk(std::unique_ptr<OutputFile> file, int& writesLeft)
        : m_File(std::move(file)), m_WritesLeft(writesLeft) {}

    void Write(std::string_view text) override {
        if (--m_WritesLeft < 0)
            throw DriveError("No space left on device");
        m_File->Write(text);
    }
    void Sync() override { m_File->Sync(); }
    std::filesystem::path RealPath() const override { return m_File->RealPath(); }

  private:
    std::unique_ptr<OutputFile> m_File;
    int& m_WritesLeft;
};

/// A drive whose C: has no room left for whole files.
class FullDisk final : public Drive {
  public:
    explicit FullDisk(Drive& drive) : m_Drive(drive) {}

    /// Text files cannot be begun either.
    bool NoNewFiles = false;
    /// What still goes into text files, all of them together.
    int WritesLeft = std::numeric_limits<int>::max();

    bool FileExists(std::string_view path) const override { return m_Drive.FileExists(path); }
    bool FolderExists(std::string_view path) const override { return m_Drive.FolderExists(path); }
    bool CreateFolder(std::string_view path) override { return m_Drive.CreateFolder(path); }
    std::unique_ptr<OutputFile> OpenForWriting(std::string_view path) override {
        if (path.starts_with("C:") && NoNewFiles)
            throw DriveError("No space left on device");
        return std::make_unique<FileOnFullDisk>(m_Drive.OpenForWriting(path), WritesLeft);
    }
    /// Goes on with a file that has room left: the disk is full for those that are begun.
    std::unique_ptr<OutputFile> OpenForAppending(std::string_view path) override {
        return m_Drive.OpenForAppending(path);
    }
    std::string ReadFile(std::string_view path) const override { return m_Drive.ReadFile(path); }
    void ReplaceFile(std::string_view path, std::string_view content) override {
        // The few bytes of a mark find room as long as files can be begun.
        if (path.starts_with("C:") && (NoNewFiles || !path.ends_with(".running")))
            throw DriveError("No space left on device");
        m_Drive.ReplaceFile(path, content);
    }
    void CreateFile(std::string_view path, std::string_view content) override {
        if (path.starts_with("C:"))
            throw DriveError("No space left on device");
        m_Drive.CreateFile(path, content);
    }
    std::vector<std::string> FilesIn(std::string_view folder) const override {
        return m_Drive.FilesIn(folder);
    }
    void RemoveFile(std::string_view path) override { m_Drive.RemoveFile(path); }
    std::unique_ptr<FileLock> TryLock(std::string_view path, std::string_view holder) override {
        return m_Drive.TryLock(path, holder);
    }
    std::filesystem::path RealPath(std::string_view path) const override {
        return m_Drive.RealPath(path);
    }

  private:
    Drive& m_Drive;
};

} // namespace ombrix
