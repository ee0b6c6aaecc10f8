#include "spreadsheet/sheet/CellArea.h"

#include "spreadsheet/Cells.h"
#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace ombrix::xlsx {

namespace {

bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

void SkipDollar(std::string_view& text) {
    if (!text.empty() && text.front() == '$')
        text.remove_prefix(1);
}

std::vector<std::string_view> Parts(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(separators), text.size());
        if (end > 0)
            parts.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

SpreadsheetError NoAddress(std::string_view text) {
    return SpreadsheetError(fmt::format("\"{}\" is no address of cells", text));
}

} // namespace

int ColumnNumber(std::string_view letters) {
    if (letters.empty() || letters.size() > 3)
        return 0;
    int column = 0;
    for (const char c : letters) {
        if (!IsLetter(c))
            return 0;
        column = column * 26 + (c >= 'a' ? c - 'a' : c - 'A') + 1;
    }
    return column <= MaxColumn ? column : 0;
}

std::optional<CellPosition> FindCell(std::string_view text) {
    SkipDollar(text);
    const auto lettersEnd = std::find_if_not(text.begin(), text.end(), IsLetter);
    const auto letters = static_cast<std::size_t>(lettersEnd - text.begin());
    const int column = ColumnNumber(text.substr(0, letters));
    text.remove_prefix(letters);
    SkipDollar(text);
    int row = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), row);
    if (column == 0 || error != std::errc() || end != text.data() + text.size() || row < 1 ||
        row > MaxRow)
        return std::nullopt;
    return CellPosition{row, column};
}

std::optional<CellArea> FindArea(std::string_view text) {
    const std::size_t colon = text.find(':');
    const auto first = FindCell(text.substr(0, colon));
    const auto last = colon == std::string_view::npos ? first : FindCell(text.substr(colon + 1));
    if (!first || !last)
        return std::nullopt;
    return CellArea{{std::min(first->Row, last->Row), std::min(first->Column, last->Column)},
                    {std::max(first->Row, last->Row), std::max(first->Column, last->Column)}};
}

std::optional<std::vector<CellArea>> FindAreas(std::string_view text) {
    std::vector<CellArea> areas;
    for (const std::string_view part : Parts(text, ", ")) {
        const auto area = FindArea(part);
        if (!area)
            return std::nullopt;
        areas.push_back(*area);
    }
    if (areas.empty())
        return std::nullopt;
    return areas;
}

CellPosition ParseCell(std::string_view text) {
    if (const auto cell = FindCell(text))
        return *cell;
    throw NoAddress(text);
}

CellArea ParseArea(std::string_view text) {
    if (const auto area = FindArea(text))
        return *area;
    throw NoAddress(text);
}

std::vector<CellArea> ParseAreas(std::string_view text) {
    if (auto areas = FindAreas(text))
        return *std::move(areas);
    throw NoAddress(text);
}

std::vector<ColumnRange> ParseColumns(std::string_view text) {
    std::vector<ColumnRange> ranges;
    for (const std::string_view part : Parts(text, ",")) {
        const std::size_t colon = std::min(part.find(':'), part.size());
        const int first = ColumnNumber(part.substr(0, colon));
        const int last = colon == part.size() ? 0 : ColumnNumber(part.substr(colon + 1));
        if (first == 0 || last < first)
            throw NoAddress(text);
        ranges.push_back({first, last});
    }
    if (ranges.empty())
        throw NoAddress(text);
    return ranges;
}

std::string ToText(CellPosition cell) {
    return ColumnLetters(cell.Column - 1) + std::to_string(cell.Row);
}

std::string ToText(const CellArea& area) {
    if (area.First == area.Last)
        return ToText(area.First);
    return ToText(area.First) + ":" + ToText(area.Last);
}

std::string ToAbsoluteText(const CellArea& area) {
    const auto corner = [](CellPosition cell) {
        return fmt::format("${}${}", ColumnLetters(cell.Column - 1), cell.Row);
    };
    if (area.First == area.Last)
        return corner(area.First);
    return corner(area.First) + ":" + corner(area.Last);
}

