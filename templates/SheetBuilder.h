#pragma once

#include "StyleTable.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix::templates {

/// Texts that cells share, numbered in the order in which they come.
class TextTable {
  public:
    std::size_t Number(const std::string& text);
    std::string Xml() const;

  private:
    std::vector<std::string> m_Texts;
};

enum class Orientation { Landscape, Portrait };

/// What is printed at the top and bottom of each page.
struct PageTexts {
    std::string Title;
    std::string Product;
};

/// Lays out one sheet of a template. Addresses are "B7" or "B7:O9", columns "B" or "B:D".
class SheetBuilder {
  public:
    SheetBuilder(std::string name, StyleTable& styles, TextTable& texts)
        : m_Name(std::move(name)), m_Styles(styles), m_Texts(texts) {}

    /// Width in digits; the look is that of the cells which nothing else is said about.
    SheetBuilder& Column(std::string_view columns, double width, const Look& look = {});
    SheetBuilder& RowHeight(int row, double height_pt);
    SheetBuilder& Format(std::string_view area, const Look& look);
    SheetBuilder& Text(std::string_view address, const std::string& text, const Look& look = {});
    SheetBuilder& Number(std::string_view address, double value, const Look& look = {});
    /// Without the "=".
    SheetBuilder& Formula(std::string_view address, const std::string& formula,
                          const Look& look = {});
    /// Joins the area and gives all of it the look.
    SheetBuilder& Merge(std::string_view area, const Look& look);

    /// Shows cells that hold the text in other colours.
    SheetBuilder& HighlightText(std::string_view area, const std::string& text,
                                const Highlight& highlight);
    /// Shows cells otherwise where a formula, written for the area's first cell, is true.
    SheetBuilder& HighlightWhere(std::string_view area, const std::string& formula,
                                 const Highlight& highlight);
    SheetBuilder& FreezeRows(int rows);
    SheetBuilder& WithoutGrid();
    /// Rows such as "1:1" that are repeated on every page.
    SheetBuilder& RepeatRows(std::string_view rows);
    /// Areas with dollar signs, one page set each: "$M$1:$AD$37,$A:$J".
    SheetBuilder& PrintArea(std::string_view areas);
    SheetBuilder& Pages(const PageTexts& texts);
    /// Prints small enough to fit a single page; otherwise only the width is fitted.
    SheetBuilder& OnOnePage(Orientation orientation);

    const std::string& Name() const { return m_Name; }
    /// The names that belong to this sheet alone.
    std::string DefinedNames(std::size_t sheet) const;
    std::string Xml(bool isFirst) const;

  private:
    struct CellText {
        int Style = 0;
        std::string Type;
        std::string Content;
    };
    CellText& At(std::string_view address, const Look& look);
    SheetBuilder& AddRule(std::string_view area, std::string_view type, std::string_view attributes,
                          const std::string& formulaXml, const Highlight& highlight);
    std::string ViewXml(bool isFirst) const;
    std::string RowsXml() const;

    std::string m_Name;
    StyleTable& m_Styles;
    TextTable& m_Texts;
    std::string m_Columns;
    std::map<int, double> m_Heights;
    std::map<int, std::map<int, CellText>> m_Rows;
    std::vector<std::string> m_Merged;
    std::string m_Highlights;
    int m_Priority = 0;
    int m_FrozenRows = 0;
    bool m_Grid = true;
    std::string m_RepeatedRows;
    std::string m_PrintArea;
    PageTexts m_Pages;
    Orientation m_Orientation = Orientation::Landscape;
    bool m_OnOnePage = false;
};

} // namespace ombrix::templates
