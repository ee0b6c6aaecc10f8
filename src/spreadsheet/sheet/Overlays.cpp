#include "spreadsheet/sheet/Overlays.h"

#include "spreadsheet/package/Guid.h"
#include "spreadsheet/package/XmlPart.h"
#include "spreadsheet/sheet/FormulaText.h"
#include "spreadsheet/sheet/SheetOrder.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace ombrix::xlsx {

namespace {

constexpr const char* MergeList = "mergeCells";

/// Elements that belong to areas and hold formulas. Their areas stand in "sqref", as an attribute
/// or, among the extensions, as an element.
struct OverlayKind {
    /// Where the lists of them are, from the root of the sheet.
    const char* Lists;
    const char* Element;
    /// Its formulas, from the element.
    const char* Formulas;
};
constexpr std::array<OverlayKind, 5> Kinds = {
    {{".", "conditionalFormatting", "cfRule/formula"},
     {"dataValidations", "dataValidation", "formula1 | formula2"},
     {"extLst/ext/x14:conditionalFormattings", "x14:conditionalFormatting", ".//xm:f"},
     {"extLst/ext/x14:dataValidations", "x14:dataValidation", ".//xm:f"},
     {"extLst/ext/x14:sparklineGroups/x14:sparklineGroup/x14:sparklines", "x14:sparkline",
      "xm:f"}}};

using Areas = std::vector<CellArea>;

Areas AreasOf(const pugi::xml_node& element) {
    const auto attribute = element.attribute("sqref");
    return FindAreas(attribute ? attribute.value() : element.child("xm:sqref").text().get())
        .value_or(Areas());
}

std::string Joined(const Areas& areas) {
    std::string text;
    for (const CellArea& area : areas)
        text += (text.empty() ? "" : " ") + ToText(area);
    return text;
}

/// Relative references in conditions count from here.
CellPosition Anchor(const Areas& areas) {
    CellPosition anchor = areas.front().First;
    for (const CellArea& area : areas) {
        anchor.Row = std::min(anchor.Row, area.First.Row);
        anchor.Column = std::min(anchor.Column, area.First.Column);
    }
    return anchor;
}

void SetAreas(const OverlayKind& kind, pugi::xml_node element, const Areas& before,
              const Areas& after) {
    if (pugi::xml_attribute attribute = element.attribute("sqref"))
        attribute.set_value(Joined(after).c_str());
    else
        element.child("xm:sqref").text().set(Joined(after).c_str());
    const CellPosition from = Anchor(before);
    const CellPosition to = Anchor(after);
    for (const pugi::xpath_node& formula : element.select_nodes(kind.Formulas)) {
        pugi::xml_text text = formula.node().text();
        text.set(ShiftReferences(text.get(), to.Row - from.Row, to.Column - from.Column).c_str());
    }
}

/// The areas inside the source, moved onto the destination.
Areas MovedAreas(const Areas& areas, const CellArea& source, const CellArea& destination) {
    Areas moved;
    for (const CellArea& area : areas)
        if (const auto common = Intersection(area, source))
            moved.push_back(Moved(*common, destination.First.Row - source.First.Row,
                                  destination.First.Column - source.First.Column));
    return moved;
}

/// Takes the area out of every element; one that has no area left goes.
void ClearArea(const OverlayKind& kind, pugi::xml_node list, const CellArea& cleared) {
    pugi::xml_node next;
    for (pugi::xml_node element = list.child(kind.Element); element; element = next) {
        next = element.next_sibling(kind.Element);
        const Areas areas = AreasOf(element);
        Areas rest;
        for (const CellArea& area : areas) {
            const Areas pieces = Difference(area, cleared);
            rest.insert(rest.end(), pieces.begin(), pieces.end());
        }
        if (rest.empty() && !areas.empty())
            list.remove_child(element);
        else if (rest != areas)
            SetAreas(kind, element, areas, rest);
    }
}

/// Keeps a list in order; one that is empty goes, with what holds nothing else.
void Tidy(const OverlayKind& kind, const pugi::xml_node& worksheet, pugi::xml_node list) {
    if (list.attribute("count"))
        UpdateCount(list);
    while (list != worksheet && !list.child(kind.Element)) {
        const pugi::xml_node holder = list.parent();
        pugi::xml_node(holder).remove_child(list);
        // A group of sparklines has colours beside its list.
        if (holder.first_child() && holder.name() != std::string_view("x14:sparklineGroup"))
            return;
        list = holder;
    }
}

/// Beyond it a priority is no real one.
constexpr int LastPriority = 1000000;

int LowestPriority(const pugi::xml_node& worksheet) {
    int lowest = 0;
    for (const pugi::xpath_node& found :
         worksheet.select_nodes("//cfRule/@priority | //x14:cfRule/@priority"))
        lowest = std::max(lowest, std::min(found.attribute().as_int(), LastPriority));
    return lowest;
}

/// Both halves of a rule of 2010 carry its id.
void GiveOwnIds(const pugi::xml_node& rules, std::string_view copy) {
    for (const pugi::xpath_node& found : rules.select_nodes(".//x14:id | .//x14:cfRule/@id")) {
        if (pugi::xml_attribute id = found.attribute())
            id.set_value(DerivedGuid(id.value(), copy).c_str());
        else
            found.node().text().set(DerivedGuid(found.node().text().get(), copy).c_str());
    }
}

void CopyKind(const OverlayKind& kind, pugi::xml_node worksheet, pugi::xml_node list,
              const CellArea& source, const CellArea& destination) {
    pugi::xml_document copies;
    for (const pugi::xml_node element : list.children(kind.Element)) {
        const Areas areas = AreasOf(element);
        const Areas moved = MovedAreas(areas, source, destination);
        if (!moved.empty())
            SetAreas(kind, copies.append_copy(element), areas, moved);
    }
    int priority = LowestPriority(worksheet);
    for (const pugi::xpath_node& found :
         copies.select_nodes("//cfRule/@priority | //x14:cfRule/@priority"))
        found.attribute().set_value(++priority);
    GiveOwnIds(copies, ToText(source) + ">" + ToText(destination));
    ClearArea(kind, list, destination);
    for (const pugi::xml_node copy : copies.children())
        InsertCopyInOrder(list, copy,
                          list == worksheet ? SheetElementsBehind(kind.Element)
                                            : std::span<const std::string_view>());
    Tidy(kind, worksheet, list);
}

void CopyMergedCells(pugi::xml_node worksheet, const CellArea& source,
                     const CellArea& destination) {
    pugi::xml_node list = worksheet.child(MergeList);
    Areas merged;
    pugi::xml_node next;
    for (pugi::xml_node entry = list.child("mergeCell"); entry; entry = next) {
        next = entry.next_sibling("mergeCell");
        const auto area = FindArea(entry.attribute("ref").value());
        if (!area)
            continue;
        if (source.Contains(*area))
            merged.push_back(Moved(*area, destination.First.Row - source.First.Row,
                                   destination.First.Column - source.First.Column));
        if (Intersection(*area, destination))
            list.remove_child(entry);
    }
    if (!merged.empty() && !list)
        list = ChildInOrder(worksheet, MergeList, SheetElementsBehind(MergeList));
    for (const CellArea& area : merged)
        SetAttribute(list.append_child("mergeCell"), "ref", ToText(area).c_str());
    if (list && !list.child("mergeCell"))
        worksheet.remove_child(list);
    else if (list)
        UpdateCount(list);
}

} // namespace

void CopyOverlays(pugi::xml_node worksheet, const CellArea& source, const CellArea& destination) {
    CopyMergedCells(worksheet, source, destination);
    for (const OverlayKind& kind : Kinds)
        for (const pugi::xpath_node& list : worksheet.select_nodes(kind.Lists))
            CopyKind(kind, worksheet, list.node(), source, destination);
}

void ChangeOverlayFormulas(const pugi::xml_node& worksheet,
                           const std::function<std::string(std::string_view)>& change) {
    static const pugi::xpath_query formulas(
        "conditionalFormatting/cfRule/formula | dataValidations/dataValidation/formula1 | "
        "dataValidations/dataValidation/formula2 | extLst//xm:f | hyperlinks/hyperlink/@location");
    for (const pugi::xpath_node& found : formulas.evaluate_node_set(worksheet)) {
        if (pugi::xml_attribute location = found.attribute())
            location.set_value(change(location.value()).c_str());
        else
            found.node().text().set(change(found.node().text().get()).c_str());
    }
}

void GiveRulesOwnIds(pugi::xml_node worksheet, std::string_view copy) {
    GiveOwnIds(worksheet, copy);
}

} // namespace ombrix::xlsx
