#include "calibration/report/ACUInformation.h"

#include "board/eprom/EpromImage.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/OleDate.h"
#include "platform/text/Text.h"
#include "reports/layout/InformationLayout.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

#include <cmath>
#include <vector>

namespace ombrix {

namespace {

namespace UnitLayout = InformationLayout::Unit;
namespace EpromLayout = InformationLayout::Eprom;

/// The sheet of the unit. EPROMs may hold any bits: what is no date or number stands as text,
/// since an error in a cell would say nothing.
class InformationSheet {
  public:
    explicit InformationSheet(Worksheet& sheet) : m_Sheet(sheet) {}

    template <class T>
    void Set(const std::string& address, const T& value) {
        m_Sheet.SetValue(address, value);
    }
    void Set(const std::string& address, float value) {
        if (std::isfinite(value))
            m_Sheet.SetValue(address, value);
        else
            m_Sheet.SetValue(address, std::string("(no number)"));
    }
    void Set(const std::string& address, OleDate date) {
        if (date == OleDate())
            m_Sheet.SetValue(address, std::string("Never"));
        else if (date.ToCivil() && date.Days() > 0.0)
            m_Sheet.SetValue(address, date);
        else
            m_Sheet.SetValue(address, IsoText(date));
    }
    void SetYesNo(const std::string& address, bool yes) {
        m_Sheet.SetValue(address, std::string(yes ? "Yes" : "No"));
    }

  private:
    Worksheet& m_Sheet;
};

/// Writes values down a column, one below the other.
class FieldColumn {
  public:
    FieldColumn(InformationSheet& sheet, char column, int row)
        : m_Sheet(sheet), m_Column(column), m_Row(row) {}

    template <class T>
    FieldColumn& Set(const T& value) {
        m_Sheet.Set(Next(), value);
        return *this;
    }
    FieldColumn& SetYesNo(bool yes) {
        m_Sheet.SetYesNo(Next(), yes);
        return *this;
    }

  private:
    std::string Next() { return Cell(m_Column, m_Row++); }

