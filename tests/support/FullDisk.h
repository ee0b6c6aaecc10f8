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
    std::string ReadFile(std::string_view path) const override { return m_Drive.ReadFile(path); }
    void ReplaceFile(std::string_view path, std::string_view content) override {
        if (path.starts_with("C:"))
            throw DriveError("No space left on device");
        m_Drive.ReplaceFile(path, content);
    }
    std::filesystem::path RealPath(std::string_view path) const override {
        return m_Drive.RealPath(path);
    }

  private:
    Drive& m_Drive;
};

} // namespace ombrix
