#pragma once

#include "platform/ports/Drive.h"
#include "platform/text/OleDate.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ombrix {

/// The operations of a spreadsheet application that the reports are written against. Addresses
/// are A1-style texts; an area is "B7:O9", several areas stand side by side with commas.

/// A cell's value, written as it is; the cell's format in the template shows it.
using CellValue =
    std::variant<std::monostate, std::string, std::int32_t, float, double, OleDate, bool>;

/// A block of values, row by row, written in one call.
template <class T>
struct CellBlock {
    std::span<const T> Values;
    std::size_t Columns = 1;

    std::size_t Rows() const { return Values.size() / Columns; }
};

/// An operation failed; the text says which and why, Number is the error number that the
/// automation interface gives (1004 unless said otherwise).
class SpreadsheetError : public std::runtime_error {
  public:
    explicit SpreadsheetError(const std::string& text, int number = 1004)
        : std::runtime_error(text), m_Number(number) {}
    int Number() const noexcept { return m_Number; }

  private:
    int m_Number;
};

/// A template holds what no report could keep; the text says what, and what to do about it.
class UnsupportedTemplate : public SpreadsheetError {
  public:
    using SpreadsheetError::SpreadsheetError;
};

enum class ChartType { XYScatterSmoothNoMarkers = 73 };
enum class ChartElement { TitleAboveChart = 2 };
enum class AxisGroup { Primary = 1, Secondary = 2 };
enum class BorderEdge {
    DiagonalDown = 5,
    DiagonalUp = 6,
    Left = 7,
    Top = 8,
    Bottom = 9,
    Right = 10,
    InsideVertical = 11,
    InsideHorizontal = 12,
};
enum class LineStyle { Continuous = 1, None = -4142 };
enum class SheetVisibility { Hidden = 0, Visible = -1 };
enum class WindowState { Maximised = -4137, Minimised = -4140 };
enum class Calculation { Manual = -4135, Automatic = -4105 };
/// ByExtension lets the file name decide; Excel8 is the binary format of ".xls".
enum class FileFormat { ByExtension = 0, Excel8 = 56 };

/// Position and size on a sheet in points (1/72 inch), from the sheet's upper left corner.
struct SheetBox {
    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;
};

class Worksheet;

/// A chart on a sheet. All operations throw SpreadsheetError, as for a series that is not there.
class Chart {
  public:
    virtual ~Chart() = default;

    /// Columns of a sheet such as "A:A,F:J": the first is x, each further one a series. The
    /// first row holds the names; the series reach down to the sheet's last filled row.
    virtual void SetSourceData(const Worksheet& data, std::string_view columns) = 0;
    virtual void SetElement(ChartElement element) = 0;
    virtual void SetTitle(std::string_view text) = 0;
    /// Series are numbered from 1. Line weight in points.
    virtual void SetSeriesLineWeight(int series, double weight) = 0;
    virtual void SetSeriesSmooth(int series, bool smooth) = 0;
    virtual void SetSeriesAxisGroup(int series, AxisGroup group) = 0;
};

/// A sheet of a workbook, which owns it; it is addressed in A1 style, and lives as long as its
/// workbook. Rows and positions count from 1. All operations throw SpreadsheetError.
class Worksheet {
  public:
    virtual ~Worksheet() = default;

    virtual std::string Name() const = 0;
    /// At most 31 characters, none of \ / ? * [ ] :, not in use in the workbook.
    virtual void SetName(std::string_view name) = 0;
    virtual void SetVisible(SheetVisibility visibility) = 0;
    /// Makes this the sheet that shows when the workbook is opened.
    virtual void Select() = 0;
    /// Puts a copy of this sheet behind another of the workbook. What its formulas, charts, names
    /// and links say of the sheet itself they say of the copy then. A sheet with something that a
    /// copy cannot have (Contents) is refused.
    virtual void CopyAfter(const Worksheet& other) = 0;

