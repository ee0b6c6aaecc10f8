#pragma once

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/sheet/CellStore.h"

#include <string>
#include <string_view>

namespace ombrix::xlsx {

/// The unit of length of drawings, the English metric unit.
inline constexpr double EmuPerPoint = 12700.0;

/// Position and size of an area of cells.
SheetBox BoxOf(const CellArea& area, const CellStore& cells);

/// A drawing part without a picture.
std::string EmptyDrawing();

/// A drawing part with one more chart, laid over the cells that the box covers.
/// @param chartId the drawing's relationship to the chart part
std::string WithChart(std::string_view drawing, const std::string& partName, const SheetBox& box,
                      const CellStore& cells, const std::string& chartId);

} // namespace ombrix::xlsx
