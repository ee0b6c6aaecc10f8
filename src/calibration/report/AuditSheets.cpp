#include "calibration/report/AuditSheets.h"

#include "calibration/judge/Judgement.h"
#include "calibration/report/SaveFolder.h"
#include "platform/text/OleDate.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"
#include "reports/layout/AuditSheetLayout.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

namespace Head = AuditSheetLayout::Head;
namespace PV16 = AuditSheetLayout::PV16;
namespace PV17 = AuditSheetLayout::PV17;

constexpr const char* Opening = "Starting Excel and creating ACU Audit Spreadsheet";

/// What the audit sheets begin with.
void WriteHeader(Worksheet& sheet, OleDate date, const ACU& unit, std::int32_t points) {
    sheet.SetValue(Head::Date, date);
    sheet.SetValue(Head::User, std::string(CalibrationUser));
    sheet.SetValue(Head::SerialNumber, unit.SerialNumberStr());
    sheet.SetValue(Head::FullScales[0], unit.Record.ChannelCapacity[0]);
    sheet.SetValue(Head::FullScales[1], unit.Record.ChannelCapacity[1]);
    sheet.SetValue(Head::CalibrationPoints, points);
}

/// Name under which an operator finds a sheet that he saves himself.
std::string BareName(Station& station, const ACU& unit, const char* prefix, const char* kind) {
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

/// Low demands are judged by their difference as a share of full scale, the others as one of the
/// reading: near zero that would be too strict.
void WriteCriterion(Worksheet& sheet, const PV16::ChannelColumns& columns, std::int32_t row,
                    std::int32_t percent) {
    const std::string tolerance = GeneralText(AcceptanceLimits::LowError_share);
    const std::string recorded = Cell(columns.Recorded, row);
    if (percent > AcceptanceLimits::LowPoint_percent) {
        sheet.SetFormula(Cell(columns.Criterion, row),
                         fmt::format("=\"{}<1\"", columns.PercentName));
        sheet.SetFormula(Cell(columns.Result, row),
                         fmt::format("=IF({}=\"\",\"-\", IF({}<1, \"Pass\",\"Fail\"))", recorded,
                                     Cell(columns.Percent, row)));
        return;
    }
    sheet.SetFormula(
        Cell(columns.Criterion, row),
        fmt::format("=\"|{}|<\" & {}*{}", columns.DifferenceName, tolerance, columns.FullScale));
    sheet.SetFormula(Cell(columns.Result, row),
                     fmt::format("=IF({}=\"\",\"-\", IF({}<({}*{}), \"Pass\",\"Fail\"))", recorded,
                                 Cell(columns.Difference, row), columns.FullScale, tolerance));
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

void WritePoints(Worksheet& sheet, const PV16::ChannelColumns& columns,
                 const ChannelMeasurement& measured) {
    for (std::size_t point = 0; point < MaxCalibrationPoints; ++point) {
        const auto number = static_cast<std::int32_t>(point);
        const std::int32_t row = PV16::FirstPointRow + number;
        const std::int32_t percent = CalPointPrecentage(number, CalibrationKind::Audit);
        sheet.SetValue(Cell(PV16::PointColumn, row), percent);
        if (measured.Rising.empty())
            continue;
        WriteRecorded(sheet, Cell(columns.Recorded, row), measured, point);
        WriteCriterion(sheet, columns, row, percent);
    }
}

void WriteSteps(Worksheet& sheet, const PV16::ChannelColumns& columns,
                const ChannelMeasurement& measured) {
    std::int32_t row = PV16::FirstStepRow;
    for (const StepMeasurement& step : measured.Steps) {
        sheet.SetValue(Cell(PV16::PointColumn, row), step.Point + 1);
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
    OpenedWorkbook opened = OpenFilled(tools, Opening, PV16::Template, [&](Workbook& book) {
        Worksheet& sheet = book.Sheet(1);
        WriteHeader(sheet, date, unit, unit.Record.CalibrationPoints);
        for (std::size_t channel = 0; channel < AirChannels; ++channel) {
            WritePoints(sheet, PV16::Channels.at(channel), measured.Channels.at(channel));
            WriteSteps(sheet, PV16::Channels.at(channel), measured.Channels.at(channel));
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
                                   const std::array<float, PressurePointCount>& flows_ml_m,
                                   bool autoSave) {
    Station& station = tools.TheStation;
    OpenedWorkbook opened = OpenFilled(tools, Opening, PV17::Template, [&](Workbook& book) {
        constexpr double passLimit_mBar = 0.3;
        Worksheet& sheet = book.Sheet(1);
        WriteHeader(sheet, date, unit, PV17::Points);
        sheet.SetValue(Head::PressureLimit, passLimit_mBar);
        for (const PV17::ReadingColumns& columns : PV17::Readings)
            sheet.SetValues(
                fmt::format("{0}{1}:{0}{2}", columns.Flow, PV17::FirstPointRow, PV17::LastPointRow),
                CellBlock<float>{flows_ml_m, 1});
    });
    if (!opened)
        return {};
    const std::string name = autoSave ? AutoSaveName(station, unit, "ACU_SU_", "_Audit_PV17.xls")
                                      : BareName(station, unit, "PV17", "PressureAudit");
    return SaveCalibrationExcelWorkbook(tools, opened, name, autoSave);
}

} // namespace ombrix