    virtual CellValue Value(std::string_view address) const = 0;
    virtual void SetValue(std::string_view address, const CellValue& value) = 0;
    /// The block must have the shape of the area.
    virtual void SetValues(std::string_view area, CellBlock<float> values) = 0;
    virtual void SetValues(std::string_view area, CellBlock<std::int32_t> values) = 0;
    /// The text begins with "=".
    virtual void SetFormula(std::string_view address, std::string_view formula) = 0;
    /// Copies values, formulas (relative references move along), formats and conditional
    /// formats onto an area of the same shape.
    virtual void CopyRange(std::string_view source, std::string_view destination) = 0;
    /// Sets one edge of every area of the address on its own.
    virtual void SetBorder(std::string_view areas, BorderEdge edge, LineStyle style) = 0;
    virtual SheetBox Box(std::string_view area) const = 0;
    virtual void SetRowHeight(int firstRow, int lastRow, double height_pt) = 0;
    /// Has a new page begin with a row when the sheet is printed.
    virtual void AddPageBreak(int row) = 0;
    /// Has what is printed of the sheet reach down to the end of an area. Where the template does
    /// not say what is printed of it, that is the area.
    virtual void ExtendPrintArea(std::string_view area) = 0;
    /// The chart lives as long as the workbook.
    virtual Chart& AddChart(ChartType type, const SheetBox& box) = 0;
};

class SpreadsheetApplication;

/// Something that a template has beside cells with their values, formulas and formats.
struct TemplateFeature {
    /// "a pivot table"
    std::string Name;
    /// What to do where the sheet is to be copied, because copies cannot have it; empty when they
    /// can.
    std::string Remedy{};
};

/// A tab of a template.
struct TemplateSheet {
    std::string Name;
    /// Sheets of other kinds, as those of a single chart, are kept and cannot be filled.
    bool IsWorksheet = true;
    std::vector<TemplateFeature> Features{};
};

struct TemplateContents {
    /// In the order of their tabs.
    std::vector<TemplateSheet> Sheets;
    /// Of the workbook as a whole.
    std::vector<TemplateFeature> Features;
};

/// A workbook that is open in its application, which owns it. References to it and to its sheets
/// and charts are valid until it is closed. All operations throw SpreadsheetError.
class Workbook {
  public:
    virtual ~Workbook() = default;

    virtual SpreadsheetApplication& Application() = 0;
    virtual int WorksheetCount() const = 0;
    /// By position, from 1.
    virtual Worksheet& Sheet(int position) = 0;
    virtual Worksheet& Sheet(std::string_view name) = 0;
    /// The name, or where a sheet has it already, one with a number behind it: "Zero - Ch1 (2)".
    virtual std::string FreeName(std::string_view name) const = 0;
    virtual TemplateContents Contents() const = 0;
    /// Stores the workbook under a path of the program ("C:\ACUs\…"), the whole of it or nothing.
    /// A file that it has not written itself is not replaced: " (2)", … then stands before the
    /// extension, as FullName tells.
    virtual void SaveAs(std::string_view path, FileFormat format) = 0;
    /// The path under which the workbook is stored; empty while it is stored nowhere.
    virtual std::string FullName() const = 0;
    /// Forgets the workbook without saving it again; the object is gone afterwards.
    virtual void Close() = 0;
};

/// All operations throw SpreadsheetError.
class SpreadsheetApplication {
  public:
    virtual ~SpreadsheetApplication() = default;

    /// A new workbook made from a template ("….xltx", "….xlt").
    virtual Workbook& Add(std::string_view templatePath) = 0;
    /// The same from a template's bytes. The text of an error says what is wrong with them; an
    /// UnsupportedTemplate also what to do. @param name of the file that they are from
    virtual Workbook& Open(std::string content, std::string_view name) = 0;
    virtual int WorkbookCount() const = 0;
    virtual void Quit() = 0;
    virtual void SetVisible(bool visible) = 0;
    virtual void SetWindowState(WindowState state) = 0;
    virtual void SetScreenUpdating(bool updating) = 0;
    virtual void SetCalculation(Calculation calculation) = 0;
    virtual std::string Version() const = 0;
};

/// Starts the spreadsheet application ("Excel.Application").
using SpreadsheetLauncher = std::function<std::unique_ptr<SpreadsheetApplication>()>;

/// The file behind a template's name: that file if it exists; for "X.xlt", else "X.xltx".
std::optional<std::string> FindTemplateFile(const Drive& files, std::string_view path);

} // namespace ombrix
