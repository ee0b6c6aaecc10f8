#pragma once

#include "reports/layout/ReportTemplate.h"

#include <array>

/// Where things stand in the report of a health check. What fills the report reads this, and what
/// makes its template.
namespace ombrix::HealthCheckLayout {

inline constexpr const char* OverviewSheet = "Overview";
inline constexpr const char* GraphSheet = "All Graphs";
/// Copied for every sequence.
inline constexpr const char* DataSheet = "DataTemplate";

inline constexpr std::array<const char*, 3> Sheets = {OverviewSheet, GraphSheet, DataSheet};
inline constexpr ReportTemplate Template{.File = "ACUHealthCheck.xltx",
                                         .Report = "the health check",
                                         .Sheets = Sheets,
                                         .CopiedSheet = DataSheet,
                                         .StoredAs = ".xlsx"};

/// The overview: the unit, then a block for each sequence: heads, steps, chart.
namespace Overview {
inline constexpr const char* Serial = "C2";
inline constexpr const char* MFCNumber = "C3";
inline constexpr const char* Date = "C5";
/// How the check ended; another text than Completed makes its verdict INCOMPLETE.
inline constexpr const char* Outcome = "C6";
inline constexpr const char* Completed = "Completed";

/// The heads of the first block, which those of the others are copies of.
inline constexpr int HeadRow = 7;
inline constexpr int HeadRows = 3;
inline constexpr const char* PressureHead = "N7";

inline constexpr char Step = 'B';
inline constexpr char Ch1Demand = 'C';
inline constexpr char Ch2Demand = 'D';
inline constexpr char Duration = 'E';
inline constexpr char Ch1Min = 'F';
inline constexpr char Ch1Max = 'G';
inline constexpr char Ch2Min = 'H';
inline constexpr char Ch2Max = 'I';
inline constexpr char Ch1End = 'J';
inline constexpr char Ch2End = 'K';
inline constexpr char Description = 'L';
/// Worked out by the sheet.
inline constexpr char Ch1Evaluation = 'N';
inline constexpr char Ch2Evaluation = 'O';
/// By how much of full scale an end value may differ from its demand, and full scale in bits. A
/// site's template may have others.
inline constexpr const char* Limit = "O2";
inline constexpr double UsualLimit_share = 0.01;
inline constexpr const char* FullScale = "O3";
inline constexpr double UsualFullScale_bits = 65535.0;
/// Stands where nothing was measured, or cannot be judged.
inline constexpr const char* NotEvaluated = "-";
/// The end value is the mean of so much of a step's end. Steps that are no longer are not judged:
/// it would be their way to the demand that is.
inline constexpr int EndWindow_s = 2;
/// Columns that stand together in a box.
inline constexpr const char* Groups[] = {"B:B", "C:E", "F:G", "H:I", "J:K", "L:L", "N:O"};

/// A chart lies over the columns of Step to Description.
inline constexpr int ChartRows = 25;
/// From the first row of a block's chart to the next block.
inline constexpr int NextBlock = 29;
} // namespace Overview

/// The sheet of a sequence: its samples, and its chart.
namespace Data {
inline constexpr int HeadRow = 1;
inline constexpr int FirstRow = 2;
inline constexpr char Time = 'A';
/// By which such a sheet is known.
inline constexpr const char* TimeHead = "Time (s)";
/// Demand and reading of channel 1, then of channel 2: in bits, and as shares of full scale.
inline constexpr char FirstBits = 'B';
inline constexpr char LastBits = 'E';
inline constexpr char FirstShare = 'F';
inline constexpr char LastShare = 'I';
inline constexpr char Pressure = 'J';
inline constexpr const char* ChartColumns = "A:A,F:J";
inline constexpr const char* ChartTopLeft = "M2";
inline constexpr const char* ChartBottomRight = "AD36";
} // namespace Data

} // namespace ombrix::HealthCheckLayout
