#include "spreadsheet/sheet/SheetReader.h"

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/package/XmlPart.h"
#include "spreadsheet/sheet/FormulaText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace ombrix::xlsx {

namespace {

/// Formulas that were shared take no more than this when they are told one by one.
constexpr std::size_t MostSharedText = std::size_t{32} << 20U;

struct SharedFormula {
    std::string Text;
    CellPosition At;
};

class SheetReader {
  public:
    CellStore Read(pugi::xml_node worksheet) {
        CellStore cells{SheetColumns(worksheet)};
        int number = 0;
        for (const pugi::xml_node row : worksheet.child("sheetData").children("row")) {
            number = row.attribute("r").as_int(number + 1);
            if (number < 1 || number > MaxRow)
                throw SpreadsheetError("it holds a row beyond the sheet's end");
            ReadRow(row, number, cells);
        }
        return cells;
    }

  private:
    void ReadRow(const pugi::xml_node& source, int number, CellStore& cells) {
        ReadRowFormat(source, cells.RowAt(number));
        int column = 0;
        for (const pugi::xml_node cell : source.children("c")) {
            ++column;
            if (const auto place = FindCell(cell.attribute("r").value()))
                column = place->Column;
            if (column > MaxColumn)
                throw SpreadsheetError("it holds a cell beyond the sheet's end");
            const CellPosition position{number, column};
            Cell& target = cells.At(position);
            target.Format = std::max(cell.attribute("s").as_int(), 0);
            target.Value = ReadContent(cell, position);
        }
    }

    static void ReadRowFormat(const pugi::xml_node& source, Row& row) {
        row.Attributes.clear();
        for (const pugi::xml_attribute attribute : source.attributes())
            if (std::strcmp(attribute.name(), "r") != 0 &&
                std::strcmp(attribute.name(), "spans") != 0)
                row.Attributes.emplace_back(attribute.name(), attribute.value());
        if (source.attribute("customFormat").as_bool())
            row.Format = std::max(source.attribute("s").as_int(), 0);
        if (const auto height = source.attribute("ht"))
            row.Height_pt = std::clamp(height.as_double(), 0.0, 409.5);
        if (source.attribute("hidden").as_bool())
            row.Height_pt = 0.0;
    }

    Content ReadContent(const pugi::xml_node& cell, CellPosition position) {
        const Metadata notes{cell.attribute("cm").as_uint(), cell.attribute("vm").as_uint()};
        if (const pugi::xml_node formula = cell.child("f")) {
            Content content = ReadFormula(formula, position);
            if (auto* read = std::get_if<Formula>(&content))
                read->Notes = notes;
            return content;
        }
        if (notes != Metadata())
            return ReadWhole(cell);
        const std::string_view type = cell.attribute("t").value();
        if (type == "inlineStr")
            return ReadInlineText(cell.child("is"));
        const pugi::xml_node value = cell.child("v");
        if (!value)
            return std::monostate();
        return ReadValue(value.text().get(), type);
    }

    static Content ReadWhole(const pugi::xml_node& cell) {
        RawContent content;
        for (const char* name : {"t", "cm", "vm"})
            if (const auto attribute = cell.attribute(name))
                AppendAttribute(content.Attributes, name, attribute.value());
        for (const pugi::xml_node child : cell.children())
            content.Xml += ToXml(child);
        return content;
    }

    static Content ReadValue(std::string_view text, std::string_view type) {
        if (type == "str")
            return DecodeCellText(text);
        if (type == "b")
            return text == "1" || text == "true";
        if (type == "e" || type == "d") {
            RawContent content{"", "<v>"};
            AppendAttribute(content.Attributes, "t", type);
            AppendEscaped(content.Xml, text);
            content.Xml += "</v>";
            return content;
        }
        double number = 0.0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || !std::isfinite(number) || (type == "s" && number < 0.0))
            return std::monostate();
        if (type == "s")
            return SharedText{static_cast<std::uint32_t>(std::min(number, 4294967295.0))};
        return number;
    }

    static Content ReadInlineText(const pugi::xml_node& text) {
        const pugi::xml_node only = text.first_child();
        if (!only.next_sibling() && std::strcmp(only.name(), "t") == 0)
            return DecodeCellText(only.text().get());
        return RawContent{" t=\"inlineStr\"", ToXml(text)};
    }

    Content ReadFormula(const pugi::xml_node& formula, CellPosition position) {
        const std::string_view type = formula.attribute("t").value();
        const std::string_view text = formula.text().get();
        if (text.size() > LongestFormula)
            throw SpreadsheetError("it holds a formula that is too long");
        if (type == "dataTable")
            return RawContent{"", ToXml(formula)};
        if (type != "shared") {
            if (text.empty())
                return std::monostate();
            Formula read{std::string(text)};
            read.Always = formula.attribute("ca").as_bool();
            if (type == "array")
                read.Array = ArrayAt(position, formula.attribute("ref").value());
            return read;
        }
        const int group = formula.attribute("si").as_int();
        if (!text.empty()) {
            m_Shared[group] = {std::string(text), position};
            return Formula{std::string(text)};
        }
        return FromShared(group, position);
    }

    static CellArea ArrayAt(CellPosition position, std::string_view reference) {
        const auto area = FindArea(reference);
        return area && area->First == position ? *area : CellArea{position, position};
    }

    Content FromShared(int group, CellPosition position) {
        const auto shared = m_Shared.find(group);
        if (shared == m_Shared.end())
            throw SpreadsheetError("it refers to a formula that is missing");
        const CellPosition from = shared->second.At;
        Formula formula{ShiftReferences(shared->second.Text, position.Row - from.Row,
                                        position.Column - from.Column)};
        m_SharedText += formula.Text.size();
        if (m_SharedText > MostSharedText)
            throw SpreadsheetError("its formulas are too long");
        return formula;
    }

    std::map<int, SharedFormula> m_Shared;
    std::size_t m_SharedText = 0;
};

} // namespace

CellStore TakeCells(pugi::xml_node worksheet) {
    CellStore cells = SheetReader().Read(worksheet);
    pugi::xml_node data = worksheet.child("sheetData");
    if (!data)
        throw SpreadsheetError("it holds no \"sheetData\"");
    data.remove_children();
    while (data.next_sibling("sheetData"))
        worksheet.remove_child(data.next_sibling("sheetData"));
    worksheet.remove_child("dimension");
    return cells;
}

} // namespace ombrix::xlsx
