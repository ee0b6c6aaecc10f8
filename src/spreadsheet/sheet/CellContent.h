#pragma once

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/package/SharedStrings.h"
#include "spreadsheet/sheet/CellStore.h"

namespace ombrix::xlsx {

/// A value as a cell keeps it. @param countsFrom1904 the workbook's count of days
/// @throws SpreadsheetError for a text longer than a cell holds
Content ToContent(const CellValue& value, bool countsFrom1904);

/// What a cell shows. The result of a formula is not known: it gives nothing.
CellValue ToValue(const Content& content, const SharedStrings& texts);

} // namespace ombrix::xlsx
