#pragma once

#include "Look.h"

#include <string>
#include <vector>

namespace ombrix::templates {

/// How a conditional format shows a cell.
struct Highlight {
    /// Empty colours leave the cell's own.
    std::string Colour = {};
    std::string Fill = {};
    /// A number format in the place of the cell's own.
    std::string Number = {};
};

/// Collects the looks of a workbook and numbers them the way cells refer to them.
class StyleTable {
  public:
    StyleTable();

    int Number(const Look& look);
    int Number(const Highlight& highlight);
    std::string Xml() const;

  private:
    struct Format {
        std::size_t Font;
        std::size_t Fill;
        std::size_t Border;
        std::size_t Number;
        std::string Alignment;
        bool operator==(const Format&) const = default;
    };
    std::string FormatXml(const Format& format) const;
    std::string HighlightXml(const Highlight& highlight);

    std::vector<std::string> m_Fonts;
    std::vector<std::string> m_Fills;
    std::vector<std::string> m_Borders;
    std::vector<std::string> m_NumberFormats;
    std::vector<Format> m_Formats;
    std::vector<std::string> m_Highlights;
};

} // namespace ombrix::templates
