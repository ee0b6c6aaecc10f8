#pragma once

#include "spreadsheet/sheet/CellArea.h"

#include <pugixml.hpp>

namespace ombrix::xlsx {

/// Makes the conditional formats of an area those of another of the same shape; relative
/// references in their conditions move along.
/// @param worksheet the root element of the sheet
void CopyConditionalFormats(pugi::xml_node worksheet, const CellArea& source,
                            const CellArea& destination);

/// Makes the merged cells of an area those of another of the same shape.
void CopyMergedCells(pugi::xml_node worksheet, const CellArea& source, const CellArea& destination);

} // namespace ombrix::xlsx
