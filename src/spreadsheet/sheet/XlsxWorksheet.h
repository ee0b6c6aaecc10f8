#pragma once

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/chart/XlsxChart.h"
#include "spreadsheet/package/StyleSheet.h"
#include "spreadsheet/sheet/CellStore.h"

#include <pugixml.hpp>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ombrix::xlsx {

/// Makes the cells of an area those of another of the same shape: values, formats, heights of
/// rows, formulas with their relative references moved along. The areas may overlap.
/// @throws SpreadsheetError for a part of an array formula, and for a data table
void CopyCells(CellStore& cells, const CellArea& source, const CellArea& destination);

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

class XlsxWorkbook;

class XlsxWorksheet final : public Worksheet {
  public:
    /// @throws SpreadsheetError
    XlsxWorksheet(XlsxWorkbook& book, std::string partName, std::string_view xml);

    std::string Name() const override;
    void SetName(std::string_view name) override;
    void SetVisible(SheetVisibility visibility) override;
    void Select() override;
    void CopyAfter(const Worksheet& other) override;

    CellValue Value(std::string_view address) const override;
    void SetValue(std::string_view address, const CellValue& value) override;
    void SetValues(std::string_view area, CellBlock<float> values) override;
    void SetValues(std::string_view area, CellBlock<std::int32_t> values) override;
    void SetFormula(std::string_view address, std::string_view formula) override;
    void CopyRange(std::string_view source, std::string_view destination) override;
    void SetBorder(std::string_view areas, BorderEdge edge, LineStyle style) override;
    SheetBox Box(std::string_view area) const override;
    void SetRowHeight(int firstRow, int lastRow, double height_pt) override;
    void AddPageBreak(int row) override;
    void ExtendPrintArea(std::string_view area) override;
    Chart& AddChart(ChartType type, const SheetBox& box) override;

    const XlsxWorkbook& Book() const { return m_Book; }
    const std::string& PartName() const { return m_PartName; }
    const CellStore& Cells() const { return m_Cells; }
    std::vector<TemplateFeature> Features() const;
    CellValue ValueAt(CellPosition cell) const;
    const std::vector<std::unique_ptr<XlsxChart>>& Charts() const { return m_Charts; }

    /// A copy for another part. @param copiedParts new names of the parts by their old ones
    std::unique_ptr<XlsxWorksheet>
    Copy(std::string partName, const std::map<std::string, std::string>& copiedParts) const;
    /// Turns references to a sheet in formulas and conditions.
    void RenameReferences(std::string_view from, std::string_view to);
    void SetTabSelected(bool selected);
    /// May run on any thread while nothing changes the sheet.
    std::string Xml() const;

  private:
    XlsxWorksheet(const XlsxWorksheet& other, std::string partName);

    template <class T>
    void AddBlock(std::string_view area, CellBlock<T> values);
    void DrawLines(const CellArea& area, CellSide side, LineStyle style);
    std::string DrawingPart();

    XlsxWorkbook& m_Book;
    std::string m_PartName;
    pugi::xml_document m_Shell;
    CellStore m_Cells;
    std::vector<std::unique_ptr<XlsxChart>> m_Charts;
};

} // namespace ombrix::xlsx
