#pragma once

#include <pugixml.hpp>

#include <vector>

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
