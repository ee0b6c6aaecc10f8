#pragma once

#include "spreadsheet/sheet/CellArea.h"

#include <pugixml.hpp>

#include <functional>
#include <string>
#include <string_view>

namespace ombrix::xlsx {

/// What lies over the cells of a sheet: conditional formats and data validations (those of 2007,
/// and those that came with 2010 and stand among the sheet's extensions), sparklines, merged cells.
/// Sheets go by the root element of their part.

/// Makes all of it on an area that of another of the same shape; relative references move along.
void CopyOverlays(pugi::xml_node worksheet, const CellArea& source, const CellArea& destination);

/// Passes every formula and internal link that stands outside of cells to be changed.
void ChangeOverlayFormulas(const pugi::xml_node& worksheet,
                           const std::function<std::string(std::string_view)>& change);

/// Gives the rules of a copied sheet ids of their own. @param copy a word for this copy
void GiveRulesOwnIds(pugi::xml_node worksheet, std::string_view copy);

} // namespace ombrix::xlsx
