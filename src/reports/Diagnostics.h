#pragma once

#include "board/Station.h"

#include <filesystem>
#include <string>
#include <vector>

namespace ombrix {

/// The files below a folder, a line each: bytes, date of the last change (UTC) and path within
/// the folder. At most LongestFileList of them; links are not followed.
inline constexpr std::size_t LongestFileList = 20000;
std::string FileList(const std::filesystem::path& folder);

/// What only the program itself knows of itself.
struct DiagnosticsSource {
    /// Its options in use, a line each.
    std::string Options;
    /// Libraries beyond those of the core, with their versions ("Qt 6.4.2").
    std::vector<std::string> Libraries = {};
};

/// An archive (zip) of all that somebody far away needs to find a fault: versions, options,
/// identity and EPROM of the boards, the last lines of the log, the crash
/// reports of the last 30 days and a list of the files in the data folder. Changes nothing; in
/// the place of what cannot be read stands why. @throws SpreadsheetError when there is no memory
std::string MakeDiagnostics(Station& station, const DiagnosticsSource& source);

/// Path on drive C: of an archive that is made now; makes its folder.
std::string DiagnosticsPath(Platform& world);

} // namespace ombrix
