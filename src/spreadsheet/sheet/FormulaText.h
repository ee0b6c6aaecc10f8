#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix::xlsx {

/// The longest formula that a cell may hold.
inline constexpr std::size_t LongestFormula = 8192;

/// A formula (without "=") as it reads when its cell is copied: relative references move
/// along, absolute ones stay. A reference that would leave the sheet becomes #REF!.
std::string ShiftReferences(std::string_view formula, int rows, int columns);

/// A formula with every reference to one sheet turned to another.
std::string RenameSheet(std::string_view formula, std::string_view from, std::string_view to);

/// A formula with those of the workbook's names that a sheet has as its own, told by "[0]!" to be
/// the workbook's, turned to the sheet's.
std::string BindNames(std::string_view formula, const std::vector<std::string>& names,
                      std::string_view sheet);

/// A list of areas ("'A'!$A$1:$O$9,…") whose lowest reaches down to a row at least. What is no such
/// list, as a formula or whole columns, stays as it is.
std::string ReachingDown(std::string_view areas, int row);

/// A sheet's name in quotes, as references carry it: 'Zero - Ch1'.
std::string QuotedSheetName(std::string_view name);

} // namespace ombrix::xlsx
