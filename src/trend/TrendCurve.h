#pragma once

#include "trend/TrendData.h"

#include <cstddef>
#include <vector>

namespace ombrix {

/// A point of a line to be drawn; the line is interrupted where the value is no number.
struct CurvePoint {
    double Time_s = 0.0;
    float Value = 0.0F;
};

/// The stretch of the time that is shown, in columns of pixels.
struct CurveWindow {
    double From_s = 0.0;
    double To_s = 1.0;
    int Columns = 1;
};

/// Where the columns of a window begin among the samples of a group; the last entry is the end
/// of the last column.
std::vector<std::size_t> ColumnBounds(const TrendTimes& times, const CurveWindow& window);

/// The line that shows a trace in a window as all of its samples would, in at most a handful of
/// points a column: every peak is there. It begins and ends with the samples beside the window.
/// @param bounds of the trace's group @param end_s how far a value that is held reaches
std::vector<CurvePoint> CurveOf(const TrendGroup& group, const TrendTrace& trace,
                                const std::vector<std::size_t>& bounds, double end_s);

/// The least and the largest of the samples that CurveOf draws between the bounds.
TrendRange RangeOf(const TrendTrace& trace, const std::vector<std::size_t>& bounds);

} // namespace ombrix
