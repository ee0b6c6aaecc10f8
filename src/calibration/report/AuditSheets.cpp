#include "calibration/report/AuditSheets.h"

#include "calibration/air/AirUnits.h"
#include "calibration/report/SaveFolder.h"
#include "platform/text/OleDate.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

constexpr const char* Opening = "Starting Excel and creating ACU Audit Spreadsheet";
constexpr std::int32_t FirstPointRow_PV16 = 17;
constexpr std::int32_t FirstStepRow_PV16 = 34;
constexpr std::int32_t FirstPointRow_PV17 = 19;

/// What the audit sheets begin with.
void WriteHeader(Worksheet& sheet, OleDate date, const ACU& unit,
                 std::int32_t points) {
    sheet.SetValue("D5", date);
    sheet.SetValue("D6", std::string(CalibrationUser));
    sheet.SetValue("D7", unit.SerialNumberStr());
    sheet.SetValue("D8", unit.Record.ChannelCapacity[0]);
    sheet.SetValue("D9", unit.Record.ChannelCapacity[1]);
    sheet.SetValue("D10", points);
}

/// Name under which an operator finds a sheet that he saves himself.
std::string BareName(Station& station, const ACU& unit, const char* prefix,
                     const char* kind) {
    constexpr std::size_t fiveOfSix = 1;
    const std::string date = DateText(station.World.Time.Now(), "yymmdd").substr(fiveOfSix);
    return fmt::format("{}_{}_{}_{}_XX.xls", prefix, unit.SerialNumberStr(), kind, date);
}

constexpr std::pair<const char*, const char*> Texts_PV16[] = {
    {"B2", "SUGGESTED CALIBRATION METHOD FOR AN AERATION CONTROL UNIT ‘AUDIT ‘ CALIBRATION"},
    {"C5", "Date:"},
    {"C6", "User:"},
    {"C7", "Unit Serial Number:"},
    {"C8", "Channel 1 Capacity:"},
    {"C9", "Channel 2 Capacity:"},
    {"C10", "Calibration Points:"},
    {"F5", "Date of audit calibration"},
    {"F6", "User who carried out the audit calibration"},
    {"F7", "Serial Number of the Aeration Control Unit being calibrated"},
    {"F8", "Capacity of Channel 1 (ml/min)"},
    {"F9", "Capacity of Channel 2 (ml/min)"},
    {"F10", "Number of audit calibration points"},
    {"D13", "Calibration Results"},
    {"B16", "Point"},
    {"C16", "Demand, % of Full Scale"},
    {"D16", "Expected Value, ml/min"},
    {"J16", "Expected Value, ml/min"},
    {"E16", "Recorded Value, ml/min"},
    {"K16", "Recorded Value, ml/min"},
    {"F16", "Difference, ml/min"},
    {"L16", "Difference, ml/min"},
    {"G16", "% Difference"},
    {"M16", "% Difference"},
    {"H16", "Pass Criteria"},
    {"N16", "Pass Criteria"},
    {"I16", "Result, Pass/Fail"},
    {"O16", "Result, Pass/Fail"},
    {"B28", "Pass"},
    {"C28", "Fail"},
    {"D28", "Channel"},
    {"N28", "Version:"}};

void LoacaliseExcelDocument_PV16(Worksheet& sheet) {
    for (const auto& [address, text] : Texts_PV16)
        sheet.SetValue(address, std::string(text));
}

/// Where a channel stands on the velocity audit's sheet.
struct ChannelColumns {
    char Expected;
    char Recorded;
    char Difference;
    char Percent;
    char Criterion;
    char Result;
    /// Letters of the criteria's texts, and the cell with the channel's full scale.
    const char* PercentName;
    const char* DifferenceName;
    const char* Capacity;
};
constexpr std::array<ChannelColumns, AirChannels> Columns_PV16 = {
    {{'D', 'E', 'F', 'G', 'H', 'I', "D", "C", "$D$8"},
     {'J', 'K', 'L', 'M', 'N', 'O', "J", "I", "$D$9"}}};

/// Low demands are judged by their difference from full scale, the others by that from the
/// demand: near zero a percentage of the demand would be too strict.
void WriteCriterion(Worksheet& sheet, const ChannelColumns& columns, std::int32_t row,
                    std::int32_t percent) {
    constexpr std::int32_t highestLowDemand = 10;
    const std::string tolerance = GeneralText(0.001F);
    const std::string recorded = Cell(columns.Recorded, row);
    if (percent > highestLowDemand) {
        sheet.SetFormula(Cell(columns.Criterion, row),
                         fmt::format("=\"{}<1\"", columns.PercentName));
        sheet.SetFormula(Cell(columns.Result, row),
                         fmt::format("=IF({}=\"\",\"-\", IF({}<1, \"Pass\",\"Fail\"))", recorded,
                                     Cell(columns.Percent, row)));
        return;
    }
    sheet.SetFormula(
        Cell(columns.Criterion, row),
        fmt::format("=\"|{}|<\" & {}*{}", columns.DifferenceName, tolerance, columns.Capacity));
    sheet.SetFormula(Cell(columns.Result, row),
                     fmt::format("=IF({}=\"\",\"-\", IF({}<({}*{}), \"Pass\",\"Fail\"))", recorded,
                                 Cell(columns.Difference, row), columns.Capacity, tolerance));
}

