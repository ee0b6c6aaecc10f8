#pragma once

#include "support/ForwardingDrive.h"

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

/// A drive whose C: has no room left for whole files; text files that are gone on with have it.
class FullDisk final : public ForwardingDrive {
  public:
    using ForwardingDrive::ForwardingDrive;

    /// Text files cannot be begun either.
    bool NoNewFiles = false;
    /// What still goes into text files, all of them together: on C:, and on the others.
    int WritesLeft = std::numeric_limits<int>::max();
    int WritesLeftElsewhere = std::numeric_limits<int>::max();

    std::unique_ptr<OutputFile> OpenForWriting(std::string_view path) override {
        return Limited(path, [&] { return ForwardingDrive::OpenForWriting(path); });
    }
    std::unique_ptr<OutputFile> OpenNew(std::string_view path) override {
        return Limited(path, [&] { return ForwardingDrive::OpenNew(path); });
    }
    void ReplaceFile(std::string_view path, std::string_view content) override {
        // The few bytes of a mark find room as long as files can be begun.
        if (path.starts_with("C:") && (NoNewFiles || !path.ends_with(".running")))
            throw DriveError("No space left on device");
        ForwardingDrive::ReplaceFile(path, content);
    }
    void CreateFile(std::string_view path, std::string_view content) override {
        if (path.starts_with("C:"))
            throw DriveError("No space left on device");
        ForwardingDrive::CreateFile(path, content);
    }

  private:
    template <class Open>
    std::unique_ptr<OutputFile> Limited(std::string_view path, Open open) {
        const bool isData = path.starts_with("C:");
        if (isData && NoNewFiles)
            throw DriveError("No space left on device");
        return std::make_unique<FileOnFullDisk>(open(), isData ? WritesLeft : WritesLeftElsewhere);
    }
};

} // namespace ombrix
