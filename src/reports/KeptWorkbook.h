#pragma once

#include "platform/ports/Platform.h"
#include "spreadsheet/Spreadsheet.h"

#include <filesystem>
#include <optional>
#include <string>

namespace ombrix {

/// The last resort for a report that cannot be stored where it belongs: the folder for
/// temporary files. The operator is told where it lies, or that not even that was possible.
/// @param fileName ends in ".xlsx"; numbered when there is such a file already
/// @return the real path; nothing when the report lies nowhere
std::optional<std::filesystem::path> KeepWorkbook(Platform& world, Workbook& workbook,
                                                  const std::string& fileName);

} // namespace ombrix