/// The mean of both sweeps; nothing where one of them has no reading.
void WriteRecorded(Worksheet& sheet, const std::string& address, const ChannelMeasurement& measured,
                   std::size_t point) {
    if (point >= measured.Rising.size() || point >= measured.Falling.size())
        return;
    const PointReading& rising = measured.Rising[point];
    const PointReading& falling = measured.Falling[point];
    if (!rising.Valid || !falling.Valid)
        return;
    constexpr int decimals = 4;
    const double mean = (static_cast<double>(rising.Flow_ml_m) + falling.Flow_ml_m) / 2.0;
    sheet.SetValue(address, RoundHalfEven(mean, decimals));
}

void WritePoints(Worksheet& sheet, const ChannelColumns& columns,
                 const ChannelMeasurement& measured) {
    for (std::size_t point = 0; point < MaxCalibrationPoints; ++point) {
        const auto number = static_cast<std::int32_t>(point);
        const std::int32_t row = FirstPointRow_PV16 + number;
        const std::int32_t percent = CalPointPrecentage(number, CalibrationKind::Audit);
        sheet.SetValue(Cell('C', row), percent);
        if (measured.Rising.empty())
            continue;
        WriteRecorded(sheet, Cell(columns.Recorded, row), measured, point);
        WriteCriterion(sheet, columns, row, percent);
    }
}

void WriteSteps(Worksheet& sheet, const ChannelColumns& columns,
                const ChannelMeasurement& measured) {
    std::int32_t row = FirstStepRow_PV16;
    for (const StepMeasurement& step : measured.Steps) {
        sheet.SetValue(Cell('C', row), step.Point + 1);
        sheet.SetValue(Cell(columns.Expected, row), step.Demand.Flow_ml_m);
        if (step.Reading.Valid)
            sheet.SetValue(Cell(columns.Recorded, row), step.Reading.Flow_ml_m);
        ++row;
    }
}

} // namespace

StoredReport CreateAuditSheet_PV16(const ReportTools& tools, const ACU& unit, OleDate date,
                                   const VelocityMeasurement& measured, bool autoSave) {
    Station& station = tools.TheStation;
    OpenedWorkbook opened =
        OpenFilled(tools, Opening, "PV16_ACUAudit_Velocity.xlt", [&](Workbook& book) {
            Worksheet& sheet = book.Sheet(1);
            WriteHeader(sheet, date, unit, unit.Record.CalibrationPoints);
            for (std::size_t channel = 0; channel < AirChannels; ++channel) {
                WritePoints(sheet, Columns_PV16.at(channel), measured.Channels.at(channel));
                WriteSteps(sheet, Columns_PV16.at(channel), measured.Channels.at(channel));
            }
            LoacaliseExcelDocument_PV16(sheet);
        });
    if (!opened)
        return {};
    const std::string name = autoSave ? AutoSaveName(station, unit, "ACU_", "_Audit_PV16.xls")
                                      : BareName(station, unit, "PV16", "VelocityAudit");
    return SaveCalibrationExcelWorkbook(tools, opened, name, autoSave);
}

StoredReport CreateAuditSheet_PV17(const ReportTools& tools, const ACU& unit, OleDate date,
                                   const std::array<float, 5>& flows_ml_m, bool autoSave) {
    Station& station = tools.TheStation;
    OpenedWorkbook opened =
        OpenFilled(tools, Opening, "PV17_ACUAudit_Pressure.xlt", [&](Workbook& book) {
            constexpr double passLimit_mBar = 0.3;
            constexpr auto points =
                static_cast<std::int32_t>(std::tuple_size_v<std::array<float, 5>>);
            Worksheet& sheet = book.Sheet(1);
            WriteHeader(sheet, date, unit, points);
            sheet.SetValue("D11", passLimit_mBar);
            for (const char column : {'E', 'H', 'K'})
                sheet.SetValues(fmt::format("{0}{1}:{0}{2}", column, FirstPointRow_PV17,
                                            FirstPointRow_PV17 + points - 1),
                                CellBlock<float>{flows_ml_m, 1});
        });
    if (!opened)
        return {};
    const std::string name = autoSave ? AutoSaveName(station, unit, "ACU_SU_", "_Audit_PV17.xls")
                                      : BareName(station, unit, "PV17", "PressureAudit");
    return SaveCalibrationExcelWorkbook(tools, opened, name, autoSave);
}

} // namespace ombrix
