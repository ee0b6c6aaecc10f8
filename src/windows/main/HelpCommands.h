#pragma once

#include "board/Station.h"

#include <string>

namespace ombrix {

/// Opens a file or a folder of the virtual drive with the desktop's program for it, or tells why
/// that cannot be.
void OpenFromMenu(Platform& world, const std::string& path);

/// Tells the program's name, version and purpose.
void ShowAbout(Operator& messages, const std::string& version);

/// Stores the archive of diagnostics in the data folder, tells where it lies and offers to open
/// that folder. @param options the program's options in use @throws DriveError
void SaveDiagnostics(Station& station, const std::string& options);

} // namespace ombrix
