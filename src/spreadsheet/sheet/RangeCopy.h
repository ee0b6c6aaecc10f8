#pragma once

#include "spreadsheet/sheet/CellStore.h"

namespace ombrix::xlsx {

/// Makes the cells of an area those of another of the same shape: values, formats, heights of
/// rows, formulas with their relative references moved along. The areas may overlap.
/// @throws SpreadsheetError for an array formula, which cannot be copied in part
void CopyCells(CellStore& cells, const CellArea& source, const CellArea& destination);

} // namespace ombrix::xlsx
