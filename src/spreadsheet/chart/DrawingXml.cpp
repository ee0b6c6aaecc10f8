#include "spreadsheet/chart/DrawingXml.h"

#include "spreadsheet/package/XmlPart.h"

#include <fmt/format.h>

#include <cmath>

namespace ombrix::xlsx {

namespace {

/// Boxes come in whole points; an edge that misses a cell's edge by less is meant to be on it.
constexpr double SnapDistance_pt = 1.0;

/// A place along one direction: the cell that holds it and how far into the cell it lies.
struct Place {
    int Line = 1;
    double Offset_pt = 0.0;
};

template <class Size>
Place FindPlace(double position_pt, int lastLine, Size size) {
    Place place{1, std::max(position_pt, 0.0)};
    while (place.Line < lastLine && place.Offset_pt > size(place.Line) - SnapDistance_pt) {
        place.Offset_pt = std::max(place.Offset_pt - size(place.Line), 0.0);
        ++place.Line;
    }
    if (place.Offset_pt < SnapDistance_pt)
        place.Offset_pt = 0.0;
    return place;
}

void AppendMarker(pugi::xml_node anchor, const char* name, double x_pt, double y_pt,
                  const CellStore& cells) {
    const Place column =
        FindPlace(x_pt, MaxColumn, [&](int line) { return cells.Columns().Width_pt(line); });
    const Place row = FindPlace(y_pt, MaxRow, [&](int line) { return cells.Height_pt(line); });
    pugi::xml_node marker = anchor.append_child(name);
    const auto emu = [](double points) { return std::llround(points * EmuPerPoint); };
    marker.append_child("xdr:col").text().set(column.Line - 1);
    marker.append_child("xdr:colOff").text().set(emu(column.Offset_pt));
    marker.append_child("xdr:row").text().set(row.Line - 1);
    marker.append_child("xdr:rowOff").text().set(emu(row.Offset_pt));
}

unsigned HighestId(const pugi::xml_node& drawing) {
    unsigned highest = 0;
    for (const pugi::xpath_node& found : drawing.select_nodes("//*[local-name()='cNvPr']/@id"))
        highest = std::max(highest, found.attribute().as_uint());
    return highest;
}

void AppendFrame(pugi::xml_node anchor, unsigned id, const std::string& chartId) {
    pugi::xml_node frame = anchor.append_child("xdr:graphicFrame");
    SetAttribute(frame, "macro", "");
    pugi::xml_node properties = frame.append_child("xdr:nvGraphicFramePr");
    pugi::xml_node name = properties.append_child("xdr:cNvPr");
    SetAttribute(name, "id", id);
    SetAttribute(name, "name", fmt::format("Chart {}", id).c_str());
    properties.append_child("xdr:cNvGraphicFramePr");
    pugi::xml_node transform = frame.append_child("xdr:xfrm");
    pugi::xml_node offset = transform.append_child("a:off");
    SetAttribute(offset, "x", 0);
    SetAttribute(offset, "y", 0);
    pugi::xml_node extent = transform.append_child("a:ext");
    SetAttribute(extent, "cx", 0);
    SetAttribute(extent, "cy", 0);
    pugi::xml_node data = frame.append_child("a:graphic").append_child("a:graphicData");
    SetAttribute(data, "uri", "http://schemas.openxmlformats.org/drawingml/2006/chart");
    pugi::xml_node chart = data.append_child("c:chart");
    SetAttribute(chart, "xmlns:c", "http://schemas.openxmlformats.org/drawingml/2006/chart");
    SetAttribute(chart, "xmlns:r",
                 "http://schemas.openxmlformats.org/officeDocument/2006/relationships");
    SetAttribute(chart, "r:id", chartId.c_str());
}

} // namespace

SheetBox BoxOf(const CellArea& area, const CellStore& cells) {
    const SheetColumns& columns = cells.Columns();
    const double left = columns.Left_pt(area.First.Column);
    const double top = cells.Top_pt(area.First.Row);
    return {left, top, columns.Left_pt(area.Last.Column + 1) - left,
            cells.Top_pt(area.Last.Row + 1) - top};
}

std::string EmptyDrawing() {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
           "<xdr:wsDr xmlns:xdr=\"http://schemas.openxmlformats.org/drawingml/2006/"
           "spreadsheetDrawing\" xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/"
           "main\"/>";
}

std::string WithChart(std::string_view drawing, const std::string& partName, const SheetBox& box,
                      const CellStore& cells, const std::string& chartId) {
    pugi::xml_document document = ParseXml(drawing, partName, "xdr:wsDr");
    pugi::xml_node root = document.document_element();
    SetAttribute(root, "xmlns:a", "http://schemas.openxmlformats.org/drawingml/2006/main");
    const unsigned id = HighestId(root) + 1;
    pugi::xml_node anchor = root.append_child("xdr:twoCellAnchor");
    AppendMarker(anchor, "xdr:from", box.Left, box.Top, cells);
    AppendMarker(anchor, "xdr:to", box.Left + box.Width, box.Top + box.Height, cells);
    AppendFrame(anchor, id, chartId);
    anchor.append_child("xdr:clientData");
    return ToXml(document);
}

} // namespace ombrix::xlsx
