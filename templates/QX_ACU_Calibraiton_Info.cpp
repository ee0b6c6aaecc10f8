// The program writes the values; the sheets here say what they are.
#include "CalibrationTemplates.h"
#include "EPROMWordNames.h"
#include "ReportLook.h"
#include "TemplateBuilder.h"
#include "spreadsheet/Cells.h"
#include "spreadsheet/sheet/CellArea.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

constexpr int Segments = 9;
const PageTexts Pages{"ACU Information", "Ombrix"};

std::string Cell(char column, int row) {
    return fmt::format("{}{}", column, row);
}

/// A run of labels down a column, with the looks of the values beside them.
void LayOutFields(SheetBuilder& sheet, char labels, char values, int row,
                  std::initializer_list<const char*> texts) {
    for (const char* text : texts) {
        sheet.Text(Cell(labels, row), text, Label).Format(Cell(values, row), FieldValue());
        ++row;
    }
}

void LayOutIdentity(SheetBuilder& sheet) {
    sheet.RowHeight(1, 34).Text("B1", "ACU Information", Heading);
    sheet.Text("B3", "Accessory interface board", Section);
    LayOutFields(sheet, 'B', 'C', 4,
                 {"Bus type", "Bus", "Hardware version", "Device type", "Serial number", "Vendor",
                  "Module", "Configuration bits"});
    sheet.Text("H3", "This report", Section);
    LayOutFields(sheet, 'H', 'I', 4, {"Made by", "Date", "Time"});
    sheet.Format("I5", FieldValue("yyyy-mm-dd")).Format("I6", FieldValue("hh:mm:ss"));
    sheet.Text("H9", "ACU", Section);
    LayOutFields(sheet, 'H', 'I', 10, {"EPROM data version", "Solenoid valves"});
}

void LayOutLastCalibrations(SheetBuilder& sheet) {
    const auto lastOf = [&sheet](char labels, char values, const char* title) {
        sheet.Text(Cell(labels, 13), title, Section);
        LayOutFields(sheet, labels, values, 14,
                     {"System passed", "System date", "System user", "Audit passed", "Audit date",
                      "Audit user", "Calibration points"});
        for (const int date : {15, 18})
            sheet.Format(Cell(values, date), FieldValue(DateAndTime));
    };
    lastOf('B', 'C', "Air velocity calibration");
    lastOf('H', 'I', "Air pressure calibration");
}

void LayOutSensor(SheetBuilder& sheet) {
    sheet.Text("K13", "Pressure sensor", Section);
    LayOutFields(sheet, 'K', 'L', 14,
                 {"Present", "Full scale (mBar)", "Scale (mBar/bit)", "Offset (mBar)",
                  "Span (mBar)", "Zero (bits)"});
    sheet.Format("L16", FieldValue("0.000000"))
        .Format("L17", FieldValue("0.00"))
        .Format("L18", FieldValue("0.00"));
}

void LayOutVelocityTable(SheetBuilder& sheet, int channel, int capacityRow) {
    const Look head = With(HeadCell, BoxLines);
    sheet.Text(Cell('B', capacityRow), fmt::format("Channel {}", channel), Section)
        .Text(Cell('C', capacityRow), "Full scale (ml/min)", Label)
        .Format(Cell('D', capacityRow), FieldValue("0.0"));
    const int headRow = capacityRow + 1;
    sheet.Text(Cell('B', headRow), "Segment", head)
        .Text(Cell('C', headRow), "Slope M", head)
        .Text(Cell('D', headRow), "Intercept C (bits)", head)
        .Text(Cell('E', headRow), "Demand (bits)", head);
    for (int segment = 1; segment <= Segments; ++segment) {
        const int row = headRow + segment;
        sheet.Number(Cell('B', row), segment, Boxed("0"))
            .Format(Cell('C', row), Boxed("0.000000"))
            .Format(Cell('D', row), Boxed("0.00"))
            .Format(Cell('E', row), Boxed("0"));
    }
}

