#pragma once

#include "spreadsheet/sheet/CellStore.h"

#include <pugixml.hpp>

#include <string>

namespace ombrix::xlsx {

/// The XML of a sheet part: the sheet as the template gives it, with the rows of the store.
/// @param worksheet the root element, with its empty "sheetData"
std::string WriteSheet(const pugi::xml_node& worksheet, const CellStore& cells);

/// About how many cells there are to write.
std::size_t CellCount(const CellStore& cells);

} // namespace ombrix::xlsx
