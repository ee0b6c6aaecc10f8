#pragma once

#include "platform/Drive.h"

#include <functional>

namespace ombrix::soak {

/// A disk that can be filled up at any moment, by way of what happens before each writing.
class SoakDisk final : public Drive {
  public:
    explicit SoakDisk(Drive& drive) : m_Drive(drive) {}

    bool Full = false;
    /// Told before a whole file is stored.
    std::function<void()> BeforeStoring;

    bool FileExists(std::string_view path) const override { return m_Drive.FileExists(path); }
    bool FolderExists(std::string_view path) const override { return m_Drive.FolderExists(path); }
    bool CreateFolder(std::string_view path) override {
        return Full ? m_Drive.FolderExists(path) : m_Drive.CreateFolder(path);
    }
    std::unique_ptr<OutputFile> OpenForWriting(std::string_view path) override {
        RequireRoom();
        return std::make_unique<File>(m_Drive.OpenForWriting(path), *this);
    }
    std::unique_ptr<OutputFile> OpenForAppending(std::string_view path) override {
        RequireRoom();
        return std::make_unique<File>(m_Drive.OpenForAppending(path), *this);
    }
    std::string ReadFile(std::string_view path) const override { return m_Drive.ReadFile(path); }
    void ReplaceFile(std::string_view path, std::string_view content) override {
        BeforeWhole();
        m_Drive.ReplaceFile(path, content);
    }
    void CreateFile(std::string_view path, std::string_view content) override {
        BeforeWhole();
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
    class File final : public OutputFile {
      public:
        File(std::unique_ptr<OutputFile> file, const SoakDisk& disk)
            : m_File(std::move(file)), m_Disk(disk) {}

        void Write(std::string_view text) override {
            m_Disk.RequireRoom();
            m_File->Write(text);
        }
        /// Seconds of a soak are shorter than a disk's.
        void Sync() override {}
        std::filesystem::path RealPath() const override { return m_File->RealPath(); }

      private:
        std::unique_ptr<OutputFile> m_File;
        const SoakDisk& m_Disk;
    };

    void RequireRoom() const {
        if (Full)
            throw DriveError("No space left on device");
    }
    void BeforeWhole() {
        if (BeforeStoring)
            BeforeStoring();
        RequireRoom();
    }

    Drive& m_Drive;
};

} // namespace ombrix::soak
