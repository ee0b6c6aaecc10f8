#pragma once

#include <pugixml.hpp>

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// What a workbook of the older, binary format begins with.
inline constexpr std::string_view BinaryWorkbook = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";

/// Looks into a written workbook, part by part.
class WorkbookProbe {
  public:
    explicit WorkbookProbe(std::string_view archive);

    const std::map<std::string, std::string>& Parts() const { return m_Parts; }
    bool Has(const std::string& part) const { return m_Parts.contains(part); }
    /// A part as XML. Fails the test when it is missing or damaged.
    const pugi::xml_document& Xml(const std::string& part);

    std::string WorkbookPart();
    std::vector<std::string> SheetNames();
    std::string SheetPart(const std::string& sheet);
    pugi::xml_node Sheet(const std::string& sheet);
    /// The "c" element of a cell; an empty node when there is none.
    pugi::xml_node Cell(const std::string& sheet, const std::string& address);
    /// What stands in the cell: its number, its text or "=" and its formula.
    std::string Value(const std::string& sheet, const std::string& address);
    std::string Formula(const std::string& sheet, const std::string& address);
    /// The cell's entry among the formats of the workbook.
    pugi::xml_node Format(const std::string& sheet, const std::string& address);
    pugi::xml_node Border(const std::string& sheet, const std::string& address);
    std::string NumberFormat(const std::string& sheet, const std::string& address);
    /// The parts that a part refers to by relationships of a kind ("chart").
    std::vector<std::string> Related(const std::string& part, std::string_view kind);
    /// Charts on a sheet, in the order of its drawing.
    std::vector<std::string> Charts(const std::string& sheet);

  private:
    std::map<std::string, std::string> m_Parts;
    std::map<std::string, pugi::xml_document> m_Documents;
};

/// The parts of a workbook, dates to a tenth of a second: a sum of days has digits beyond.
std::map<std::string, std::string> PartsOf(const std::filesystem::path& file);

/// The archive with parts changed, added or (when empty) taken away.
std::string WithParts(std::string_view archive, const std::map<std::string, std::string>& changes);

/// The archive with one text of a part replaced. Fails the test when the text is not there.
std::string WithReplaced(std::string_view archive, const std::string& part, std::string_view what,
                         std::string_view by);

} // namespace ombrix
