// The program writes the values; the sheets here say what they are.
#include "EPROMWordNames.h"
#include "ReportLook.h"
#include "ReportTemplates.h"
#include "TemplateBuilder.h"
#include "reports/layout/InformationLayout.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

namespace EpromLayout = InformationLayout::Eprom;
using namespace InformationLayout::Unit;

const PageTexts Pages{"ACU Information", "Ombrix"};

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
    LayOutFields(sheet, LeftLabels, LeftValues, BoardRow,
                 {"Bus type", "Bus", "Hardware version", "Device type", "Serial number", "Vendor",
                  "Module", "Configuration bits"});
    sheet.Text("H3", "This report", Section);
    LayOutFields(sheet, MiddleLabels, MiddleValues, ReportRow, {"Made by", "Date", "Time"});
    sheet.Format(Cell(MiddleValues, ReportRow + 1), FieldValue("yyyy-mm-dd"))
        .Format(Cell(MiddleValues, ReportRow + 2), FieldValue("hh:mm:ss"));
    sheet.Text("H9", "ACU", Section);
    LayOutFields(sheet, MiddleLabels, MiddleValues, HeaderRow,
                 {"EPROM data version", "Solenoid valves"});
}

void LayOutLastCalibrations(SheetBuilder& sheet) {
    const auto lastOf = [&sheet](char labels, char values, const char* title) {
        sheet.Text(Cell(labels, SystemRow - 1), title, Section);
        LayOutFields(sheet, labels, values, SystemRow,
                     {"System passed", "System date", "System user", "Audit passed", "Audit date",
                      "Audit user", "Calibration points"});
        for (const int first : {SystemRow, AuditRow})
            sheet.Format(Cell(values, first + 1), FieldValue(DateAndTime));
    };
    lastOf(LeftLabels, LeftValues, "Air velocity calibration");
    lastOf(MiddleLabels, MiddleValues, "Air pressure calibration");
}

void LayOutSensor(SheetBuilder& sheet) {
    sheet.Text(Cell(RightLabels, SensorRow - 1), "Pressure sensor", Section);
    LayOutFields(sheet, RightLabels, RightValues, SensorRow,
                 {"Present", "Full scale (mBar)", "Scale (mBar/bit)", "Offset (mBar)",
                  "Span (mBar)", "Zero (bits)"});
    sheet.Format(Cell(RightValues, SensorRow + 2), FieldValue("0.000000"))
        .Format(Cell(RightValues, SensorRow + 3), FieldValue("0.00"))
        .Format(Cell(RightValues, SensorRow + 4), FieldValue("0.00"));
}

void LayOutVelocityTable(SheetBuilder& sheet, int channel, int capacityRow) {
    const Look head = With(HeadCell, BoxLines);
    sheet.Text(Cell('B', capacityRow), fmt::format("Channel {}", channel), Section)
        .Text(Cell('C', capacityRow), "Full scale (ml/min)", Label)
        .Format(Cell(FullScale, capacityRow), FieldValue("0.0"));
    const int headRow = capacityRow + 1;
    sheet.Text(Cell(Segment, headRow), "Segment", head)
        .Text(Cell(Slope, headRow), "Slope M", head)
        .Text(Cell(Intercept, headRow), "Intercept C (bits)", head)
        .Text(Cell(Demand, headRow), "Demand (bits)", head);
    for (int segment = 1; segment <= Segments; ++segment) {
        const int row = headRow + segment;
        sheet.Number(Cell(Segment, row), segment, Boxed("0"))
            .Format(Cell(Slope, row), Boxed("0.000000"))
            .Format(Cell(Intercept, row), Boxed("0.00"))
            .Format(Cell(Demand, row), Boxed("0"));
    }
}

