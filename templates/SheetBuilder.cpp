#include "SheetBuilder.h"

#include "spreadsheet/Cells.h"
#include "spreadsheet/package/XmlPart.h"
#include "spreadsheet/sheet/CellArea.h"
#include "spreadsheet/sheet/FormulaText.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix::templates {

namespace {

constexpr std::string_view Declaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
constexpr std::string_view Namespace = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr int PaperA4 = 9;

std::string Escaped(std::string_view text) {
    std::string out;
    xlsx::AppendEscaped(out, text);
    return out;
}

} // namespace

std::size_t TextTable::Number(const std::string& text) {
    const auto found = std::find(m_Texts.begin(), m_Texts.end(), text);
    const auto number = static_cast<std::size_t>(found - m_Texts.begin());
    if (found == m_Texts.end())
        m_Texts.push_back(text);
    return number;
}

std::string TextTable::Xml() const {
    std::string xml = fmt::format("{}<sst xmlns=\"{}\" uniqueCount=\"{}\">", Declaration, Namespace,
                                  m_Texts.size());
    for (const std::string& text : m_Texts)
        xml += "<si><t xml:space=\"preserve\">" + Escaped(text) + "</t></si>";
    return xml + "</sst>";
}

SheetBuilder& SheetBuilder::Column(std::string_view columns, double width, const Look& look) {
    const std::string range = columns.find(':') == std::string_view::npos
                                  ? fmt::format("{0}:{0}", columns)
                                  : std::string(columns);
    const auto parsed = xlsx::ParseColumns(range).front();
    m_Columns +=
        fmt::format("<col min=\"{}\" max=\"{}\" width=\"{}\" style=\"{}\" customWidth=\"1\"/>",
                    parsed.First, parsed.Last, width, m_Styles.Number(look));
    return *this;
}

SheetBuilder& SheetBuilder::RowHeight(int row, double height_pt) {
    m_Heights[row] = height_pt;
    m_Rows[row];
    return *this;
}

SheetBuilder::CellText& SheetBuilder::At(std::string_view address, const Look& look) {
    const auto cell = xlsx::ParseCell(address);
    CellText& target = m_Rows[cell.Row][cell.Column];
    target.Style = m_Styles.Number(look);
    return target;
}

SheetBuilder& SheetBuilder::Format(std::string_view area, const Look& look) {
    const auto cells = xlsx::ParseArea(area);
    for (int row = cells.First.Row; row <= cells.Last.Row; ++row)
        for (int column = cells.First.Column; column <= cells.Last.Column; ++column)
            m_Rows[row][column].Style = m_Styles.Number(look);
    return *this;
}

SheetBuilder& SheetBuilder::Text(std::string_view address, const std::string& text,
                                 const Look& look) {
    CellText& cell = At(address, look);
    cell.Type = " t=\"s\"";
    cell.Content = fmt::format("<v>{}</v>", m_Texts.Number(text));
    return *this;
}

SheetBuilder& SheetBuilder::Number(std::string_view address, double value, const Look& look) {
    At(address, look).Content = fmt::format("<v>{}</v>", value);
    return *this;
}

SheetBuilder& SheetBuilder::Formula(std::string_view address, const std::string& formula,
                                    const Look& look) {
    At(address, look).Content = "<f>" + Escaped(formula) + "</f>";
    return *this;
}

SheetBuilder& SheetBuilder::Merge(std::string_view area, const Look& look) {
    m_Merged.emplace_back(area);
    return Format(area, look);
}

SheetBuilder& SheetBuilder::HighlightText(std::string_view area, const std::string& text,
                                          const Highlight& highlight) {
    return AddRule(area, "cellIs", " operator=\"equal\"", fmt::format("\"{}\"", Escaped(text)),
                   highlight);
}

SheetBuilder& SheetBuilder::HighlightWhere(std::string_view area, const std::string& formula,
                                           const Highlight& highlight) {
    return AddRule(area, "expression", "", Escaped(formula), highlight);
}

SheetBuilder& SheetBuilder::AddRule(std::string_view area, std::string_view type,
                                    std::string_view attributes, const std::string& formulaXml,
                                    const Highlight& highlight) {
    m_Highlights +=
        fmt::format("<conditionalFormatting sqref=\"{}\"><cfRule type=\"{}\" "
                    "dxfId=\"{}\" priority=\"{}\"{}>"
                    "<formula>{}</formula></cfRule></conditionalFormatting>",
                    area, type, m_Styles.Number(highlight), ++m_Priority, attributes, formulaXml);
    return *this;
}

SheetBuilder& SheetBuilder::FreezeRows(int rows) {
    m_FrozenRows = rows;
    return *this;
}

