#include "spreadsheet/sheet/SheetFeatures.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace ombrix::xlsx {

namespace {

constexpr const char* MoveIt = "Take that away, or move it to another sheet.";

/// What becomes of a part that a sheet, or its drawing, refers to.
struct PartKind {
    /// Last word of the relationship.
    std::string_view Relationship;
    /// Nothing for what needs no words.
    const char* Feature;
    /// Why a copy cannot have it; nothing where it can.
    const char* Remedy;
};
/// A copy would need names, numbers or links of its own that the workbook knows of.
constexpr std::array<PartKind, 19> SheetParts = {
    {{"drawing", "", ""},
     {"vmlDrawing", "", ""},
     {"image", "", ""},
     {"hyperlink", "", ""},
     {"printerSettings", "", ""},
     {"customProperty", "", ""},
     {"comments", "comments", ""},
     {"threadedComment", "threaded comments", ""},
     {"table", "a table", "Turn it into a range of cells, or move it to another sheet."},
     {"pivotTable", "a pivot table", MoveIt},
     {"queryTable", "data of an outside source", MoveIt},
     {"slicer", "a slicer", MoveIt},
     {"timeline", "a timeline", MoveIt},
     {"tableSingleCells", "cells that are mapped to XML", MoveIt},
     {"ctrlProp", "a form control", MoveIt},
     {"control", "an ActiveX control", MoveIt},
     {"oleObject", "an embedded object", MoveIt},
     {"package", "an embedded document", MoveIt},
     {"chartEx", "a chart of a kind that came with 2016", MoveIt}}};
constexpr std::array<PartKind, 3> DrawingParts = {
    {{"chart", "charts", ""}, {"image", "pictures", ""}, {"diagramData", "diagrams", ""}}};
constexpr std::array<PartKind, 4> WorkbookParts = {
    {{"externalLink", "links to other workbooks", ""},
     {"connections", "outside data sources", ""},
     {"xmlMaps", "XML maps", ""},
     {"powerPivotData", "a data model", ""}}};

/// Elements of the sheet's own part.
struct ElementKind {
    const char* Path;
    const char* Feature;
};
constexpr std::array<ElementKind, 7> Elements = {
    {{"conditionalFormatting", "conditional formats"},
     {"extLst/ext/x14:conditionalFormattings", "conditional formats"},
     {"dataValidations", "data validations"},
     {"extLst/ext/x14:dataValidations", "data validations"},
     {"extLst/ext/x14:sparklineGroups", "sparklines"},
     {"hyperlinks", "links"},
     {"sheetProtection", "protection"}}};

class FeatureList {
  public:
    void Add(std::string name, std::string remedy = {}) {
        const auto sameName = [&](const TemplateFeature& other) { return other.Name == name; };
        if (!name.empty() && std::none_of(All.begin(), All.end(), sameName))
            All.push_back({std::move(name), std::move(remedy)});
    }
    template <std::size_t Count>
    bool AddKnown(const Relationship& relationship, const std::array<PartKind, Count>& kinds) {
        for (const PartKind& kind : kinds) {
            if (relationship.Is(kind.Relationship)) {
                Add(kind.Feature, kind.Remedy);
                return true;
            }
        }
        return false;
    }

    std::vector<TemplateFeature> All;
};

std::string LastWord(const std::string& type) {
    return type.substr(type.find_last_of('/') + 1); // npos + 1 is 0
}

} // namespace

std::vector<TemplateFeature> RelatedFeatures(const Package& parts, const std::string& sheetPart) {
    FeatureList features;
    for (const Relationship& relationship : parts.Relationships(sheetPart)) {
        if (!features.AddKnown(relationship, SheetParts))
            features.Add(fmt::format("a part of an unknown kind ({})", LastWord(relationship.Type)),
                         MoveIt);
        if (!relationship.Is("drawing"))
            continue;
        for (const Relationship& drawn :
             parts.Relationships(parts.TargetPart(sheetPart, relationship)))
            if (!features.AddKnown(drawn, DrawingParts))
                features.AddKnown(drawn, SheetParts);
    }
    return features.All;
}

std::vector<TemplateFeature> OwnFeatures(const pugi::xml_node& worksheet, const CellStore& cells) {
    FeatureList features;
    for (const ElementKind& kind : Elements)
        if (worksheet.select_node(kind.Path))
            features.Add(kind.Feature);
    const auto isArray = [](const Cell& cell) {
        const auto* formula = std::get_if<Formula>(&cell.Value);
        return formula != nullptr && formula->Array;
    };
    for (const auto& [number, row] : cells.Rows())
        if (std::any_of(row.Cells.begin(), row.Cells.end(), isArray))
            features.Add("array formulas");
    return features.All;
}

std::vector<TemplateFeature> WorkbookFeatures(const Package& parts,
                                              const std::string& workbookPart) {
    FeatureList features;
    for (const Relationship& relationship : parts.Relationships(workbookPart))
        features.AddKnown(relationship, WorkbookParts);
    return features.All;
}

} // namespace ombrix::xlsx
