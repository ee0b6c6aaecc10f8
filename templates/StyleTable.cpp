#include "StyleTable.h"

#include "spreadsheet/package/XmlPart.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix::templates {

namespace {

/// Numbers below belong to the formats that spreadsheets have built in.
constexpr std::size_t FirstOwnNumberFormat = 164;
constexpr std::string_view LineColour = "404040";

template <class T>
std::size_t IndexIn(std::vector<T>& list, const T& entry) {
    const auto found = std::find(list.begin(), list.end(), entry);
    const auto index = static_cast<std::size_t>(found - list.begin());
    if (found == list.end())
        list.push_back(entry);
    return index;
}

std::string Escaped(std::string_view text) {
    std::string out;
    xlsx::AppendEscaped(out, text);
    return out;
}

std::string FontXml(const Look& look) {
    return fmt::format("<font>{}{}<sz val=\"{}\"/><color rgb=\"FF{}\"/><name val=\"Calibri\"/>"
                       "<family val=\"2\"/></font>",
                       look.Bold ? "<b/>" : "", look.Italic ? "<i/>" : "", look.Size_pt,
                       look.Colour);
}

std::string FillXml(const std::string& colour) {
    if (colour.empty())
        return "<fill><patternFill patternType=\"none\"/></fill>";
    return fmt::format("<fill><patternFill patternType=\"solid\"><fgColor rgb=\"FF{}\"/>"
                       "<bgColor indexed=\"64\"/></patternFill></fill>",
                       colour);
}

std::string EdgeXml(std::string_view name, bool drawn) {
    if (!drawn)
        return fmt::format("<{}/>", name);
    return fmt::format("<{0} style=\"thin\"><color rgb=\"FF{1}\"/></{0}>", name, LineColour);
}

std::string BorderXml(unsigned edges) {
    return "<border>" + EdgeXml("left", (edges & LeftLine) != 0) +
           EdgeXml("right", (edges & RightLine) != 0) + EdgeXml("top", (edges & TopLine) != 0) +
           EdgeXml("bottom", (edges & BottomLine) != 0) + "<diagonal/></border>";
}

std::string AlignmentXml(const Look& look) {
    constexpr const char* Names[] = {"general", "left", "center", "right"};
    return fmt::format("<alignment horizontal=\"{}\" vertical=\"center\" "
                       "indent=\"{}\"{}/>",
                       Names[static_cast<int>(look.Horizontal)], look.Indent,
                       look.Wrapped ? " wrapText=\"1\"" : "");
}

std::string NumberFormatXml(std::size_t index, const std::string& format) {
    return fmt::format("<numFmt numFmtId=\"{}\" formatCode=\"{}\"/>", FirstOwnNumberFormat + index,
                       Escaped(format));
}

std::string List(std::string_view name, const std::vector<std::string>& entries) {
    return fmt::format("<{0} count=\"{1}\">{2}</{0}>", name, entries.size(),
                       fmt::join(entries, ""));
}

} // namespace

StyleTable::StyleTable() {
    Number(Look{});
    // The second fill is reserved for this pattern.
    m_Fills.emplace_back("<fill><patternFill patternType=\"gray125\"/></fill>");
}

int StyleTable::Number(const Look& look) {
    std::size_t number = 0; // "General"
    if (!look.Number.empty())
        number = FirstOwnNumberFormat + IndexIn(m_NumberFormats, look.Number);
    const Format format{IndexIn(m_Fonts, FontXml(look)), IndexIn(m_Fills, FillXml(look.Fill)),
                        IndexIn(m_Borders, BorderXml(look.Edges)), number, AlignmentXml(look)};
    return static_cast<int>(IndexIn(m_Formats, format));
}

int StyleTable::Number(const Highlight& highlight) {
    return static_cast<int>(IndexIn(m_Highlights, HighlightXml(highlight)));
}

std::string StyleTable::HighlightXml(const Highlight& highlight) {
    std::string xml = "<dxf>";
    if (!highlight.Colour.empty())
        xml += fmt::format("<font><b/><color rgb=\"FF{}\"/></font>", highlight.Colour);
    if (!highlight.Number.empty())
        xml += NumberFormatXml(IndexIn(m_NumberFormats, highlight.Number), highlight.Number);
    if (!highlight.Fill.empty())
        xml += fmt::format("<fill><patternFill patternType=\"solid\"><fgColor rgb=\"FF{0}\"/>"
                           "<bgColor rgb=\"FF{0}\"/></patternFill></fill>",
                           highlight.Fill);
    return xml + "</dxf>";
}

std::string StyleTable::FormatXml(const Format& format) const {
    return fmt::format("<xf numFmtId=\"{}\" fontId=\"{}\" fillId=\"{}\" borderId=\"{}\" xfId=\"0\" "
                       "applyNumberFormat=\"1\" applyFont=\"1\" applyFill=\"1\" "
                       "applyBorder=\"1\" applyAlignment=\"1\">{}</xf>",
                       format.Number, format.Font, format.Fill, format.Border, format.Alignment);
}

std::string StyleTable::Xml() const {
    std::vector<std::string> numbers;
    for (std::size_t i = 0; i < m_NumberFormats.size(); ++i)
        numbers.push_back(NumberFormatXml(i, m_NumberFormats[i]));
    std::vector<std::string> formats;
    for (const Format& format : m_Formats)
        formats.push_back(FormatXml(format));
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<styleSheet "
           "xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">" +
           List("numFmts", numbers) + List("fonts", m_Fonts) + List("fills", m_Fills) +
           List("borders", m_Borders) +
           "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" "
           "borderId=\"0\"/></cellStyleXfs>" +
           List("cellXfs", formats) +
           "<cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/>"
           "</cellStyles>" +
           List("dxfs", m_Highlights) + "</styleSheet>";
}

} // namespace ombrix::templates