std::optional<CellArea> Intersection(const CellArea& left, const CellArea& right) {
    const CellArea common{
        {std::max(left.First.Row, right.First.Row),
         std::max(left.First.Column, right.First.Column)},
        {std::min(left.Last.Row, right.Last.Row), std::min(left.Last.Column, right.Last.Column)}};
    if (common.Rows() < 1 || common.Columns() < 1)
        return std::nullopt;
    return common;
}

std::vector<CellArea> Difference(const CellArea& area, const CellArea& cut) {
    const auto common = Intersection(area, cut);
    if (!common)
        return {area};
    const auto [top, left] = common->First;
    const auto [bottom, right] = common->Last;
    std::vector<CellArea> rest;
    if (top > area.First.Row)
        rest.push_back({area.First, {top - 1, area.Last.Column}});
    if (left > area.First.Column)
        rest.push_back({{top, area.First.Column}, {bottom, left - 1}});
    if (right < area.Last.Column)
        rest.push_back({{top, right + 1}, {bottom, area.Last.Column}});
    if (bottom < area.Last.Row)
        rest.push_back({{bottom + 1, area.First.Column}, area.Last});
    return rest;
}

CellArea Moved(const CellArea& area, int rows, int columns) {
    return {{area.First.Row + rows, area.First.Column + columns},
            {area.Last.Row + rows, area.Last.Column + columns}};
}

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

namespace {

/// Width of a digit in the usual standard font at 96 dots per inch.
constexpr double Digit_px = 7.0;
constexpr double Padding_px = 5.0;
constexpr double PointsPerPixel = 0.75;
constexpr double WidestColumn_digits = 255.0;

/// Widths are stored in digits; what is shown is whole pixels.
double Points(double width_digits) {
    const double width = std::clamp(width_digits, 0.0, WidestColumn_digits);
    return std::trunc((256.0 * width + std::trunc(128.0 / Digit_px)) / 256.0 * Digit_px) *
           PointsPerPixel;
}

/// No number counts as 0.
double Number(const pugi::xml_attribute& attribute, double otherwise) {
    const double value = attribute.as_double(otherwise);
    return std::isfinite(value) ? value : 0.0;
}

} // namespace

SheetColumns::SheetColumns(const pugi::xml_node& worksheet) {
    const pugi::xml_node format = worksheet.child("sheetFormatPr");
    const double baseWidth_px =
        std::ceil((Number(format.attribute("baseColWidth"), 8.0) * Digit_px + Padding_px) / 8.0) *
        8.0;
    m_Width_pt = std::clamp(baseWidth_px, 0.0, WidestColumn_digits * Digit_px) * PointsPerPixel;
    if (const auto width = format.attribute("defaultColWidth"))
        m_Width_pt = Points(Number(width, 0.0));
    m_RowHeight_pt =
        std::clamp(Number(format.attribute("defaultRowHeight"), 15.0), 0.0, HighestRow_pt);

    for (const pugi::xml_node column : worksheet.child("cols").children("col")) {
        const int first = column.attribute("min").as_int();
        const int last = std::min(column.attribute("max").as_int(), MaxColumn);
        if (m_Spans.size() == MaxColumn)
            break;
        if (first < 1 || last < first)
            continue;
        const auto width = column.attribute("width");
        const bool hidden = column.attribute("hidden").as_bool();
        m_Spans.push_back({first, last,
                           hidden  ? 0.0
                           : width ? Points(Number(width, 0.0))
                                   : m_Width_pt,
                           std::max(column.attribute("style").as_int(), 0)});
    }
}

const SheetColumns::Span* SheetColumns::Find(int column) const {
    const auto found = std::find_if(m_Spans.begin(), m_Spans.end(), [&](const Span& span) {
        return column >= span.First && column <= span.Last;
    });
    return found == m_Spans.end() ? nullptr : &*found;
}

int SheetColumns::Format(int column) const {
    const Span* span = Find(column);
    return span != nullptr ? span->Format : 0;
}

double SheetColumns::Width_pt(int column) const {
    const Span* span = Find(column);
    return span != nullptr ? span->Width_pt : m_Width_pt;
}

double SheetColumns::Left_pt(int column) const {
    double left = 0.0;
    for (int before = 1; before < column; ++before)
        left += Width_pt(before);
    return left;
}

} // namespace ombrix::xlsx
