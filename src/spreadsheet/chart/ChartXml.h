#pragma once

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/sheet/CellStore.h"

#include <string>
#include <string_view>
#include <vector>

namespace ombrix::xlsx {

/// The unit of length of drawings, the English metric unit.
inline constexpr double EmuPerPoint = 12700.0;

/// Position and size of an area of cells.
SheetBox BoxOf(const CellArea& area, const CellStore& cells);

/// A drawing part without a picture.
std::string EmptyDrawing();

/// A drawing part with one more chart, laid over the cells that the box covers.
/// @param chartId the drawing's relationship to the chart part
std::string WithChart(std::string_view drawing, const std::string& partName, const SheetBox& box,
                      const CellStore& cells, const std::string& chartId);

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

/// Where a series finds its name and values, and how its line looks.
struct ChartSeries {
    /// References such as 'Zero - Ch1'!$F$1.
    std::string NameReference;
    std::string Name;
    std::string XReference;
    std::string YReference;
    double Weight_pt = 1.25;
    bool Smooth = true;
    bool Secondary = false;
};

struct ChartAxis {
    /// Nothing for an axis that needs no words.
    std::string Title;
    std::string NumberFormat = "General";
    /// Both ends of the axis and the step of its marks; chosen by the spreadsheet program where
    /// the step is 0.
    double Least = 0.0;
    double Most = 0.0;
    double Step = 0.0;
};

struct ChartDescription {
    bool HasTitle = false;
    std::string Title;
    ChartAxis X;
    ChartAxis Primary;
    ChartAxis Secondary;
    std::vector<ChartSeries> Series;
};

/// The chart part of an XY scatter chart of lines without markers.
std::string ChartXml(const ChartDescription& chart);

} // namespace ombrix::xlsx
