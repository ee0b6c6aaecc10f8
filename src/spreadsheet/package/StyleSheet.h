#pragma once

#include "spreadsheet/Spreadsheet.h"

#include <pugixml.hpp>

#include <map>
#include <string>
#include <string_view>
#include <tuple>

namespace ombrix::xlsx {

/// A line of a cell's border.
enum class CellSide { Left, Right, Top, Bottom, DiagonalUp, DiagonalDown };

/// The cell formats of a workbook. Cells name a format by its number; changing one gives the
/// number of a format with the change, an existing one where there is one.
class StyleSheet {
  public:
    /// Lists that the part leaves out are those of a plain workbook. @throws SpreadsheetError
    explicit StyleSheet(std::string_view xml);
    /// The part of a workbook without formats.
    static std::string Empty();

    int WithBorder(int format, CellSide side, LineStyle style);
    /// The format itself, or one that shows date and time where it would show a bare number.
    int WithDateFormat(int format);
    bool ShowsPercent(int format) const;

    std::string Xml() const;

  private:
    pugi::xml_node Format(int format) const;
    int NumberFormatOf(int format) const;
    int WithAttribute(int format, const char* name, int value, const char* applyName);
    int BorderWith(int border, CellSide side, LineStyle style);
    int Find(const char* list, const pugi::xml_node& element);

    pugi::xml_document m_Document;
    /// Numbers of list elements by their written form, each list read once.
    std::map<std::string, std::map<std::string, int>> m_Known;
    std::map<std::tuple<int, CellSide, LineStyle>, int> m_Bordered;
};

} // namespace ombrix::xlsx
