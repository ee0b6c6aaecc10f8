#include "spreadsheet/sheet/SheetColumns.h"

#include "spreadsheet/sheet/CellArea.h"

#include <algorithm>
#include <cmath>

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
