#include "spreadsheet/package/StyleSheet.h"

#include "spreadsheet/package/XmlPart.h"

#include <array>
#include <cstring>
#include <iterator>
#include <span>

namespace ombrix::xlsx {

namespace {

constexpr const char* PartName = "xl/styles.xml";
/// The lists that cells refer to, in the order that the schema asks for, as a plain workbook has
/// them.
constexpr const char* PlainLists =
    "<lists><fonts count=\"1\"><font><sz val=\"11\"/><name val=\"Calibri\"/></font></fonts>"
    "<fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill>"
    "<fill><patternFill patternType=\"gray125\"/></fill></fills>"
    "<borders count=\"1\"><border/></borders>"
    "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/>"
    "</cellStyleXfs><cellXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" "
    "borderId=\"0\" xfId=\"0\"/></cellXfs></lists>";
constexpr std::array<std::string_view, 10> BehindNumberFormats = {
    "fonts",      "fills", "borders",     "cellStyleXfs", "cellXfs",
    "cellStyles", "dxfs",  "tableStyles", "colors",       "extLst"};
constexpr int GeneralFormat = 0;
constexpr int WholePercentFormat = 9;
constexpr int TwoDecimalPercentFormat = 10;
constexpr int DateTimeFormat = 22;

const char* ElementName(CellSide side) {
    switch (side) {
    case CellSide::Left: return "left";
    case CellSide::Right: return "right";
    case CellSide::Top: return "top";
    case CellSide::Bottom: return "bottom";
    case CellSide::DiagonalUp:
    case CellSide::DiagonalDown: break;
    }
    return "diagonal";
}

void ClearLine(pugi::xml_node line) {
    line.remove_attribute("style");
    line.remove_children();
}

void DrawLine(pugi::xml_node line) {
    ClearLine(line);
    SetAttribute(line, "style", "thin");
    SetAttribute(line.append_child("color"), "auto", 1);
}

bool IsSet(const pugi::xml_node& border, const char* flag) {
    return border.attribute(flag).as_bool();
}

/// Both diagonals share one line element; flags tell which of them are drawn.
void SetDiagonal(pugi::xml_node border, CellSide side, bool drawn) {
    const char* flag = side == CellSide::DiagonalUp ? "diagonalUp" : "diagonalDown";
    border.remove_attribute(flag);
    if (drawn)
        SetAttribute(border, flag, 1);
}

/// The border's lines in the order that the schema asks for, missing ones added empty.
void CompleteLines(pugi::xml_node border) {
    pugi::xml_node last;
    for (const char* name : {"left", "right", "top", "bottom", "diagonal"}) {
        pugi::xml_node line = border.child(name);
        if (!line)
            line = last ? border.insert_child_after(name, last) : border.prepend_child(name);
        last = line;
    }
}

void ChangeBorder(pugi::xml_node border, CellSide side, LineStyle style) {
    CompleteLines(border);
    const bool drawn = style == LineStyle::Continuous;
    pugi::xml_node line = border.child(ElementName(side));
    if (side == CellSide::DiagonalUp || side == CellSide::DiagonalDown) {
        SetDiagonal(border, side, drawn);
        if (IsSet(border, "diagonalUp") || IsSet(border, "diagonalDown"))
            DrawLine(line);
        else
            ClearLine(line);
    } else if (drawn) {
        DrawLine(line);
    } else {
        ClearLine(line);
    }
}

/// Programs may leave out what their cells do not use.
void CompleteLists(pugi::xml_node styles) {
    pugi::xml_document plain;
    plain.load_string(PlainLists);
    std::span<const std::string_view> behind = BehindNumberFormats;
    for (const pugi::xml_node list : plain.document_element().children()) {
        behind = behind.subspan(1);
        const pugi::xml_node present = styles.child(list.name());
        if (present.child(list.first_child().name()))
            continue;
        styles.remove_child(present);
        InsertCopyInOrder(styles, list, behind);
    }
}

} // namespace

StyleSheet::StyleSheet(std::string_view xml) : m_Document(ParseXml(xml, PartName, "styleSheet")) {
    CompleteLists(m_Document.document_element());
}

std::string StyleSheet::Empty() {
    return "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"/>";
}

pugi::xml_node StyleSheet::Format(int format) const {
    const pugi::xml_node list = m_Document.document_element().child("cellXfs");
    const auto formats = list.children("xf");
    auto found = formats.begin();
    for (int i = 0; i < format && found != formats.end(); ++i)
        ++found;
    return found == formats.end() ? list.child("xf") : *found;
}

int StyleSheet::NumberFormatOf(int format) const {
    return Format(format).attribute("numFmtId").as_int();
}

bool StyleSheet::ShowsPercent(int format) const {
    const int number = NumberFormatOf(format);
    if (number == WholePercentFormat || number == TwoDecimalPercentFormat)
        return true;
    const pugi::xml_node custom =
        m_Document.document_element().child("numFmts").find_child_by_attribute(
            "numFmtId", std::to_string(number).c_str());
    return std::strchr(custom.attribute("formatCode").value(), '%') != nullptr;
}

int StyleSheet::WithDateFormat(int format) {
    if (NumberFormatOf(format) != GeneralFormat)
        return format;
    return WithAttribute(format, "numFmtId", DateTimeFormat, "applyNumberFormat");
}

int StyleSheet::WithBorder(int format, CellSide side, LineStyle style) {
    const std::tuple key(format, side, style);
    if (const auto known = m_Bordered.find(key); known != m_Bordered.end())
        return known->second;
    const int border = BorderWith(Format(format).attribute("borderId").as_int(), side, style);
    const int changed = WithAttribute(format, "borderId", border, "applyBorder");
    m_Bordered.emplace(key, changed);
    return changed;
}

int StyleSheet::WithAttribute(int format, const char* name, int value, const char* applyName) {
    if (Format(format).attribute(name).as_int() == value)
        return format;
    pugi::xml_document copy;
    pugi::xml_node changed = copy.append_copy(Format(format));
    SetAttribute(changed, name, value);
    SetAttribute(changed, applyName, 1);
    return Find("cellXfs", changed);
}

int StyleSheet::BorderWith(int border, CellSide side, LineStyle style) {
    const auto borders = m_Document.document_element().child("borders").children("border");
    auto found = borders.begin();
    for (int i = 0; i < border && found != borders.end(); ++i)
        ++found;
    pugi::xml_document copy;
    pugi::xml_node changed = copy.append_copy(found == borders.end() ? *borders.begin() : *found);
    ChangeBorder(changed, side, style);
    return Find("borders", changed);
}

int StyleSheet::Find(const char* listName, const pugi::xml_node& element) {
    pugi::xml_node list = m_Document.document_element().child(listName);
    auto& known = m_Known[listName];
    if (known.empty()) {
        int number = 0;
        for (const pugi::xml_node present : list.children(element.name()))
            known.emplace(ToXml(present), number++);
    }
    const auto children = list.children(element.name());
    const auto next = static_cast<int>(std::distance(children.begin(), children.end()));
    const auto [found, isNew] = known.emplace(ToXml(element), next);
    if (isNew) {
        list.append_copy(element);
        UpdateCount(list);
    }
    return found->second;
}

std::string StyleSheet::Xml() const {
    return ToXml(m_Document);
}

} // namespace ombrix::xlsx
