#pragma once

#include "board/Station.h"

#include <string>

namespace ombrix {

/// Stores the archive of diagnostics in the data folder, tells where it lies and offers to open
/// that folder. @param options the program's options in use @throws DriveError
void SaveDiagnostics(Station& station, const std::string& options);

} // namespace ombrix
