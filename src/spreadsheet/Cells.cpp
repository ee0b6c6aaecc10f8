#include "spreadsheet/Cells.h"

#include <fmt/format.h>

#include <cmath>
#include <vector>

namespace ombrix {

namespace {

template <class T>
bool IsThere(const std::optional<T>& value) {
    if constexpr (std::floating_point<T>)
        return value && std::isfinite(*value);
    else
        return value.has_value();
}

template <class T>
void SetRuns(Worksheet& sheet, std::string_view column, int firstRow,
             std::span<const std::optional<T>> values) {
    std::vector<T> run;
    const auto write = [&](int endRow) {
        if (run.empty())
            return;
        const int startRow = endRow - static_cast<int>(run.size());
        sheet.SetValues(fmt::format("{0}{1}:{0}{2}", column, startRow, endRow - 1),
                        CellBlock<T>{run, 1});
        run.clear();
    };
    int row = firstRow;
    for (const std::optional<T>& value : values) {
        if (IsThere(value))
            run.push_back(*value);
        else
            write(row);
        ++row;
    }
    write(row);
}

} // namespace

std::string ColumnLetters(int column) {
    constexpr int letterCount = 26;
    std::string letters;
    // Letters count without a zero: AA follows Z.
    for (int rest = column + 1; rest > 0; rest = (rest - 1) / letterCount)
        letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % letterCount));
    return letters;
}

std::string CellAddress(int column, std::int64_t row) {
    return ColumnLetters(column) + std::to_string(row);
}

void SetColumn(Worksheet& sheet, std::string_view column, int firstRow,
               std::span<const std::optional<float>> values) {
    SetRuns(sheet, column, firstRow, values);
}

void SetColumn(Worksheet& sheet, std::string_view column, int firstRow,
               std::span<const std::optional<std::int32_t>> values) {
    SetRuns(sheet, column, firstRow, values);
}

} // namespace ombrix
