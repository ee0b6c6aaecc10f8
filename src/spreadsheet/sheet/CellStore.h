#pragma once

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/package/SharedStrings.h"
#include "spreadsheet/sheet/CellArea.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace ombrix::xlsx {

/// A cell that was emptied on purpose; hides a block that lies under it.
struct EmptyContent {
    bool operator==(const EmptyContent&) const = default;
};
/// A text of the template, by its number among the shared ones.
struct SharedText {
    std::uint32_t Index = 0;
    bool operator==(const SharedText&) const = default;
};
/// Numbers of a cell's and its value's entries among the metadata of the workbook, which tell that
/// an array is a dynamic one, or what a value is linked to; 0 for none.
struct Metadata {
    std::uint32_t Cell = 0;
    std::uint32_t Value = 0;
    bool operator==(const Metadata&) const = default;
};
/// Without the "=".
struct Formula {
    std::string Text;
    /// The cells that an array formula fills, this one first.
    std::optional<CellArea> Array{};
    /// To be calculated again whenever anything is.
    bool Always = false;
    Metadata Notes{};
    bool operator==(const Formula&) const = default;
};
/// What the engine carries without taking it apart: text with formatted runs, data tables, error
/// values, values with metadata. Attributes (with a blank before each) and what stands in the cell.
struct RawContent {
    std::string Attributes;
    std::string Xml;
    bool operator==(const RawContent&) const = default;
};
/// std::monostate: the cell has a format and nothing else.
using Content = std::variant<std::monostate, EmptyContent, double, float, std::int32_t, bool,
                             std::string, SharedText, Formula, RawContent>;

struct Cell {
    int Column = 1;
    int Format = 0;
    Content Value;
};

struct Row {
    /// In points; hidden rows have 0.
    std::optional<double> Height_pt;
    /// The format of the row's cells, where it has one.
    std::optional<int> Format;
    /// The row's attributes as the template gives them, less number and span.
    std::vector<std::pair<std::string, std::string>> Attributes;
    /// In the order of their columns.
    std::vector<Cell> Cells;
};

/// Measured values written in one call, kept as they came: 4 bytes a cell.
struct ValueBlock {
    CellArea Area;
    std::variant<std::vector<float>, std::vector<std::int32_t>> Values;

    Content At(CellPosition cell) const;
};

/// The cells of a sheet. Single cells lie above blocks, later blocks above earlier ones.
class CellStore {
  public:
    CellStore() = default;
    explicit CellStore(SheetColumns columns) : m_Columns(std::move(columns)) {}

    const SheetColumns& Columns() const { return m_Columns; }
    const std::map<int, Row>& Rows() const { return m_Rows; }
    const std::vector<ValueBlock>& Blocks() const { return m_Blocks; }

    /// A row, made when missing.
    Row& RowAt(int row) { return m_Rows[row]; }
    /// A cell, made when missing, with the format that its row or column gives it.
    Cell& At(CellPosition position);
    void AddBlock(ValueBlock block);
    void SetHeight(int row, double height_pt);

    /// What the cell shows, be it its own or a block's.
    Content ContentAt(CellPosition position) const;
    int FormatAt(CellPosition position) const;

    /// The last row in which a cell of the column holds something; 0 when none does.
    int LastFilledRow(int column) const;
    /// The lowest and highest of a column's measured values; nothing when it has none.
    std::optional<std::pair<double, double>> BlockRange(int column) const;
    double Height_pt(int row) const;
    /// From the sheet's top edge to the row's.
    double Top_pt(int row) const;

    /// Passes every formula to be looked at or changed.
    template <class Visit>
    void ForEachFormula(Visit visit) {
        for (auto& [number, row] : m_Rows)
            for (Cell& cell : row.Cells)
                if (auto* formula = std::get_if<Formula>(&cell.Value))
                    visit(*formula);
    }

  private:
    const Cell* Find(CellPosition position) const;

    SheetColumns m_Columns;
    std::map<int, Row> m_Rows;
    std::vector<ValueBlock> m_Blocks;
};

bool IsFilled(const Content& content);

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

/// A value as a cell keeps it. @param countsFrom1904 the workbook's count of days
/// @throws SpreadsheetError for a text longer than a cell holds
Content ToContent(const CellValue& value, bool countsFrom1904);

/// What a cell shows. The result of a formula is not known: it gives nothing.
CellValue ToValue(const Content& content, const SharedStrings& texts);

} // namespace ombrix::xlsx
