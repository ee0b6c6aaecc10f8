#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix::xlsx {

/// How much an archive may hold; whatever it claims, no more than that is unpacked.
struct ZipLimits {
    std::size_t Files = 4096;
    std::size_t FileBytes = std::size_t{32} << 20U;
    std::size_t TotalBytes = std::size_t{64} << 20U;
};

/// The files of an archive by name. @throws SpreadsheetError
std::map<std::string, std::string> ReadZip(std::string_view archive, const ZipLimits& limits = {});

/// A file to be stored. Its content is made when its turn comes, so that only those being
/// compressed are in memory; Make may run on any thread.
struct ZipFile {
    std::string Name;
    std::function<std::string()> Make;
    /// Large files are begun first. In whatever unit, the same for all.
    std::size_t Weight = 0;
};

/// Makes an archive; files are compressed side by side, one thread a processor.
/// @throws SpreadsheetError; what Make throws comes out too
std::string WriteZip(const std::vector<ZipFile>& files, int compressionLevel);

} // namespace ombrix::xlsx
