#pragma once

#include "platform/ports/Drive.h"

namespace ombrix {

/// Another drive as it is: what stands in for one overrides what it does otherwise.
class ForwardingDrive : public Drive {
  public:
    explicit ForwardingDrive(Drive& drive) : m_Drive(drive) {}

    bool FileExists(std::string_view path) const override { return m_Drive.FileExists(path); }
    bool FolderExists(std::string_view path) const override { return m_Drive.FolderExists(path); }
    bool CreateFolder(std::string_view path) override { return m_Drive.CreateFolder(path); }
    std::unique_ptr<OutputFile> OpenForWriting(std::string_view path) override {
        return m_Drive.OpenForWriting(path);
    }
    std::unique_ptr<OutputFile> OpenNew(std::string_view path) override {
        return m_Drive.OpenNew(path);
    }
    std::unique_ptr<OutputFile> OpenForAppending(std::string_view path) override {
        return m_Drive.OpenForAppending(path);
    }
    std::string ReadFile(std::string_view path) const override { return m_Drive.ReadFile(path); }
    void ReplaceFile(std::string_view path, std::string_view content) override {
        m_Drive.ReplaceFile(path, content);
    }
    void OverwriteFile(std::string_view path, std::string_view content) override {
        m_Drive.OverwriteFile(path, content);
    }
    void CreateFile(std::string_view path, std::string_view content) override {
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
