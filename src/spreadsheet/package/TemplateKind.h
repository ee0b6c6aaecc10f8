#pragma once

#include "spreadsheet/package/Package.h"

#include <string>
#include <string_view>

namespace ombrix::xlsx {

/// What a workbook of the older, binary format begins with, and an encrypted one of any format.
inline constexpr std::string_view CompoundFile = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";

/// Refuses what cannot be read, or would lose macros when it is converted.
/// @throws UnsupportedTemplate
void CheckCompoundFile(std::string_view content);

/// The part with the list of sheets. @throws SpreadsheetError when the package is no workbook
std::string FindWorkbookPart(const Package& parts);

/// Turns a template into a workbook; one that is a workbook already is welcome too.
/// @throws UnsupportedTemplate for what no report could keep: macros, signatures, lists of changes
/// @throws SpreadsheetError for a package of another kind
void MakeWorkbook(Package& parts, const std::string& workbookPart);

} // namespace ombrix::xlsx
