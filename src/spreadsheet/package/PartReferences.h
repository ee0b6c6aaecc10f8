#pragma once

#include "spreadsheet/package/Package.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix::xlsx {

/// Makes sure that what a report may have to change beside cells can be read: relationships,
/// charts, drawings. @throws SpreadsheetError naming the part that is damaged
void RequireReadable(const Package& package);

/// Passes every reference to cells in charts, and in shapes that show a cell's text or lead to a
/// cell, to be changed.
void ChangePartReferences(Package& package, const std::vector<std::string>& parts,
                          const std::function<std::string(std::string_view)>& change);

/// Gives the comments of a copied sheet that are threads, and the notes that stand for them in
/// older programs, ids of their own. @param copies new names of the sheet's parts by their old ones
void GiveCommentsOwnIds(Package& package, const std::map<std::string, std::string>& copies);

} // namespace ombrix::xlsx