SheetBuilder& SheetBuilder::WithoutGrid() {
    m_Grid = false;
    return *this;
}

SheetBuilder& SheetBuilder::RepeatRows(std::string_view rows) {
    m_RepeatedRows = rows;
    return *this;
}

SheetBuilder& SheetBuilder::PrintArea(std::string_view areas) {
    m_PrintArea = areas;
    return *this;
}

SheetBuilder& SheetBuilder::Pages(const PageTexts& texts) {
    m_Pages = texts;
    return *this;
}

SheetBuilder& SheetBuilder::OnOnePage(Orientation orientation) {
    m_Orientation = orientation;
    m_OnOnePage = true;
    return *this;
}

std::string SheetBuilder::DefinedNames(std::size_t sheet) const {
    const std::string prefix = xlsx::QuotedSheetName(m_Name) + "!";
    std::string xml;
    const auto append = [&](std::string_view name, std::string value) {
        for (std::size_t at = 0; (at = value.find(',', at)) != std::string::npos; ++at)
            value.insert(at + 1, prefix);
        xml += fmt::format("<definedName name=\"_xlnm.{}\" localSheetId=\"{}\">{}</definedName>",
                           name, sheet, Escaped(prefix + value));
    };
    if (!m_PrintArea.empty())
        append("Print_Area", m_PrintArea);
    if (!m_RepeatedRows.empty())
        append("Print_Titles", m_RepeatedRows);
    return xml;
}

std::string SheetBuilder::ViewXml(bool isFirst) const {
    std::string pane;
    if (m_FrozenRows > 0)
        pane = fmt::format("<pane ySplit=\"{}\" topLeftCell=\"A{}\" activePane=\"bottomLeft\" "
                           "state=\"frozen\"/><selection pane=\"bottomLeft\"/>",
                           m_FrozenRows, m_FrozenRows + 1);
    return fmt::format("<sheetViews><sheetView{}{} workbookViewId=\"0\">{}</sheetView>"
                       "</sheetViews>",
                       m_Grid ? "" : " showGridLines=\"0\"", isFirst ? " tabSelected=\"1\"" : "",
                       pane);
}

std::string SheetBuilder::RowsXml() const {
    std::string xml;
    for (const auto& [row, cells] : m_Rows) {
        const auto height = m_Heights.find(row);
        xml += fmt::format("<row r=\"{}\"", row);
        if (height != m_Heights.end())
            xml += fmt::format(" ht=\"{}\" customHeight=\"1\"", height->second);
        xml += ">";
        for (const auto& [column, cell] : cells)
            xml += fmt::format("<c r=\"{}{}\" s=\"{}\"{}>{}</c>", ColumnLetters(column - 1), row,
                               cell.Style, cell.Type, cell.Content);
        xml += "</row>";
    }
    return xml;
}

std::string SheetBuilder::Xml(bool isFirst) const {
    std::string xml =
        fmt::format("{}<worksheet xmlns=\"{}\"><sheetPr><pageSetUpPr fitToPage=\"1\"/></sheetPr>",
                    Declaration, Namespace) +
        ViewXml(isFirst) + "<sheetFormatPr defaultRowHeight=\"15\"/>";
    if (!m_Columns.empty())
        xml += "<cols>" + m_Columns + "</cols>";
    xml += "<sheetData>" + RowsXml() + "</sheetData>";
    if (!m_Merged.empty()) {
        xml += fmt::format("<mergeCells count=\"{}\">", m_Merged.size());
        for (const std::string& area : m_Merged)
            xml += fmt::format("<mergeCell ref=\"{}\"/>", area);
        xml += "</mergeCells>";
    }
    xml += m_Highlights;
    xml += fmt::format("<printOptions horizontalCentered=\"1\"/>"
                       "<pageMargins left=\"0.5\" right=\"0.5\" top=\"0.6\" bottom=\"0.6\" "
                       "header=\"0.25\" footer=\"0.25\"/>"
                       "<pageSetup paperSize=\"{}\" orientation=\"{}\" fitToWidth=\"1\" "
                       "fitToHeight=\"{}\"/>",
                       PaperA4, m_Orientation == Orientation::Portrait ? "portrait" : "landscape",
                       m_OnOnePage ? 1 : 0);
    xml += fmt::format("<headerFooter><oddHeader>{}</oddHeader><oddFooter>{}</oddFooter>"
                       "</headerFooter></worksheet>",
                       Escaped("&L" + m_Pages.Title + "&R" + m_Pages.Product),
                       Escaped("&L&F&C&A&RPage &P of &N"));
    return xml;
}

} // namespace ombrix::templates
