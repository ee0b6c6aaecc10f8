#pragma once

#include "platform/ports/Drive.h"

#include <vector>

namespace ombrix {

/// Drives that are folders of this machine.
class FolderDrive final : public Drive {
  public:
    /// @param dataRoot the folder that stands for drive C:; made when first needed
    explicit FolderDrive(const std::filesystem::path& dataRoot);

    /// Puts a real folder behind a path prefix, such as "S:" or a folder of drive C:.
    void Mount(std::string_view prefix, const std::filesystem::path& folder);

    bool FileExists(std::string_view path) const override;
    bool FolderExists(std::string_view path) const override;
    bool CreateFolder(std::string_view path) override;
    std::unique_ptr<OutputFile> OpenForWriting(std::string_view path) override;
    std::unique_ptr<OutputFile> OpenNew(std::string_view path) override;
    std::unique_ptr<OutputFile> OpenForAppending(std::string_view path) override;
    std::string ReadFile(std::string_view path) const override;
    void ReplaceFile(std::string_view path, std::string_view content) override;
    void OverwriteFile(std::string_view path, std::string_view content) override;
    void CreateFile(std::string_view path, std::string_view content) override;
    std::vector<std::string> FilesIn(std::string_view folder) const override;
    void RemoveFile(std::string_view path) override;
    std::unique_ptr<FileLock> TryLock(std::string_view path, std::string_view holder) override;
    std::filesystem::path RealPath(std::string_view path) const override;

  private:
    struct MountPoint {
        std::vector<std::string> Prefix;
        std::filesystem::path Folder;
    };
    std::vector<MountPoint> m_Mounts;
};

/// Makes a folder in which every user may make files and none can take away another one's. One
/// that is there stays as it is. @throws DriveError for a link, which may lead anywhere
void MakeSharedFolder(const std::filesystem::path& folder);

/// Reads a whole real file. @throws DriveError
std::string ReadWholeFile(const std::filesystem::path& path);

/// Stores a whole real file by way of a temporary name. @throws DriveError
void ReplaceWholeFile(const std::filesystem::path& path, std::string_view content);

} // namespace ombrix