void LayOutPressureTable(SheetBuilder& sheet) {
    const Look head = With(HeadCell, BoxLines);
    sheet.Text("H22", "Back-pressure by base, c0 + c1·F + c2·F² (F in ml/min)", Section);
    const Look label{.Colour = Grey, .Horizontal = Align::Left, .Indent = 1, .Edges = BoxLines};
    const auto line = [&](int row, const char* text) {
        sheet.Merge(fmt::format("H{0}:I{0}", row), label).Text(Cell('H', row), text, label);
    };
    const auto headLine = [&](int row, const char* text) {
        sheet.Merge(fmt::format("H{0}:I{0}", row), head).Text(Cell('H', row), text, head);
    };
    headLine(BaseHeadRow, "Base");
    line(CalibratedRow, "Calibrated");
    line(CoefficientRow, "c0 (bits)");
    line(CoefficientRow + 1, "c1 (bits per ml/min)");
    line(CoefficientRow + 2, "c2 (bits per (ml/min)²)");
    headLine(CoefficientHeadRow, "Coefficients");
    int base = 0;
    for (const char column : Bases) {
        ++base;
        sheet.Number(Cell(column, BaseHeadRow), base, head)
            .Number(Cell(column, CoefficientHeadRow), base, head);
        sheet.Format(Cell(column, CalibratedRow), Boxed());
        for (int k = 0; k < Coefficients; ++k)
            sheet.Format(Cell(column, CoefficientRow + k), Boxed("0.0000E+00"));
    }
}

void LayOutACU(SheetBuilder& sheet) {
    sheet.WithoutGrid().Pages(Pages).OnOnePage(Orientation::Landscape).PrintArea("$A$1:$L$46");
    sheet.Column("A", 2).Column("B", 20).Column("C", 24).Column("D:E", 18).Column("F:G", 2);
    sheet.Column("H", 20).Column("I", 24).Column("J", 15).Column("K", 18).Column("L", 15);
    LayOutIdentity(sheet);
    LayOutLastCalibrations(sheet);
    LayOutSensor(sheet);
    LayOutVelocityTable(sheet, 1, VelocityRows[0]);
    LayOutVelocityTable(sheet, 2, VelocityRows[1]);
    LayOutPressureTable(sheet);
}

/// A group of the EPROM's words: address, name, kind, value in hexadecimal, value.
class WordGroup {
  public:
    WordGroup(SheetBuilder& sheet, int group) : m_Sheet(sheet), m_Group(group) {}

    void LayOutHead() {
        using enum EpromLayout::Part;
        Head(Address, "Address", 9);
        Head(Name, "Name", 25);
        Head(Kind, "Kind", 8);
        Head(Hex, "Hex", 11);
        Head(Value, "Value", 13);
        m_Sheet.Column(ColumnLetters(EpromLayout::Column(m_Group, Value) + 1), 1.5);
    }

    void LayOutWord(int row, const EPROMWord& word) {
        using enum EpromLayout::Part;
        const Look text = With({.Horizontal = Align::Left, .Indent = 1}, BoxLines);
        m_Sheet.Number(At(Address, row), word.Address, Boxed("0"))
            .Text(At(Name, row), word.Name, text)
            .Text(At(Kind, row), word.Kind, Boxed());
        const std::string value = At(Value, row);
        m_Sheet.Formula(
            At(Hex, row),
            fmt::format("IF({0}=\"\",\"\",DEC2HEX(IF({0}<0,{0}+4294967296,{0}),8))", value),
            Boxed());
        m_Sheet.Format(value, Boxed("0"));
    }

  private:
    void Head(EpromLayout::Part part, const char* title, double width) {
        m_Sheet.Column(ColumnLetters(EpromLayout::Column(m_Group, part)), width)
            .Text(At(part, EpromLayout::HeadRow), title, With(HeadCell, BoxLines));
    }
    std::string At(EpromLayout::Part part, int row) const {
        return CellAddress(EpromLayout::Column(m_Group, part), row);
    }

    SheetBuilder& m_Sheet;
    int m_Group;
};

void LayOutEPROM(SheetBuilder& sheet) {
    sheet.WithoutGrid().Pages(Pages).FreezeRows(4).RepeatRows("$1:$4");
    sheet.RowHeight(1, 34).Text("B1", "EPROM", Heading);
    sheet.Text("B2", "All 2048 bytes in words of four, as numbers with sign and as stored.", Note);
    sheet.Column("A", 2);
    const std::vector<EPROMWord> words = EPROMWords();
    constexpr int wordsPerGroup = EpromLayout::WordsPerGroup;
    for (std::size_t first = 0; first < words.size(); first += wordsPerGroup) {
        WordGroup group(sheet, static_cast<int>(first / wordsPerGroup));
        group.LayOutHead();
        for (int i = 0; i < wordsPerGroup; ++i)
            group.LayOutWord(EpromLayout::FirstRow + i, words[first + static_cast<std::size_t>(i)]);
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