    InformationSheet& m_Sheet;
    char m_Column;
    int m_Row;
};

void WriteIdentity(InformationSheet& sheet, const AIB& board, OleDate now) {
    FieldColumn(sheet, UnitLayout::MiddleValues, UnitLayout::ReportRow)
        .Set(std::string("Ombrix"))
        .Set(now)
        .Set(now);
    FieldColumn(sheet, UnitLayout::LeftValues, UnitLayout::BoardRow)
        .Set(board.BusType())
        .Set(board.BusTypeText())
        .Set(board.HWVersion())
        .Set(board.DevType())
        .Set(board.DevSerialNum())
        .Set(Trimmed(board.Vendor()))
        .Set(Trimmed(board.Module()))
        .Set(board.ConfigBits());
}

void WriteLastCalibrations(InformationSheet& sheet, char column, const LastCalibration& system,
                           const LastCalibration& audit, std::int32_t points) {
    const auto write = [&](int row, const LastCalibration& last) {
        FieldColumn(sheet, column, row)
            .SetYesNo(last.Passed)
            .Set(last.CalDate)
            .Set(Trimmed(last.User));
    };
    write(UnitLayout::SystemRow, system);
    write(UnitLayout::AuditRow, audit);
    sheet.Set(Cell(column, UnitLayout::PointsRow), points);
}

void WriteVelocity(InformationSheet& sheet, const ACURecord& record) {
    FieldColumn(sheet, UnitLayout::MiddleValues, UnitLayout::HeaderRow)
        .Set(record.DataVersion)
        .SetYesNo(record.HasSolenoidValves != 0);
    WriteLastCalibrations(sheet, UnitLayout::LeftValues, record.LastCalDone_Velocity_System(),
                          record.LastCalDone_Velocity_Audit(), record.CalibrationPoints);
    for (std::size_t channel = 0; channel < UnitLayout::VelocityRows.size(); ++channel) {
        const ACUChannelCal& table = record.VelocityCal.at(channel);
        const int fullScaleRow = UnitLayout::VelocityRows.at(channel);
        sheet.Set(Cell(UnitLayout::FullScale, fullScaleRow), record.ChannelCapacity.at(channel));
        int row = fullScaleRow + 2;
        for (std::size_t segment = 0; segment < UnitLayout::Segments; ++segment) {
            sheet.Set(Cell(UnitLayout::Slope, row), table.M.at(segment));
            sheet.Set(Cell(UnitLayout::Intercept, row), table.C.at(segment));
            sheet.Set(Cell(UnitLayout::Demand, row), table.Demand.at(segment));
            ++row;
        }
    }
}

void WriteSensor(InformationSheet& sheet, const ACURecord& record) {
    FieldColumn(sheet, UnitLayout::RightValues, UnitLayout::SensorRow + 1)
        .Set(record.MaxPressure)
        .Set(record.PressureScale)
        .Set(record.PressureOffset)
        .Set(record.PressureSpan)
        .Set(record.PressureZero);
    for (const char column : UnitLayout::Bases) {
        sheet.SetYesNo(Cell(column, UnitLayout::CalibratedRow), record.BaseDiameter != 0.0F);
        for (int k = 0; k < UnitLayout::Coefficients && record.BaseDiameter > 0.0F; ++k)
            sheet.Set(Cell(column, UnitLayout::CoefficientRow + k),
                      record.PressureCoeff.at(static_cast<std::size_t>(k)));
    }
}

void WritePressure(InformationSheet& sheet, const ACURecord& record) {
    constexpr std::int32_t pressurePoints = 4;
    WriteLastCalibrations(sheet, UnitLayout::MiddleValues, record.LastCalDone_Pressure_System(),
                          record.LastCalDone_Pressure_Audit(), pressurePoints);
    sheet.SetYesNo(Cell(UnitLayout::RightValues, UnitLayout::SensorRow), record.PressurePresent);
    if (record.PressurePresent)
        WriteSensor(sheet, record);
}

/// The first words differ between boards.
void NameFirstWords(Worksheet& sheet, const AIB& board) {
    const auto name = [&sheet](const char* first, const char* second, const char* third) {
        int row = EpromLayout::FirstRow;
        for (const char* text : {first, second, third})
            sheet.SetValue(CellAddress(EpromLayout::Column(0, EpromLayout::Name), row++),
                           std::string(text));
    };
    if (board.IsUsb())
        name("Serial Number (0)", "Serial Number (1)", "EPROM Data Version (USB)");
    else if (board.IsFireWire())
        name("EPROM Data Version (FireWire)", "-", "-");
}

/// @return how many words could not be read; their cells stay empty
int DumpEPROM(Worksheet& sheet, AIB& board) {
    constexpr int groups = EpromImage::WordCount / EpromLayout::WordsPerGroup;
    int unread = 0;
    std::int32_t address = 0;
    for (int group = 0; group < groups; ++group) {
        std::vector<std::optional<std::int32_t>> words;
        for (int place = 0; place < EpromLayout::WordsPerGroup; ++place) {
            std::int32_t word = 0;
            const bool read = board.ReadEPROMLng(address, word) == Status::NoError;
            words.push_back(read ? std::optional(word) : std::nullopt);
            unread += read ? 0 : 1;
        }
        SetColumn(sheet, ColumnLetters(EpromLayout::Column(group, EpromLayout::Value)),
                  EpromLayout::FirstRow, words);
    }
    return unread;
}

} // namespace

InformationReport OutputACUData(const ReportTools& tools) {
    Station& station = tools.TheStation;
    AIB& board = *station.CurrentAIB;
    const ACU unit = station.Calibration().Unit();
    int unread = 0;
    OpenedWorkbook opened =
        OpenFilled(tools, "Starting Excel and creating ACU Audit Spreadsheet",
                   InformationLayout::Template, [&](Workbook& book) {
                       InformationSheet sheet(book.Sheet(InformationLayout::UnitSheet));
                       WriteIdentity(sheet, board, station.World.Time.Now());
                       if (unit.Record.IsRead()) {
                           WriteVelocity(sheet, unit.Record);
                           WritePressure(sheet, unit.Record);
                       }
                       Worksheet& eprom = book.Sheet(InformationLayout::EpromSheet);
                       NameFirstWords(eprom, board);
                       unread = DumpEPROM(eprom, board);
                   });
    if (!opened)
        return {};
    std::string lack;
    if (unread > 0) {
        lack = fmt::format("{} of the {} words of the EPROM could not be read. Their cells{} are "
                           "empty.",
                           unread, EpromImage::WordCount,
                           unit.Record.IsRead() ? "" : ", and those of the ACU's record,");
        TellOperator(station.World, lack, MessageIcon::Warning);
    }
    return {SaveCalibrationExcelWorkbook(
                tools, opened, "ACU_Information_" + unit.SerialNumberStr() + ".xls", false),
            lack};
}

} // namespace ombrix
