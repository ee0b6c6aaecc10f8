#pragma once

#include "spreadsheet/sheet/CellStore.h"

#include <pugixml.hpp>

namespace ombrix::xlsx {

/// Takes the rows out of a sheet part into a store; the part keeps an empty "sheetData".
/// Formulas lose their results and are told one by one where the template shared them.
/// @param worksheet the root element @throws SpreadsheetError
CellStore TakeCells(pugi::xml_node worksheet);

} // namespace ombrix::xlsx
