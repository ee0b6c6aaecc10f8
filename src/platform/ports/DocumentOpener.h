#pragma once

#include <filesystem>

namespace ombrix {

/// Opens a file or folder with the program that the desktop has for it.
class DocumentOpener {
  public:
    virtual ~DocumentOpener() = default;

    /// False when the desktop has no program for it or none could be started.
    virtual bool OpenDocument(const std::filesystem::path& path) = 0;
};

} // namespace ombrix
