#pragma once

#include "reports/layout/ReportTemplate.h"

#include <array>
#include <cstddef>

/// Where things stand in the report of a velocity run. What fills the report reads this, and what
/// makes its template.
namespace ombrix::VelocityReportLayout {

inline constexpr const char* ReportSheet = "Report";
inline constexpr const char* ChartSheet = "Charts";
inline constexpr const char* ChartDataSheet = "Chart Data";
/// Of channel 1 and 2.
inline constexpr std::array<const char*, 2> TraceSheets = {"Traces Ch1", "Traces Ch2"};

inline constexpr std::array<const char*, 5> Sheets = {ReportSheet, ChartSheet, ChartDataSheet,
                                                      TraceSheets[0], TraceSheets[1]};
inline constexpr ReportTemplate Template{"QX_ACU_Calibration.xlt", "the velocity calibration",
                                         Sheets};

inline constexpr int Points = 10;
inline constexpr int Segments = Points - 1;
inline constexpr int Steps = 2;

/// The head of the report: the cells of its values.
namespace Head {
inline constexpr const char* Kind = "D3";
inline constexpr const char* Date = "D4";
inline constexpr const char* User = "D5";
inline constexpr const char* CalibrationPoints = "D6";
inline constexpr const char* SolenoidValves = "D7";
inline constexpr const char* SerialNumber = "J3";
inline constexpr const char* MFCNumber = "J4";
inline constexpr std::array<const char*, 2> FullScales = {"J5", "J6"};
inline constexpr const char* Verdict = "M3";
/// Below the verdict: what was measured and did not reach the unit.
inline constexpr const char* NotStored = "M6";
} // namespace Head

/// The rows of a channel's part.
struct ChannelRows {
    /// The channel's name, and what became of it.
    int Title;
    int Heads;
    int Units;
    int FirstPoint;
    int BestFit;
    int StepNote;
    int FirstStep;
};

/// @param channel from 0
constexpr ChannelRows RowsOf(std::size_t channel) {
    constexpr int firstTitle = 10;
    constexpr int rowsPerChannel = 19;
    const int title = firstTitle + static_cast<int>(channel) * rowsPerChannel;
    const int firstPoint = title + 3;
    const int bestFit = firstPoint + Points;
    return {title, title + 1, title + 2, firstPoint, bestFit, bestFit + 1, bestFit + 2};
}

/// The columns of a channel's part. Steps stand in those of the points, with their reading as the
/// rising one and its difference to the demand.
namespace Columns {
inline constexpr const char* Point = "B";
inline constexpr const char* DemandBits = "C";
inline constexpr const char* DemandFlow = "D";
inline constexpr const char* RisingBits = "E";
inline constexpr const char* RisingFlow = "F";
inline constexpr const char* FallingBits = "G";
inline constexpr const char* FallingFlow = "H";
inline constexpr const char* Difference = "I";
inline constexpr const char* RisingDeviation = "J";
inline constexpr const char* FallingDeviation = "K";
inline constexpr const char* Segment = "M";
inline constexpr const char* Slope = "N";
inline constexpr const char* Intercept = "O";

inline constexpr const char* State = "D";
inline constexpr const char* FitSlope = "D";
inline constexpr const char* FitIntercept = "F";
} // namespace Columns

/// A trace has two columns, the time since the demand was set and the reading; the traces stand
/// beside one another: the rising sweep, the falling one, the steps.
namespace Traces {
inline constexpr int HeadRow = 1;
inline constexpr int FirstRow = 2;
inline constexpr int ColumnsPerTrace = 2;
inline constexpr int FirstStep = 2 * Points;

/// Column of a trace's times, from 0. @param trace from 0
constexpr int TimeColumn(int trace) {
    return trace * ColumnsPerTrace;
}
} // namespace Traces

/// What the charts are drawn from: a set of columns for each channel.
namespace ChartData {
inline constexpr int HeadRow = 1;
inline constexpr int FirstRow = 2;

enum Series : int {
    Demand,
    Expected,
    Rising,
    Falling,
    UpperLimit,
    RisingDeviation,
    LowerLimit,
    FallingDeviation,
    /// An audit's alone.
    MeanDeviation,
    SeriesCount
};

/// Column of a series, from 0. @param channel from 0
constexpr int Column(std::size_t channel, Series series) {
    return static_cast<int>(channel) * SeriesCount + series;
}
} // namespace ChartData

/// Where the charts of a channel lie, from top to bottom.
struct ChartPlaces {
    const char* Readings;
    const char* Deviations;
    std::array<const char*, Steps> OfSteps;
};
inline constexpr std::array<ChartPlaces, 2> Charts = {
    {{"B3:I19", "B20:I36", {"B37:I53", "B54:I70"}}, {"K3:R19", "K20:R36", {"K37:R53", "K54:R70"}}}};

} // namespace ombrix::VelocityReportLayout
