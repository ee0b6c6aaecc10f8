#include "spreadsheet/sheet/ConditionalFormats.h"

#include "spreadsheet/package/XmlPart.h"
#include "spreadsheet/sheet/FormulaText.h"
#include "spreadsheet/sheet/SheetOrder.h"

#include <algorithm>
#include <string>
#include <vector>

namespace ombrix::xlsx {

namespace {

constexpr const char* FormatElement = "conditionalFormatting";
constexpr const char* MergeList = "mergeCells";

std::string Joined(const std::vector<CellArea>& areas) {
    std::string text;
    for (const CellArea& area : areas)
        text += (text.empty() ? "" : " ") + ToText(area);
    return text;
}

/// Relative references in conditions count from here.
CellPosition Anchor(const std::vector<CellArea>& areas) {
    CellPosition anchor = areas.front().First;
    for (const CellArea& area : areas) {
        anchor.Row = std::min(anchor.Row, area.First.Row);
        anchor.Column = std::min(anchor.Column, area.First.Column);
    }
    return anchor;
}

void ShiftConditions(pugi::xml_node format, CellPosition from, CellPosition to) {
    for (pugi::xml_node rule : format.children("cfRule"))
        for (pugi::xml_node condition : rule.children("formula"))
            condition.text().set(
                ShiftReferences(condition.text().get(), to.Row - from.Row, to.Column - from.Column)
                    .c_str());
}

/// Beyond it a priority is no real one.
constexpr int LastPriority = 1000000;

int LowestPriority(const pugi::xml_node& worksheet) {
    int lowest = 0;
    for (const pugi::xml_node format : worksheet.children(FormatElement))
        for (const pugi::xml_node rule : format.children("cfRule"))
            lowest = std::max(lowest, std::min(rule.attribute("priority").as_int(), LastPriority));
    return lowest;
}

void SetAreas(pugi::xml_node format, const std::vector<CellArea>& before,
              const std::vector<CellArea>& after) {
    SetAttribute(format, "sqref", Joined(after).c_str());
    ShiftConditions(format, Anchor(before), Anchor(after));
}

/// The format's areas inside the source, moved onto the destination.
std::vector<CellArea> MovedAreas(const std::vector<CellArea>& areas, const CellArea& source,
                                 const CellArea& destination) {
    std::vector<CellArea> moved;
    for (const CellArea& area : areas)
        if (const auto common = Intersection(area, source))
            moved.push_back(Moved(*common, destination.First.Row - source.First.Row,
                                  destination.First.Column - source.First.Column));
    return moved;
}

/// Takes the area out of every format; one that has no area left goes.
void ClearFormats(pugi::xml_node worksheet, const CellArea& cleared) {
    pugi::xml_node next;
    for (pugi::xml_node format = worksheet.child(FormatElement); format; format = next) {
        next = format.next_sibling(FormatElement);
        const auto areas = FindAreas(format.attribute("sqref").value());
        if (!areas)
            continue;
        std::vector<CellArea> rest;
        for (const CellArea& area : *areas) {
            const std::vector<CellArea> pieces = Difference(area, cleared);
            rest.insert(rest.end(), pieces.begin(), pieces.end());
        }
        if (rest.empty())
            worksheet.remove_child(format);
        else if (rest != *areas)
            SetAreas(format, *areas, rest);
    }
}

} // namespace

void CopyConditionalFormats(pugi::xml_node worksheet, const CellArea& source,
                            const CellArea& destination) {
    pugi::xml_document copies;
    int priority = LowestPriority(worksheet);
    for (const pugi::xml_node format : worksheet.children(FormatElement)) {
        const auto areas = FindAreas(format.attribute("sqref").value());
        if (!areas)
            continue;
        const std::vector<CellArea> moved = MovedAreas(*areas, source, destination);
        if (moved.empty())
            continue;
        pugi::xml_node copy = copies.append_copy(format);
        SetAreas(copy, *areas, moved);
        for (pugi::xml_node rule : copy.children("cfRule"))
            SetAttribute(rule, "priority", ++priority);
    }
    ClearFormats(worksheet, destination);
    for (const pugi::xml_node copy : copies.children())
        InsertCopyInOrder(worksheet, copy, SheetElementsBehind(FormatElement));
}

void CopyMergedCells(pugi::xml_node worksheet, const CellArea& source,
                     const CellArea& destination) {
    pugi::xml_node list = worksheet.child(MergeList);
    std::vector<CellArea> merged;
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

} // namespace ombrix::xlsx
