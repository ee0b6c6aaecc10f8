#pragma once

#include "board/Station.h"

#include <string>

namespace ombrix {

struct ReportUnit;

/// Where the reports of the health check are kept: the production file server's share when it
/// can be reached, else the local drive.

/// The root of all units' folders, made if need be. False when it cannot be had.
bool GetSaveRootFolder(Station& station, std::string& folder);

/// The folder of the current board's ACU, made if need be. False when it cannot be had.
bool GetACUFolder(Station& station, std::string& folder);

/// The same for a unit that no board need stand for.
bool GetUnitFolder(Station& station, const ReportUnit& unit, std::string& folder);

/// Opens the root in the desktop's file manager, or says why that is not possible.
void OpenSaveFolder(Station& station);

} // namespace ombrix
