#pragma once

#include "support/ForwardingDrive.h"

#include <functional>

namespace ombrix::soak {

/// A disk that can be filled up at any moment, by way of what happens before each writing.
class SoakDisk final : public ForwardingDrive {
  public:
    using ForwardingDrive::ForwardingDrive;

    bool Full = false;
    /// Told before a whole file is stored.
    std::function<void()> BeforeStoring;

    bool CreateFolder(std::string_view path) override {
        return Full ? FolderExists(path) : ForwardingDrive::CreateFolder(path);
    }
    std::unique_ptr<OutputFile> OpenForWriting(std::string_view path) override {
        RequireRoom();
        return std::make_unique<File>(ForwardingDrive::OpenForWriting(path), *this);
    }
    std::unique_ptr<OutputFile> OpenNew(std::string_view path) override {
        RequireRoom();
        return std::make_unique<File>(ForwardingDrive::OpenNew(path), *this);
    }
    std::unique_ptr<OutputFile> OpenForAppending(std::string_view path) override {
        RequireRoom();
        return std::make_unique<File>(ForwardingDrive::OpenForAppending(path), *this);
    }
    void ReplaceFile(std::string_view path, std::string_view content) override {
        BeforeWhole();
        ForwardingDrive::ReplaceFile(path, content);
    }
    void CreateFile(std::string_view path, std::string_view content) override {
        BeforeWhole();
        ForwardingDrive::CreateFile(path, content);
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
};

} // namespace ombrix::soak
