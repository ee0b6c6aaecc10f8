#pragma once

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/chart/ChartXml.h"
#include "spreadsheet/sheet/CellArea.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ombrix::xlsx {

class StyleSheet;
class XlsxWorkbook;
class XlsxWorksheet;

/// A chart added to a sheet. It is put into words only when the workbook is written, because
/// the sheets it draws from may be filled or renamed until then.
class XlsxChart final : public Chart {
  public:
    XlsxChart(const XlsxWorkbook& book, std::string partName)
        : m_Book(&book), m_PartName(std::move(partName)) {}

    void SetSourceData(const Worksheet& data, std::string_view columns) override;
    void SetElement(ChartElement element) override;
    void SetTitle(std::string_view text) override;
    void SetSeriesLineWeight(int series, double weight) override;
    void SetSeriesSmooth(int series, bool smooth) override;
    void SetSeriesAxisGroup(int series, AxisGroup group) override;

    const std::string& PartName() const { return m_PartName; }
    /// The same chart for another part; it draws from the copy of a sheet if it drew from the
    /// sheet itself.
    std::unique_ptr<XlsxChart> Copy(std::string partName, const XlsxWorksheet& sheet,
                                    const XlsxWorksheet& sheetCopy) const;
    std::string Xml(const StyleSheet& styles) const;

  private:
    struct Series {
        int Column;
        double Weight_pt = 1.25;
        bool Smooth = true;
        bool Secondary = false;
    };

    Series& At(int series);
    int LastRow() const;
    std::string Reference(const CellArea& area) const;
    std::string NameOf(int column) const;
    ChartSeries Describe(const Series& series, int lastRow) const;
    using Range = std::optional<std::pair<double, double>>;
    Range RangeOf(bool secondary) const;
    ChartAxis DescribeX() const;
    ChartAxis DescribeAxis(const StyleSheet& styles, bool secondary) const;

    const XlsxWorkbook* m_Book;
    std::string m_PartName;
    const XlsxWorksheet* m_Data = nullptr;
    int m_XColumn = 1;
    std::vector<Series> m_Series;
    bool m_HasTitle = false;
    std::string m_Title;
};

} // namespace ombrix::xlsx
