#include "spreadsheet/sheet/RangeCopy.h"

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/sheet/FormulaText.h"

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
            throw SpreadsheetError("an array formula cannot be copied with a range");
    });
    return copies;
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
    for (CopiedCell& copy : Snapshot(cells, source)) {
        if (auto* formula = std::get_if<Formula>(&copy.Value))
            formula->Text = ShiftReferences(formula->Text, rows, columns);
        Cell& target = cells.At({copy.From.Row + rows, copy.From.Column + columns});
        target.Format = copy.Format;
        target.Value = IsFilled(copy.Value) ? std::move(copy.Value) : Content(EmptyContent());
    }
    CopyHeights(cells, source, rows);
}

} // namespace ombrix::xlsx
