#include "spreadsheet/sheet/XlsxWorksheet.h"

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/XlsxWorkbook.h"
#include "spreadsheet/chart/ChartXml.h"
#include "spreadsheet/package/XmlPart.h"
#include "spreadsheet/sheet/CellArea.h"
#include "spreadsheet/sheet/CellStore.h"
#include "spreadsheet/sheet/FormulaText.h"
#include "spreadsheet/sheet/Overlays.h"
#include "spreadsheet/sheet/SheetFeatures.h"
#include "spreadsheet/sheet/SheetOrder.h"
#include "spreadsheet/sheet/SheetReader.h"
#include "spreadsheet/sheet/SheetWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace ombrix::xlsx {

namespace {

struct CopiedCell {
    CellPosition From;
    int Format = 0;
    Content Value;
};

template <class Visit>
void ForEachCell(const CellArea& area, Visit visit) {
    for (int row = area.First.Row; row <= area.Last.Row; ++row)
        for (int column = area.First.Column; column <= area.Last.Column; ++column)
            visit(CellPosition{row, column});
}

std::vector<CopiedCell> Snapshot(const CellStore& cells, const CellArea& area) {
    std::vector<CopiedCell> copies;
    ForEachCell(area, [&](CellPosition cell) {
        copies.push_back({cell, cells.FormatAt(cell), cells.ContentAt(cell)});
        const auto* raw = std::get_if<RawContent>(&copies.back().Value);
        if (raw != nullptr && raw->Xml.starts_with("<f"))
            throw SpreadsheetError("a data table cannot be copied with a range");
    });
    return copies;
}

/// An array formula fills its cells as a whole.
void RequireWholeArrays(CellStore& cells, const CellArea& area) {
    cells.ForEachFormula([&](const Formula& formula) {
        if (formula.Array && Intersection(*formula.Array, area) && !area.Contains(*formula.Array))
            throw SpreadsheetError(fmt::format("{} holds a part of the array formula in {}",
                                               ToText(area), ToText(*formula.Array)));
    });
}

void CopyHeights(CellStore& cells, const CellArea& source, int rows) {
    std::vector<std::optional<double>> heights;
    for (int row = source.First.Row; row <= source.Last.Row; ++row) {
        const auto found = cells.Rows().find(row);
        heights.push_back(found == cells.Rows().end() ? std::nullopt : found->second.Height_pt);
    }
    for (int row = source.First.Row; row <= source.Last.Row; ++row)
        if (const auto& height = heights[static_cast<std::size_t>(row - source.First.Row)])
            cells.SetHeight(row + rows, *height);
}

} // namespace

void CopyCells(CellStore& cells, const CellArea& source, const CellArea& destination) {
    const int rows = destination.First.Row - source.First.Row;
    const int columns = destination.First.Column - source.First.Column;
    RequireWholeArrays(cells, source);
    RequireWholeArrays(cells, destination);
    for (CopiedCell& copy : Snapshot(cells, source)) {
        if (auto* formula = std::get_if<Formula>(&copy.Value)) {
            formula->Text = ShiftReferences(formula->Text, rows, columns);
            if (formula->Array)
                formula->Array = Moved(*formula->Array, rows, columns);
        }
        Cell& target = cells.At({copy.From.Row + rows, copy.From.Column + columns});
        target.Format = copy.Format;
        target.Value = IsFilled(copy.Value) ? std::move(copy.Value) : Content(EmptyContent());
    }
    CopyHeights(cells, source, rows);
}

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

namespace {

/// Cells that are changed one by one; more than any report holds.
constexpr long long MostCells = 1000000;
constexpr const char* DrawingType = "application/vnd.openxmlformats-officedocument.drawing+xml";
constexpr const char* ChartPartType =
    "application/vnd.openxmlformats-officedocument.drawingml.chart+xml";

constexpr int MostRows = 10000;

void CheckRow(int row) {
    if (row < 1 || row > MaxRow)
        throw SpreadsheetError(fmt::format("a sheet has no row {}", row));
}

void CheckSize(const CellArea& area) {
    if (static_cast<long long>(area.Rows()) * area.Columns() > MostCells)
        throw SpreadsheetError(fmt::format("{} has too many cells", ToText(area)));
}

/// Where lines are to be drawn for an edge of an area.
std::vector<std::pair<CellArea, CellSide>> LinesOf(const CellArea& area, BorderEdge edge) {
    const auto [top, left] = area.First;
    const auto [bottom, right] = area.Last;
    switch (edge) {
    case BorderEdge::Left: return {{{area.First, {bottom, left}}, CellSide::Left}};
    case BorderEdge::Right: return {{{{top, right}, area.Last}, CellSide::Right}};
    case BorderEdge::Top: return {{{area.First, {top, right}}, CellSide::Top}};
    case BorderEdge::Bottom: return {{{{bottom, left}, area.Last}, CellSide::Bottom}};
    case BorderEdge::DiagonalDown: return {{area, CellSide::DiagonalDown}};
    case BorderEdge::DiagonalUp: return {{area, CellSide::DiagonalUp}};
    case BorderEdge::InsideVertical:
        return {{{area.First, {bottom, right - 1}}, CellSide::Right},
                {{{top, left + 1}, area.Last}, CellSide::Left}};
    case BorderEdge::InsideHorizontal:
        return {{{area.First, {bottom - 1, right}}, CellSide::Bottom},
                {{{top + 1, left}, area.Last}, CellSide::Top}};
    }
    throw SpreadsheetError("there is no such border edge");
}

} // namespace

