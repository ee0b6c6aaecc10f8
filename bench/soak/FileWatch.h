#pragma once

#include "soak/Checks.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

namespace ombrix::soak {

/// The files that the program leaves, looked at after each procedure: tables and logs of whole
/// lines, workbooks that open as packages with all their parts, nothing half-made.
class FileWatch {
  public:
    explicit FileWatch(std::filesystem::path root) : m_Root(std::move(root)) {}

    /// Looks at what is new or has grown, then removes what the next procedures do not need.
    /// @param diskWasFull a file may have been begun and nothing written
    void Check(bool diskWasFull, Violations& violations);
    std::size_t Looked() const { return m_Looked; }

  private:
    std::filesystem::path m_Root;
    std::map<std::string, std::uintmax_t> m_Sizes;
    std::size_t m_Looked = 0;
};

} // namespace ombrix::soak