void LayOutPressureTable(SheetBuilder& sheet) {
    const Look head = With(HeadCell, BoxLines);
    sheet.Text("H22", "Back-pressure by base, c0 + c1·F + c2·F² (F in ml/min)", Section);
    const Look label{.Colour = Grey, .Horizontal = Align::Left, .Indent = 1, .Edges = BoxLines};
    const auto line = [&](int row, const char* text) {
        sheet.Merge(fmt::format("H{0}:I{0}", row), label).Text(Cell('H', row), text, label);
    };
    sheet.Merge("H23:I23", head).Text("H23", "Base", head);
    line(24, "Calibrated");
    line(27, "c0 (bits)");
    line(28, "c1 (bits per ml/min)");
    line(29, "c2 (bits per (ml/min)²)");
    sheet.Merge("H26:I26", head).Text("H26", "Coefficients", head);
    int base = 0;
    for (const char column : {'J', 'K', 'L'}) {
        ++base;
        sheet.Number(Cell(column, 23), base, head).Number(Cell(column, 26), base, head);
        sheet.Format(Cell(column, 24), Boxed());
        for (const int row : {27, 28, 29})
            sheet.Format(Cell(column, row), Boxed("0.0000E+00"));
    }
}

void LayOutACU(SheetBuilder& sheet) {
    sheet.WithoutGrid().Pages(Pages).OnOnePage(Orientation::Landscape).PrintArea("$A$1:$L$46");
    sheet.Column("A", 2).Column("B", 20).Column("C", 24).Column("D:E", 18).Column("F:G", 2);
    sheet.Column("H", 20).Column("I", 24).Column("J", 15).Column("K", 18).Column("L", 15);
    LayOutIdentity(sheet);
    LayOutLastCalibrations(sheet);
    LayOutSensor(sheet);
    constexpr int firstTable = 22;
    constexpr int secondTable = 35;
    LayOutVelocityTable(sheet, 1, firstTable);
    LayOutVelocityTable(sheet, 2, secondTable);
    LayOutPressureTable(sheet);
}

constexpr int FirstWordRow = 5;
constexpr int WordsPerGroup = 128;
constexpr int ColumnsPerGroup = 6;

/// A group's columns: address, name, kind, value in hexadecimal, value.
class WordGroup {
  public:
    WordGroup(SheetBuilder& sheet, int group)
        : m_Sheet(sheet), m_FirstColumn(2 + group * ColumnsPerGroup) {}

    void LayOutHead() {
        constexpr std::pair<const char*, double> Columns[] = {
            {"Address", 9}, {"Name", 25}, {"Kind", 8}, {"Hex", 11}, {"Value", 13}};
        const Look head = With(HeadCell, BoxLines);
        int column = 0;
        for (const auto& [title, width] : Columns) {
            m_Sheet.Column(Letters(column), width).Text(Address(column, 4), title, head);
            ++column;
        }
        m_Sheet.Column(Letters(column), 1.5);
    }

    void LayOutWord(int row, const EPROMWord& word) {
        const Look text = With({.Horizontal = Align::Left, .Indent = 1}, BoxLines);
        m_Sheet.Number(Address(0, row), word.Address, Boxed("0"))
            .Text(Address(1, row), word.Name, text)
            .Text(Address(2, row), word.Kind, Boxed());
        const std::string value = Address(4, row);
        m_Sheet.Formula(
            Address(3, row),
            fmt::format("IF({0}=\"\",\"\",DEC2HEX(IF({0}<0,{0}+4294967296,{0}),8))", value),
            Boxed());
        m_Sheet.Format(value, Boxed("0"));
    }

  private:
    std::string Letters(int column) const { return ColumnLetters(m_FirstColumn + column); }
    std::string Address(int column, int row) const { return Letters(column) + std::to_string(row); }

    SheetBuilder& m_Sheet;
    int m_FirstColumn;
};

void LayOutEPROM(SheetBuilder& sheet) {
    sheet.WithoutGrid().Pages(Pages).FreezeRows(4).RepeatRows("$1:$4");
    sheet.RowHeight(1, 34).Text("B1", "EPROM", Heading);
    sheet.Text("B2", "All 2048 bytes in words of four, as numbers with sign and as stored.", Note);
    sheet.Column("A", 2);
    const std::vector<EPROMWord> words = EPROMWords();
    for (std::size_t first = 0; first < words.size(); first += WordsPerGroup) {
        WordGroup group(sheet, static_cast<int>(first / WordsPerGroup));
        group.LayOutHead();
        for (int i = 0; i < WordsPerGroup; ++i)
            group.LayOutWord(FirstWordRow + i, words[first + static_cast<std::size_t>(i)]);
    }
}

} // namespace

std::string MakeQX_ACU_Calibraiton_Info() {
    TemplateBuilder builder("ACU Information");
    LayOutACU(builder.AddSheet("ACU"));
    LayOutEPROM(builder.AddSheet("EPROM"));
    return builder.Build();
}

} // namespace ombrix::templates