XlsxWorksheet::XlsxWorksheet(XlsxWorkbook& book, std::string partName, std::string_view xml)
    : m_Book(book), m_PartName(std::move(partName)),
      m_Shell(ParseXml(xml, m_PartName, "worksheet")),
      m_Cells(TakeCells(m_Shell.document_element())) {
    SetAttribute(m_Shell.document_element(), "xmlns:r",
                 "http://schemas.openxmlformats.org/officeDocument/2006/relationships");
}

XlsxWorksheet::XlsxWorksheet(const XlsxWorksheet& other, std::string partName)
    : m_Book(other.m_Book), m_PartName(std::move(partName)), m_Cells(other.m_Cells) {
    m_Shell.reset(other.m_Shell);
}

std::unique_ptr<XlsxWorksheet>
XlsxWorksheet::Copy(std::string partName,
                    const std::map<std::string, std::string>& copiedParts) const {
    std::unique_ptr<XlsxWorksheet> copy(new XlsxWorksheet(*this, std::move(partName)));
    pugi::xml_node root = copy->m_Shell.document_element();
    // What may stand in a workbook only once.
    root.child("sheetPr").remove_attribute("codeName");
    GiveRulesOwnIds(root, copy->m_PartName);
    copy->SetTabSelected(false);
    for (const auto& chart : m_Charts)
        copy->m_Charts.push_back(chart->Copy(copiedParts.at(chart->PartName()), *this, *copy));
    return copy;
}

std::string XlsxWorksheet::Name() const {
    return m_Book.NameOf(*this);
}
void XlsxWorksheet::SetName(std::string_view name) {
    m_Book.Rename(*this, name);
}
void XlsxWorksheet::SetVisible(SheetVisibility visibility) {
    m_Book.SetVisibility(*this, visibility);
}
void XlsxWorksheet::Select() {
    m_Book.Select(*this);
}
void XlsxWorksheet::CopyAfter(const Worksheet& other) {
    m_Book.CopyAfter(*this, other);
}

CellValue XlsxWorksheet::ValueAt(CellPosition cell) const {
    return ToValue(m_Cells.ContentAt(cell), m_Book.Texts());
}

CellValue XlsxWorksheet::Value(std::string_view address) const {
    return ValueAt(ParseCell(address));
}

void XlsxWorksheet::SetValue(std::string_view address, const CellValue& value) {
    Cell& cell = m_Cells.At(ParseCell(address));
    cell.Value = ToContent(value, m_Book.CountsFrom1904());
    if (std::holds_alternative<OleDate>(value))
        cell.Format = m_Book.Styles().WithDateFormat(cell.Format);
}

template <class T>
void XlsxWorksheet::AddBlock(std::string_view address, CellBlock<T> values) {
    const CellArea area = ParseArea(address);
    const auto rows = static_cast<std::size_t>(area.Rows());
    const auto columns = static_cast<std::size_t>(area.Columns());
    if (values.Columns != columns || values.Values.size() != rows * columns)
        throw SpreadsheetError(fmt::format("{} values in rows of {} do not fit {}",
                                           values.Values.size(), values.Columns, address));
    m_Cells.AddBlock({area, std::vector<T>(values.Values.begin(), values.Values.end())});
}

void XlsxWorksheet::SetValues(std::string_view area, CellBlock<float> values) {
    AddBlock(area, values);
}

void XlsxWorksheet::SetValues(std::string_view area, CellBlock<std::int32_t> values) {
    AddBlock(area, values);
}

void XlsxWorksheet::SetFormula(std::string_view address, std::string_view formula) {
    if (!formula.starts_with('=') || formula.size() < 2 || formula.size() > LongestFormula)
        throw SpreadsheetError(fmt::format("\"{}\" is no formula", formula));
    m_Cells.At(ParseCell(address)).Value = Formula{std::string(formula.substr(1))};
}

void XlsxWorksheet::CopyRange(std::string_view source, std::string_view destination) {
    const CellArea from = ParseArea(source);
    const CellArea to = ParseArea(destination);
    if (from.Rows() != to.Rows() || from.Columns() != to.Columns())
        throw SpreadsheetError(fmt::format("{} has not the shape of {}", destination, source));
    CheckSize(from);
    CopyCells(m_Cells, from, to);
    CopyOverlays(m_Shell.document_element(), from, to);
}

void XlsxWorksheet::SetBorder(std::string_view areas, BorderEdge edge, LineStyle style) {
    for (const CellArea& area : ParseAreas(areas)) {
        CheckSize(area);
        for (const auto& [cells, side] : LinesOf(area, edge))
            DrawLines(cells, side, style);
    }
}

