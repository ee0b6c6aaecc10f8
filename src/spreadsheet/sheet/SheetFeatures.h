#pragma once

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/package/Package.h"
#include "spreadsheet/sheet/CellStore.h"

#include <pugixml.hpp>

#include <string>
#include <vector>

namespace ombrix::xlsx {

/// What a sheet has beside its cells in parts of their own, and whether copies of it have it too.
std::vector<TemplateFeature> RelatedFeatures(const Package& parts, const std::string& sheetPart);

/// What stands in the sheet's own part beside values, formulas and formats.
/// @param worksheet the root element
std::vector<TemplateFeature> OwnFeatures(const pugi::xml_node& worksheet, const CellStore& cells);

/// What the workbook as a whole has; all of it is kept.
std::vector<TemplateFeature> WorkbookFeatures(const Package& parts,
                                              const std::string& workbookPart);

} // namespace ombrix::xlsx
