#pragma once

#include "platform/Platform.h"

#include <string>
#include <string_view>

namespace ombrix {

/// Folder of the program's logs, ended by a backslash: one file a day, shared by the programs.
inline constexpr const char* LogFolder = R"(C:\Logs\)";

/// Path of the log of the present day.
std::string LogPath(const Clock& clock);

/// Adds a line to the log, with date, time, program and process; line ends become " | ". For
/// what somebody may have to find out later: what was written to a unit, what went wrong. A
/// disk that takes no more costs the line and nothing else.
void WriteLog(Platform& world, std::string_view line);

} // namespace ombrix
