#pragma once

#include "reports/layout/ReportTemplate.h"

#include <array>

/// Where things stand in the sheets of the audits. What fills them reads this, and what makes their
/// templates.
namespace ombrix::AuditSheetLayout {

/// The head of both sheets: a label, a value and what it means in each row.
namespace Head {
inline constexpr int FirstRow = 5;
inline constexpr const char* Date = "D5";
inline constexpr const char* User = "D6";
inline constexpr const char* SerialNumber = "D7";
inline constexpr std::array<const char*, 2> FullScales = {"D8", "D9"};
inline constexpr const char* CalibrationPoints = "D10";
/// In mBar; the pressure audit's alone.
inline constexpr const char* PressureLimit = "D11";
} // namespace Head

/// The velocity audit's sheet.
namespace PV16 {
/// As it is asked for; the template itself ends in ".xltx".
inline constexpr ReportTemplate Template{
    .File = "PV16_ACUAudit_Velocity.xlt", .Report = "the velocity audit sheet", .SheetsByPlace = 1};

inline constexpr int Points = 10;
inline constexpr int TitleRow = 14;
/// The letters that the criteria name the columns by.
inline constexpr int LetterRow = 15;
inline constexpr int HeadRow = 16;
inline constexpr int FirstPointRow = 17;
inline constexpr int LastPointRow = FirstPointRow + Points - 1;
inline constexpr int CountHeadRow = 28;

inline constexpr int Steps = 2;
inline constexpr int StepTitleRow = 32;
inline constexpr int StepHeadRow = 33;
inline constexpr int FirstStepRow = 34;
inline constexpr int LastStepRow = FirstStepRow + Steps - 1;

inline constexpr char NumberColumn = 'B';
/// Percentage of full scale of a point; which point a step goes to.
inline constexpr char PointColumn = 'C';

/// The columns of a channel, for points and steps.
struct ChannelColumns {
    char Expected;
    char Recorded;
    char Difference;
    char Percent;
    char Criterion;
    char Result;
    /// As the criteria name them.
    char PercentName;
    char DifferenceName;
    /// The cell with the channel's full scale, for formulas.
    const char* FullScale;
};
inline constexpr std::array<ChannelColumns, 2> Channels = {
    {{'D', 'E', 'F', 'G', 'H', 'I', 'D', 'C', "$D$8"},
     {'J', 'K', 'L', 'M', 'N', 'O', 'J', 'I', "$D$9"}}};
} // namespace PV16

/// The pressure audit's sheet.
namespace PV17 {
inline constexpr ReportTemplate Template{
    .File = "PV17_ACUAudit_Pressure.xlt", .Report = "the pressure audit sheet", .SheetsByPlace = 1};

inline constexpr int Points = 5;
inline constexpr int HeadRow = 17;
inline constexpr int FirstPointRow = 19;
inline constexpr int LastPointRow = FirstPointRow + Points - 1;

/// The columns of one of three readings: the flow that was set; what is entered by hand.
struct ReadingColumns {
    char Flow;
    char Recorded;
    char Result;
};
inline constexpr std::array<ReadingColumns, 3> Readings = {
    {{'E', 'F', 'G'}, {'H', 'I', 'J'}, {'K', 'L', 'M'}}};
} // namespace PV17

} // namespace ombrix::AuditSheetLayout
