#include "spreadsheet/chart/XlsxChart.h"

#include "spreadsheet/package/StyleSheet.h"
#include "spreadsheet/sheet/FormulaText.h"
#include "spreadsheet/sheet/XlsxWorksheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ombrix::xlsx {

namespace {

constexpr int NameRow = 1;
constexpr int FirstDataRow = 2;
constexpr double HeaviestLine_pt = 1584.0;

/// A value that misses a mark by this share of a step counts as on it.
constexpr double Nearly = 0.001;
/// Keeps a line at the highest value off the chart's edge.
constexpr double Headroom = 0.02;

/// 1, 2 or 5 times a power of ten, so that a span has 5 to 12 steps.
double RoundStep(double span) {
    const double power = std::pow(10.0, std::floor(std::log10(span)));
    const double leading = span / power;
    return leading < 2.4 ? power / 5.0 : leading < 6.0 ? power / 2.0 : power;
}

/// From zero to the first mark behind the highest value: the lines fill the chart, and the
/// noise of a steady reading stays as small as it is. Below zero the spreadsheet program chooses.
/// @param headroom share of the highest value that is left free above it
void ScaleFromZero(ChartAxis& axis, const std::optional<std::pair<double, double>>& range,
                   double headroom) {
    if (!range || range->first < 0.0 || range->second <= 0.0 || !std::isfinite(range->second))
        return;
    axis.Step = RoundStep(range->second);
    const double highest = range->second * (1.0 + headroom);
    axis.Most = std::ceil(highest / axis.Step - Nearly) * axis.Step;
}

/// As many decimals as tell the marks apart.
std::string PercentFormat(double step) {
    if (step <= 0.0 || step >= 0.01)
        return "0%";
    return step >= 0.001 ? "0.0%" : "0.00%";
}

CellArea Down(int column, int firstRow, int lastRow) {
    return {{firstRow, column}, {lastRow, column}};
}

} // namespace

void XlsxChart::SetSourceData(const Worksheet& data, std::string_view columns) {
    const auto* sheet = dynamic_cast<const XlsxWorksheet*>(&data);
    if (sheet == nullptr || &sheet->Book() != m_Book)
        throw SpreadsheetError("a chart draws from a sheet of its own workbook");
    std::vector<Series> series;
    for (const ColumnRange& range : ParseColumns(columns))
        for (int column = range.First; column <= range.Last; ++column)
            series.push_back({column});
    m_Data = sheet;
    m_XColumn = series.front().Column;
    series.erase(series.begin());
    m_Series = std::move(series);
}

void XlsxChart::SetElement(ChartElement element) {
    m_HasTitle = m_HasTitle || element == ChartElement::TitleAboveChart;
}

void XlsxChart::SetTitle(std::string_view text) {
    m_HasTitle = true;
    m_Title = text;
}

XlsxChart::Series& XlsxChart::At(int series) {
    if (series < 1 || series > static_cast<int>(m_Series.size()))
        throw SpreadsheetError(fmt::format("the chart has no series {}", series));
    return m_Series[static_cast<std::size_t>(series - 1)];
}

void XlsxChart::SetSeriesLineWeight(int series, double weight) {
    if (!(weight > 0.0 && weight <= HeaviestLine_pt))
        throw SpreadsheetError(fmt::format("{} is no line weight", weight));
    At(series).Weight_pt = weight;
}

void XlsxChart::SetSeriesSmooth(int series, bool smooth) {
    At(series).Smooth = smooth;
}

void XlsxChart::SetSeriesAxisGroup(int series, AxisGroup group) {
    At(series).Secondary = group == AxisGroup::Secondary;
}

std::unique_ptr<XlsxChart> XlsxChart::Copy(std::string partName, const XlsxWorksheet& sheet,
                                           const XlsxWorksheet& sheetCopy) const {
    auto copy = std::make_unique<XlsxChart>(*this);
    copy->m_PartName = std::move(partName);
    if (m_Data == &sheet)
        copy->m_Data = &sheetCopy;
    return copy;
}

int XlsxChart::LastRow() const {
    int last = std::max(FirstDataRow, m_Data->Cells().LastFilledRow(m_XColumn));
    for (const Series& series : m_Series)
        last = std::max(last, m_Data->Cells().LastFilledRow(series.Column));
    return last;
}

std::string XlsxChart::Reference(const CellArea& area) const {
    return QuotedSheetName(m_Data->Name()) + "!" + ToAbsoluteText(area);
}

std::string XlsxChart::NameOf(int column) const {
    const CellValue value = m_Data->ValueAt({NameRow, column});
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? *text : "";
}

ChartSeries XlsxChart::Describe(const Series& series, int lastRow) const {
    return {Reference(Down(series.Column, NameRow, NameRow)),
            NameOf(series.Column),
            Reference(Down(m_XColumn, FirstDataRow, lastRow)),
            Reference(Down(series.Column, FirstDataRow, lastRow)),
            series.Weight_pt,
            series.Smooth,
            series.Secondary};
}

ChartAxis XlsxChart::DescribeX() const {
    ChartAxis axis;
    axis.Title = NameOf(m_XColumn);
    ScaleFromZero(axis, m_Data->Cells().BlockRange(m_XColumn), 0.0);
    return axis;
}

/// The lowest and highest value of the series of one axis.
XlsxChart::Range XlsxChart::RangeOf(bool secondary) const {
    Range whole;
    for (const Series& series : m_Series) {
        const Range own = m_Data->Cells().BlockRange(series.Column);
        if (!own || series.Secondary != secondary)
            continue;
        whole = whole ? std::pair(std::min(whole->first, own->first),
                                  std::max(whole->second, own->second))
                      : *own;
    }
    return whole;
}

/// An axis that serves one series carries its name.
ChartAxis XlsxChart::DescribeAxis(const StyleSheet& styles, bool secondary) const {
    const auto belongs = [secondary](const Series& s) { return s.Secondary == secondary; };
    const auto first = std::find_if(m_Series.begin(), m_Series.end(), belongs);
    if (first == m_Series.end())
        return {};
    ChartAxis axis;
    ScaleFromZero(axis, RangeOf(secondary), Headroom);
    if (std::count_if(m_Series.begin(), m_Series.end(), belongs) == 1)
        axis.Title = NameOf(first->Column);
    if (styles.ShowsPercent(m_Data->Cells().FormatAt({FirstDataRow, first->Column})))
        axis.NumberFormat = PercentFormat(axis.Step);
    return axis;
}

std::string XlsxChart::Xml(const StyleSheet& styles) const {
    ChartDescription description;
    description.HasTitle = m_HasTitle;
    description.Title = m_Title;
    if (m_Data == nullptr)
        return ChartXml(description);
    description.X = DescribeX();
    description.Primary = DescribeAxis(styles, false);
    description.Secondary = DescribeAxis(styles, true);
    const int lastRow = LastRow();
    for (const Series& series : m_Series)
        description.Series.push_back(Describe(series, lastRow));
    return ChartXml(description);
}

} // namespace ombrix::xlsx
