#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ombrix::xlsx {

/// The longest formula that a cell may hold.
inline constexpr std::size_t LongestFormula = 8192;

/// A formula (without "=") as it reads when its cell is copied: relative references move
/// along, absolute ones stay. A reference that would leave the sheet becomes #REF!.
std::string ShiftReferences(std::string_view formula, int rows, int columns);

/// A formula with every reference to one sheet turned to another.
std::string RenameSheet(std::string_view formula, std::string_view from, std::string_view to);

/// A sheet's name in quotes, as references carry it: 'Zero - Ch1'.
std::string QuotedSheetName(std::string_view name);

/// Sheet names are told apart without regard to case (of the Latin alphabet).
bool SameSheetName(std::string_view left, std::string_view right);

} // namespace ombrix::xlsx
