#pragma once

#include <pugixml.hpp>

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix::xlsx {

inline constexpr int MaxRow = 1048576;
inline constexpr int MaxColumn = 16384;

/// A cell's place on a sheet; rows and columns count from 1.
struct CellPosition {
    int Row = 1;
    int Column = 1;

    auto operator<=>(const CellPosition&) const = default;
};

/// A rectangle of cells, both corners included.
struct CellArea {
    CellPosition First;
    CellPosition Last;

    int Rows() const { return Last.Row - First.Row + 1; }
    int Columns() const { return Last.Column - First.Column + 1; }
    bool Contains(CellPosition cell) const {
        return cell.Row >= First.Row && cell.Row <= Last.Row && cell.Column >= First.Column &&
               cell.Column <= Last.Column;
    }
    bool Contains(const CellArea& area) const {
        return Contains(area.First) && Contains(area.Last);
    }
    bool operator==(const CellArea&) const = default;
};

struct ColumnRange {
    int First = 1;
    int Last = 1;
};

/// "D5" or "$D$5"; nothing when the text is no cell of a sheet.
std::optional<CellPosition> FindCell(std::string_view text);
/// "B7:O9" or a single cell.
std::optional<CellArea> FindArea(std::string_view text);
/// Areas side by side, parted by commas or blanks; nothing when one of them is no area.
std::optional<std::vector<CellArea>> FindAreas(std::string_view text);

/// The same, for addresses that callers give. @throws SpreadsheetError
CellPosition ParseCell(std::string_view text);
CellArea ParseArea(std::string_view text);
std::vector<CellArea> ParseAreas(std::string_view text);
/// Whole columns: "A:A,F:J". @throws SpreadsheetError
std::vector<ColumnRange> ParseColumns(std::string_view text);

/// The number of a column, from 1; 0 when the letters are no column.
int ColumnNumber(std::string_view letters);

std::string ToText(CellPosition cell);
std::string ToText(const CellArea& area);
/// With dollar signs, as charts and names refer to cells.
std::string ToAbsoluteText(const CellArea& area);

std::optional<CellArea> Intersection(const CellArea& left, const CellArea& right);
/// What is left of an area when another is cut out of it: up to four areas.
std::vector<CellArea> Difference(const CellArea& area, const CellArea& cut);
CellArea Moved(const CellArea& area, int rows, int columns);

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

inline constexpr double HighestRow_pt = 409.5;

/// Widths and formats of a sheet's columns, as its template gives them.
class SheetColumns {
  public:
    SheetColumns() = default;
    /// @param worksheet the root element of a sheet part
    explicit SheetColumns(const pugi::xml_node& worksheet);

    /// The format of a column's cells, where neither cell nor row has one of its own.
    int Format(int column) const;
    /// 0 for a hidden column.
    double Width_pt(int column) const;
    /// From the sheet's left edge to the column's.
    double Left_pt(int column) const;
    /// The height of rows that have none of their own.
    double RowHeight_pt() const { return m_RowHeight_pt; }

  private:
    struct Span {
        int First;
        int Last;
        double Width_pt;
        int Format;
    };
    const Span* Find(int column) const;

    std::vector<Span> m_Spans;
    double m_Width_pt = 48.0;
    double m_RowHeight_pt = 15.0;
};

} // namespace ombrix::xlsx
