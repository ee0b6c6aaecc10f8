#pragma once

#include "reports/layout/ReportTemplate.h"

#include <array>

/// Where things stand in the workbook of a unit's record and EPROM. What fills it reads this, and
/// what makes its template.
namespace ombrix::InformationLayout {

/// Sheets are found by their place.
inline constexpr int UnitSheet = 1;
inline constexpr int EpromSheet = 2;
inline constexpr ReportTemplate Template{.File = "QX_ACU_Calibraiton_Info.xlt",
                                         .Report = "the ACU information workbook",
                                         .SheetsByPlace = EpromSheet};

/// The unit's sheet. Fields stand below one another, each beside its label.
namespace Unit {
inline constexpr char LeftLabels = 'B';
inline constexpr char LeftValues = 'C';
inline constexpr char MiddleLabels = 'H';
inline constexpr char MiddleValues = 'I';
inline constexpr char RightLabels = 'K';
inline constexpr char RightValues = 'L';

/// On the left: the board.
inline constexpr int BoardRow = 4;
/// In the middle: the report itself, and what the unit is.
inline constexpr int ReportRow = 4;
inline constexpr int HeaderRow = 10;
/// Velocity on the left, pressure in the middle.
inline constexpr int SystemRow = 14;
inline constexpr int AuditRow = 17;
inline constexpr int PointsRow = 20;
/// On the right: the pressure sensor.
inline constexpr int SensorRow = 14;

/// The velocity tables: the row of a channel's full scale; heads and segments follow.
inline constexpr std::array<int, 2> VelocityRows = {22, 35};
inline constexpr int Segments = 9;
inline constexpr char Segment = 'B';
inline constexpr char Slope = 'C';
inline constexpr char Intercept = 'D';
inline constexpr char Demand = 'E';
inline constexpr char FullScale = 'D';

/// The pressure table: a column for each base.
inline constexpr std::array<char, 3> Bases = {'J', 'K', 'L'};
inline constexpr int BaseHeadRow = 23;
inline constexpr int CalibratedRow = 24;
inline constexpr int CoefficientHeadRow = 26;
inline constexpr int CoefficientRow = 27;
inline constexpr int Coefficients = 3;
} // namespace Unit

/// The EPROM's sheet: its words in groups beside one another.
namespace Eprom {
inline constexpr int HeadRow = 4;
inline constexpr int FirstRow = 5;
inline constexpr int WordsPerGroup = 128;
inline constexpr int ColumnsPerGroup = 6;

/// Columns of a group.
enum Part : int { Address, Name, Kind, Hex, Value };

/// From 0, as groups are
constexpr int Column(int group, Part part) {
    return 1 + group * ColumnsPerGroup + part;
}
} // namespace Eprom

} // namespace ombrix::InformationLayout