void XlsxWorksheet::DrawLines(const CellArea& area, CellSide side, LineStyle style) {
    for (int row = area.First.Row; row <= area.Last.Row; ++row)
        for (int column = area.First.Column; column <= area.Last.Column; ++column) {
            Cell& cell = m_Cells.At({row, column});
            cell.Format = m_Book.Styles().WithBorder(cell.Format, side, style);
        }
}

SheetBox XlsxWorksheet::Box(std::string_view area) const {
    return BoxOf(ParseArea(area), m_Cells);
}

void XlsxWorksheet::SetRowHeight(int firstRow, int lastRow, double height_pt) {
    CheckRow(firstRow);
    CheckRow(lastRow);
    if (!(height_pt >= 0.0 && height_pt <= HighestRow_pt) || lastRow - firstRow > MostRows)
        throw SpreadsheetError(
            fmt::format("rows {} to {} cannot be {} points high", firstRow, lastRow, height_pt));
    for (int row = firstRow; row <= lastRow; ++row)
        m_Cells.SetHeight(row, height_pt);
}

void XlsxWorksheet::AddPageBreak(int row) {
    CheckRow(row);
    pugi::xml_node breaks =
        ChildInOrder(m_Shell.document_element(), "rowBreaks", SheetElementsBehind("rowBreaks"));
    const int above = row - 1;
    if (above == 0 || breaks.find_child_by_attribute("id", std::to_string(above).c_str()))
        return;
    pugi::xml_node entry = breaks.append_child("brk");
    SetAttribute(entry, "id", above);
    SetAttribute(entry, "max", MaxColumn - 1);
    SetAttribute(entry, "man", 1);
    UpdateCount(breaks);
    SetAttribute(breaks, "manualBreakCount", breaks.attribute("count").as_int());
}

void XlsxWorksheet::ExtendPrintArea(std::string_view area) {
    m_Book.ExtendPrintArea(*this, ParseArea(area));
}

std::vector<TemplateFeature> XlsxWorksheet::Features() const {
    std::vector<TemplateFeature> features = RelatedFeatures(m_Book.Parts(), m_PartName);
    std::vector<TemplateFeature> own = OwnFeatures(m_Shell.document_element(), m_Cells);
    std::move(own.begin(), own.end(), std::back_inserter(features));
    return features;
}

Chart& XlsxWorksheet::AddChart(ChartType type, const SheetBox& box) {
    if (type != ChartType::XYScatterSmoothNoMarkers)
        throw SpreadsheetError("this type of chart cannot be made");
    Package& parts = m_Book.Parts();
    const std::string drawing = DrawingPart();
    const std::string chart = parts.FreshName("xl/charts/chart", ".xml");
    parts.SetContent(chart, ""); // put into words when the workbook is written
    parts.SetContentType(chart, ChartPartType);
    const std::string id = parts.Relate(drawing, std::string(RelationshipTypes) + "chart", chart);
    parts.SetContent(drawing, WithChart(parts.Content(drawing), drawing, box, m_Cells, id));
    m_Charts.push_back(std::make_unique<XlsxChart>(m_Book, chart));
    return *m_Charts.back();
}

/// The sheet's drawing, made when it has none.
std::string XlsxWorksheet::DrawingPart() {
    Package& parts = m_Book.Parts();
    pugi::xml_node root = m_Shell.document_element();
    const std::string present = root.child("drawing").attribute("r:id").value();
    for (const Relationship& relationship : parts.Relationships(m_PartName))
        if (relationship.Id == present && relationship.Is("drawing"))
            return parts.TargetPart(m_PartName, relationship);
    std::string drawing = parts.FreshName("xl/drawings/drawing", ".xml");
    parts.SetContent(drawing, EmptyDrawing());
    parts.SetContentType(drawing, DrawingType);
    const std::string id =
        parts.Relate(m_PartName, std::string(RelationshipTypes) + "drawing", drawing);
    SetAttribute(ChildInOrder(root, "drawing", SheetElementsBehind("drawing")), "r:id", id.c_str());
    return drawing;
}

void XlsxWorksheet::RenameReferences(std::string_view from, std::string_view to) {
    m_Cells.ForEachFormula(
        [&](Formula& formula) { formula.Text = RenameSheet(formula.Text, from, to); });
    ChangeOverlayFormulas(m_Shell.document_element(),
                          [&](std::string_view formula) { return RenameSheet(formula, from, to); });
}

void XlsxWorksheet::SetTabSelected(bool selected) {
    for (pugi::xml_node view :
         m_Shell.document_element().child("sheetViews").children("sheetView")) {
        view.remove_attribute("tabSelected");
        if (selected)
            SetAttribute(view, "tabSelected", 1);
    }
}

std::string XlsxWorksheet::Xml() const {
    return WriteSheet(m_Shell.document_element(), m_Cells);
}

} // namespace ombrix::xlsx
