#include "calibration/report/ACUInformation.h"

#include "board/eprom/EpromImage.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/OleDate.h"
#include "platform/text/Text.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

#include <cmath>
#include <vector>

namespace ombrix {

namespace {

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
            m_Sheet.SetValue(address, DateText(date, "yyyy-mm-dd hh:nn:ss"));
    }
    void SetYesNo(const std::string& address, bool yes) {
        m_Sheet.SetValue(address, std::string(yes ? "Yes" : "No"));
    }

  private:
    Worksheet& m_Sheet;
};

void WriteIdentity(InformationSheet& sheet, const AIB& board, OleDate now) {
    sheet.Set("I4", std::string("Ombrix"));
    sheet.Set("I5", now);
    sheet.Set("I6", now);
    sheet.Set("C4", board.BusType());
    sheet.Set("C5", board.BusTypeText());
    sheet.Set("C6", board.HWVersion());
    sheet.Set("C7", board.DevType());
    sheet.Set("C8", board.DevSerialNum());
    sheet.Set("C9", Trimmed(board.Vendor()));
    sheet.Set("C10", Trimmed(board.Module()));
    sheet.Set("C11", board.ConfigBits());
}

void WriteLastCalibration(InformationSheet& sheet, char column, int row,
                          const LastCalibration& last) {
    sheet.SetYesNo(Cell(column, row), last.Passed);
    sheet.Set(Cell(column, row + 1), last.CalDate);
    sheet.Set(Cell(column, row + 2), Trimmed(last.User));
}

void WriteVelocity(InformationSheet& sheet, const ACURecord& record) {
    constexpr int systemRow = 14;
    constexpr int auditRow = 17;
    constexpr std::array<int, 2> capacityRows = {22, 35};
    sheet.Set("I10", record.DataVersion);
    sheet.SetYesNo("I11", record.HasSolenoidValves != 0);
    WriteLastCalibration(sheet, 'C', systemRow, record.LastCalDone_Velocity_System());
    WriteLastCalibration(sheet, 'C', auditRow, record.LastCalDone_Velocity_Audit());
    sheet.Set("C20", record.CalibrationPoints);
    for (std::size_t channel = 0; channel < capacityRows.size(); ++channel) {
        const int capacityRow = capacityRows.at(channel);
        const ACUChannelCal& table = record.VelocityCal.at(channel);
        sheet.Set(Cell('D', capacityRow), record.ChannelCapacity.at(channel));
        int row = capacityRow + 2;
        for (std::size_t segment = 0; segment < MaxCalibrationSegments; ++segment) {
            sheet.Set(Cell('C', row), table.M.at(segment));
            sheet.Set(Cell('D', row), table.C.at(segment));
            sheet.Set(Cell('E', row), table.Demand.at(segment));
            ++row;
        }
    }
}

void WriteSensor(InformationSheet& sheet, const ACURecord& record) {
    sheet.Set("L15", record.MaxPressure);
    sheet.Set("L16", record.PressureScale);
    sheet.Set("L17", record.PressureOffset);
    sheet.Set("L18", record.PressureSpan);
    sheet.Set("L19", record.PressureZero);
    for (const char column : {'J', 'K', 'L'}) {
        sheet.SetYesNo(Cell(column, 24), record.BaseDiameter != 0.0F);
        for (int k = 0; k < 3 && record.BaseDiameter > 0.0F; ++k)
            sheet.Set(Cell(column, 27 + k), record.PressureCoeff.at(static_cast<std::size_t>(k)));
    }
}

void WritePressure(InformationSheet& sheet, const ACURecord& record) {
    constexpr int systemRow = 14;
    constexpr int auditRow = 17;
    constexpr std::int32_t pressurePoints = 4;
    WriteLastCalibration(sheet, 'I', systemRow, record.LastCalDone_Pressure_System());
    WriteLastCalibration(sheet, 'I', auditRow, record.LastCalDone_Pressure_Audit());
    sheet.Set("I20", pressurePoints);
    sheet.SetYesNo("L14", record.PressurePresent);
    if (record.PressurePresent)
        WriteSensor(sheet, record);
}

/// The first words differ between boards.
void NameFirstWords(Worksheet& sheet, const AIB& board) {
    const auto name = [&sheet](const char* first, const char* second, const char* third) {
        sheet.SetValue("C5", std::string(first));
        sheet.SetValue("C6", std::string(second));
        sheet.SetValue("C7", std::string(third));
    };
    if (board.IsUsb())
        name("Serial Number (0)", "Serial Number (1)", "EPROM Data Version (USB)");
    else if (board.IsFireWire())
        name("EPROM Data Version (FireWire)", "-", "-");
}

/// @return how many words could not be read; their cells stay empty
int DumpEPROM(Worksheet& sheet, AIB& board) {
    constexpr std::int32_t bytesPerColumn = 512;
    constexpr int firstRow = 5;
    int unread = 0;
    std::int32_t address = 0;
    for (const char* column : {"F", "L", "R", "X"}) {
        std::vector<std::optional<std::int32_t>> words;
        const std::int32_t end = address + bytesPerColumn;
        while (address < end) {
            std::int32_t word = 0;
            const bool read = board.ReadEPROMLng(address, word) == Status::NoError;
            words.push_back(read ? std::optional(word) : std::nullopt);
            unread += read ? 0 : 1;
        }
        SetColumn(sheet, column, firstRow, words);
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
                   "QX_ACU_Calibraiton_Info.xlt", [&](Workbook& book) {
                       InformationSheet sheet(book.Sheet(1));
                       WriteIdentity(sheet, board, station.World.Time.Now());
                       WriteVelocity(sheet, unit.Record);
                       WritePressure(sheet, unit.Record);
                       NameFirstWords(book.Sheet(2), board);
                       unread = DumpEPROM(book.Sheet(2), board);
                   });
    if (!opened)
        return {};
    std::string lack;
    if (unread > 0) {
        lack = fmt::format("{} of the {} words of the EPROM could not be read. Their cells are "
                           "empty.",
                           unread, EpromImage::WordCount);
        TellOperator(station.World, lack, MessageIcon::Warning);
    }
    return {SaveCalibrationExcelWorkbook(
                tools, opened, "ACU_Information_" + unit.SerialNumberStr() + ".xls", false),
            lack};
}

} // namespace ombrix
