#include "spreadsheet/sheet/CellStore.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace ombrix::xlsx {

namespace {

std::vector<Cell>::const_iterator FirstFrom(const std::vector<Cell>& cells, int column) {
    return std::lower_bound(cells.begin(), cells.end(), column,
                            [](const Cell& cell, int wanted) { return cell.Column < wanted; });
}

} // namespace

bool IsFilled(const Content& content) {
    return !std::holds_alternative<std::monostate>(content) &&
           !std::holds_alternative<EmptyContent>(content);
}

Content ValueBlock::At(CellPosition cell) const {
    const auto row = static_cast<std::size_t>(cell.Row - Area.First.Row);
    const auto column = static_cast<std::size_t>(cell.Column - Area.First.Column);
    const std::size_t index = row * static_cast<std::size_t>(Area.Columns()) + column;
    return std::visit([index](const auto& values) { return Content(values[index]); }, Values);
}

const Cell* CellStore::Find(CellPosition position) const {
    const auto row = m_Rows.find(position.Row);
    if (row == m_Rows.end())
        return nullptr;
    const auto cell = FirstFrom(row->second.Cells, position.Column);
    return cell != row->second.Cells.end() && cell->Column == position.Column ? &*cell : nullptr;
}

Cell& CellStore::At(CellPosition position) {
    const int format = FormatAt(position);
    std::vector<Cell>& cells = m_Rows[position.Row].Cells;
    const auto place = cells.begin() + (FirstFrom(cells, position.Column) - cells.begin());
    if (place != cells.end() && place->Column == position.Column)
        return *place;
    return *cells.insert(place, Cell{position.Column, format, {}});
}

void CellStore::AddBlock(ValueBlock block) {
    const CellArea area = block.Area;
    std::erase_if(m_Blocks, [&](const ValueBlock& old) { return area.Contains(old.Area); });
    const auto end = m_Rows.upper_bound(area.Last.Row);
    for (auto row = m_Rows.lower_bound(area.First.Row); row != end; ++row)
        for (Cell& cell : row->second.Cells)
            if (area.Contains(CellPosition{row->first, cell.Column}))
                cell.Value = std::monostate();
    m_Blocks.push_back(std::move(block));
}

void CellStore::SetHeight(int row, double height_pt) {
    Row& target = m_Rows[row];
    target.Height_pt = height_pt;
    std::erase_if(target.Attributes, [](const auto& attribute) {
        return attribute.first == "ht" || attribute.first == "customHeight" ||
               attribute.first == "hidden";
    });
    target.Attributes.emplace_back("ht", fmt::format("{}", height_pt));
    target.Attributes.emplace_back("customHeight", "1");
    if (height_pt == 0.0)
        target.Attributes.emplace_back("hidden", "1");
}

Content CellStore::ContentAt(CellPosition position) const {
    const Cell* cell = Find(position);
    if (cell != nullptr && !std::holds_alternative<std::monostate>(cell->Value))
        return cell->Value;
    const auto block =
        std::find_if(m_Blocks.rbegin(), m_Blocks.rend(), [&](const ValueBlock& candidate) {
            return candidate.Area.Contains(position);
        });
    return block == m_Blocks.rend() ? Content() : block->At(position);
}

int CellStore::FormatAt(CellPosition position) const {
    if (const Cell* cell = Find(position))
        return cell->Format;
    const auto row = m_Rows.find(position.Row);
    if (row != m_Rows.end() && row->second.Format)
        return *row->second.Format;
    return m_Columns.Format(position.Column);
}

int CellStore::LastFilledRow(int column) const {
    int last = 0;
    for (const ValueBlock& block : m_Blocks)
        if (column >= block.Area.First.Column && column <= block.Area.Last.Column)
            last = std::max(last, block.Area.Last.Row);
    for (auto row = m_Rows.rbegin(); row != m_Rows.rend() && row->first > last; ++row) {
        const auto cell = FirstFrom(row->second.Cells, column);
        if (cell != row->second.Cells.end() && cell->Column == column && IsFilled(cell->Value))
            return row->first;
    }
    return last;
}

std::optional<std::pair<double, double>> CellStore::BlockRange(int column) const {
    std::optional<std::pair<double, double>> range;
    for (const ValueBlock& block : m_Blocks) {
        if (column < block.Area.First.Column || column > block.Area.Last.Column)
            continue;
        const auto step = static_cast<std::size_t>(block.Area.Columns());
        const auto start = static_cast<std::size_t>(column - block.Area.First.Column);
        std::visit(
            [&](const auto& values) {
                for (std::size_t i = start; i < values.size(); i += step) {
                    const auto value = static_cast<double>(values[i]);
                    range = range ? std::pair(std::min(range->first, value),
                                              std::max(range->second, value))
                                  : std::pair(value, value);
                }
            },
            block.Values);
    }
    return range;
}

double CellStore::Height_pt(int row) const {
    const auto found = m_Rows.find(row);
    if (found == m_Rows.end())
        return m_Columns.RowHeight_pt();
    return found->second.Height_pt.value_or(m_Columns.RowHeight_pt());
}

double CellStore::Top_pt(int row) const {
    double top = m_Columns.RowHeight_pt() * (row - 1);
    for (auto above = m_Rows.begin(); above != m_Rows.end() && above->first < row; ++above)
        if (above->second.Height_pt)
            top += *above->second.Height_pt - m_Columns.RowHeight_pt();
    return top;
}

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

namespace {

constexpr std::size_t LongestText = 32767;
constexpr double DaysFrom1900To1904 = 1462.0;

/// Workbooks know no date before 1900; one that they cannot show becomes an error value.
double DayCount(OleDate date, bool countsFrom1904) {
    const double days = date.Days() - (countsFrom1904 ? DaysFrom1900To1904 : 0.0);
    return date.ToCivil() && days >= 0.0 ? days : std::numeric_limits<double>::quiet_NaN();
}

struct ToContentVisitor {
    bool CountsFrom1904;

    Content operator()(std::monostate) const { return EmptyContent(); }
    Content operator()(const std::string& text) const {
        if (text.size() > LongestText)
            throw SpreadsheetError("the text is longer than a cell holds");
        return text;
    }
    Content operator()(OleDate date) const { return DayCount(date, CountsFrom1904); }
    template <class T>
    Content operator()(T value) const {
        return value;
    }
};

struct ToValueVisitor {
    const SharedStrings& Texts;

    CellValue operator()(std::monostate) const { return {}; }
    CellValue operator()(EmptyContent) const { return {}; }
    CellValue operator()(const Formula&) const { return {}; }
    CellValue operator()(const RawContent&) const { return {}; }
    CellValue operator()(SharedText text) const { return Texts.Text(text.Index); }
    template <class T>
    CellValue operator()(const T& value) const {
        return value;
    }
};

} // namespace

Content ToContent(const CellValue& value, bool countsFrom1904) {
    return std::visit(ToContentVisitor{countsFrom1904}, value);
}

CellValue ToValue(const Content& content, const SharedStrings& texts) {
    return std::visit(ToValueVisitor{texts}, content);
}

} // namespace ombrix::xlsx
