#pragma once

#include "platform/ports/Drive.h"
#include "spreadsheet/Spreadsheet.h"

#include <string>
#include <string_view>

namespace ombrix::xlsx {

/// Paths are Windows-style texts of the program.

/// A bare name lies in the current folder. @throws SpreadsheetError for an empty name
std::string FullPath(std::string_view path, std::string_view currentFolder);

/// What stands behind the last separator.
std::string FileNameOf(std::string_view path);

/// Whether a workbook is to be written in the binary format of ".xls".
/// @throws SpreadsheetError for a name of a kind that cannot be written
bool IsBinary(std::string_view path, FileFormat format);

/// "….xlsx" beside a name, numbered when there is such a file already.
/// @param otherwise the file's name where the path has none
std::string FreePathBeside(std::string_view path, std::string_view currentFolder,
                           std::string_view otherwise, const Drive& files);

} // namespace ombrix::xlsx
