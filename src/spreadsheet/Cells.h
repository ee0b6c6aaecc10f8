#pragma once

#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ombrix {

/// Spreadsheet column letters of a column, from 0: A … Z, AA … ZZ (701), AAA ….
std::string ColumnLetters(int column);

/// Spreadsheet address of a cell: column 0, row 5 is A5.
std::string CellAddress(int column, std::int64_t row);

/// The address of a cell. @param column a letter, or letters such as "AB"
template <class Column>
std::string Cell(Column column, int row) {
    return fmt::format("{}{}", column, row);
}

/// Writes values down a column, whole runs in one call. What is missing or no number leaves its
/// cell as it is: a reading that was not taken is no zero.
/// @param column letters such as "AB"
void SetColumn(Worksheet& sheet, std::string_view column, int firstRow,
               std::span<const std::optional<float>> values);
void SetColumn(Worksheet& sheet, std::string_view column, int firstRow,
               std::span<const std::optional<std::int32_t>> values);

} // namespace ombrix
