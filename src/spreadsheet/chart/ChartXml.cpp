#include "spreadsheet/chart/ChartXml.h"

#include "spreadsheet/package/XmlPart.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

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

namespace ombrix::xlsx {

namespace {

/// Muted and strong tones in turn: the reports put each demand before its reading.
constexpr std::array<std::string_view, 8> LineColours = {"A9B8CE", "1F5FBF", "B4CDA6", "2B8A3E",
                                                         "E8790B", "7A4FA3", "C0392B", "008C95"};
constexpr std::string_view TextColour = "595959";
constexpr std::string_view AxisColour = "A6A6A6";
constexpr std::string_view GridColour = "E3E3E3";

/// Ids by which charts and axes name each other inside the part.
struct AxisIds {
    int X;
    int Y;
};
constexpr AxisIds PrimaryIds{500001, 500002};
constexpr AxisIds SecondaryIds{500003, 500004};

std::string Escaped(std::string_view text) {
    std::string out;
    AppendEscaped(out, text);
    return out;
}

std::string Line(std::string_view colour, double weight_pt) {
    return fmt::format("<a:ln w=\"{}\" cap=\"rnd\"><a:solidFill><a:srgbClr val=\"{}\"/>"
                       "</a:solidFill><a:round/></a:ln>",
                       std::llround(weight_pt * EmuPerPoint), colour);
}

std::string ShapeLine(std::string_view colour, double weight_pt) {
    return "<c:spPr>" + Line(colour, weight_pt) + "</c:spPr>";
}

/// @param size in hundredths of a point
std::string TextLook(std::string_view element, int size, bool bold) {
    return fmt::format("<a:{0} sz=\"{1}\" b=\"{2}\"><a:solidFill><a:srgbClr val=\"{3}\"/>"
                       "</a:solidFill></a:{0}>",
                       element, size, bold ? 1 : 0, TextColour);
}

std::string LabelLook() {
    return "<c:txPr><a:bodyPr/><a:lstStyle/><a:p><a:pPr>" + TextLook("defRPr", 900, false) +
           "</a:pPr><a:endParaRPr lang=\"en-GB\"/></a:p></c:txPr>";
}

std::string Title(std::string_view text, int size, bool bold, bool upright) {
    if (text.empty())
        return "";
    return fmt::format("<c:title><c:tx><c:rich><a:bodyPr{}/><a:lstStyle/><a:p><a:pPr>{}</a:pPr>"
                       "<a:r>{}<a:t>{}</a:t></a:r></a:p></c:rich></c:tx>"
                       "<c:overlay val=\"0\"/></c:title>",
                       upright ? " rot=\"-5400000\" vert=\"horz\"" : "",
                       TextLook("defRPr", size, bold), TextLook("rPr", size, bold), Escaped(text));
}

std::string_view ColourOf(std::size_t series) {
    return LineColours[series % LineColours.size()];
}

std::string SeriesXml(const ChartSeries& series, std::size_t number) {
    return fmt::format(
        "<c:ser><c:idx val=\"{0}\"/><c:order val=\"{0}\"/>"
        "<c:tx><c:strRef><c:f>{1}</c:f><c:strCache><c:ptCount val=\"1\"/><c:pt idx=\"0\">"
        "<c:v>{2}</c:v></c:pt></c:strCache></c:strRef></c:tx>{3}"
        "<c:marker><c:symbol val=\"none\"/></c:marker>"
        "<c:xVal><c:numRef><c:f>{4}</c:f></c:numRef></c:xVal>"
        "<c:yVal><c:numRef><c:f>{5}</c:f></c:numRef></c:yVal><c:smooth val=\"{6}\"/></c:ser>",
        number, Escaped(series.NameReference), Escaped(series.Name),
        ShapeLine(ColourOf(number), series.Weight_pt), Escaped(series.XReference),
        Escaped(series.YReference), series.Smooth ? 1 : 0);
}

/// The series of one pair of axes. The second pair is left out when it has none.
std::string GroupXml(const ChartDescription& chart, bool secondary, const AxisIds& ids) {
    std::string series;
    for (std::size_t i = 0; i < chart.Series.size(); ++i)
        if (chart.Series[i].Secondary == secondary)
            series += SeriesXml(chart.Series[i], i);
    if (series.empty() && secondary)
        return "";
    return fmt::format("<c:scatterChart><c:scatterStyle val=\"lineMarker\"/>"
                       "<c:varyColors val=\"0\"/>{}<c:axId val=\"{}\"/><c:axId val=\"{}\"/>"
                       "</c:scatterChart>",
                       series, ids.X, ids.Y);
}

struct AxisPlace {
    int Id;
    int CrossingId;
    std::string_view Position;
    bool Hidden;
    bool Grid;
    /// Stands at the far end of the other axis.
    bool Far;
};

std::string ScalingXml(const ChartAxis& axis) {
    std::string xml = "<c:scaling><c:orientation val=\"minMax\"/>";
    if (axis.Step > 0.0)
        xml += fmt::format("<c:max val=\"{}\"/><c:min val=\"{}\"/>", axis.Most, axis.Least);
    return xml + "</c:scaling>";
}

std::string StepXml(const ChartAxis& axis) {
    return axis.Step > 0.0 ? fmt::format("<c:majorUnit val=\"{}\"/>", axis.Step) : "";
}

std::string AxisXml(const ChartAxis& axis, const AxisPlace& place) {
    const bool upright = place.Position == "l" || place.Position == "r";
    return fmt::format(
        "<c:valAx><c:axId val=\"{}\"/>{}"
        "<c:delete val=\"{}\"/><c:axPos val=\"{}\"/>{}{}"
        "<c:numFmt formatCode=\"{}\" sourceLinked=\"0\"/><c:majorTickMark val=\"out\"/>"
        "<c:minorTickMark val=\"none\"/><c:tickLblPos val=\"{}\"/>{}{}<c:crossAx val=\"{}\"/>"
        "<c:crosses val=\"{}\"/><c:crossBetween val=\"midCat\"/>{}</c:valAx>",
        place.Id, ScalingXml(axis), place.Hidden ? 1 : 0, place.Position,
        place.Grid ? "<c:majorGridlines>" + ShapeLine(GridColour, 0.5) + "</c:majorGridlines>" : "",
        Title(axis.Title, 900, false, upright), Escaped(axis.NumberFormat),
        place.Far ? "high" : "low", ShapeLine(AxisColour, 0.75), LabelLook(), place.CrossingId,
        place.Far ? "max" : "autoZero", StepXml(axis));
}

/// The second pair's own x axis is not shown, but has to measure as the first one does.
ChartAxis HiddenAxis(ChartAxis axis) {
    axis.Title.clear();
    return axis;
}

std::string AxesXml(const ChartDescription& chart, bool hasSecondary) {
    std::string axes =
        AxisXml(chart.X, {PrimaryIds.X, PrimaryIds.Y, "b", false, true, false}) +
        AxisXml(chart.Primary, {PrimaryIds.Y, PrimaryIds.X, "l", false, true, false});
    if (hasSecondary)
        axes +=
            AxisXml(chart.Secondary, {SecondaryIds.Y, SecondaryIds.X, "r", false, false, true}) +
            AxisXml(HiddenAxis(chart.X), {SecondaryIds.X, SecondaryIds.Y, "b", true, false, false});
    return axes;
}

} // namespace

std::string ChartXml(const ChartDescription& chart) {
    const std::string secondary = GroupXml(chart, true, SecondaryIds);
    const std::string title = chart.HasTitle ? Title(chart.Title, 1200, true, false) : "";
    return fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<c:chartSpace xmlns:c=\"http://schemas.openxmlformats.org/drawingml/2006/chart\" "
        "xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\" "
        "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
        "<c:roundedCorners val=\"0\"/><c:chart>{}<c:autoTitleDeleted val=\"{}\"/>"
        "<c:plotArea><c:layout/>{}{}{}</c:plotArea>"
        "<c:legend><c:legendPos val=\"b\"/><c:overlay val=\"0\"/>{}</c:legend>"
        "<c:plotVisOnly val=\"0\"/><c:dispBlanksAs val=\"gap\"/></c:chart>"
        "<c:spPr><a:solidFill><a:srgbClr val=\"FFFFFF\"/></a:solidFill>"
        "<a:ln><a:noFill/></a:ln></c:spPr></c:chartSpace>",
        title, title.empty() ? 1 : 0, GroupXml(chart, false, PrimaryIds), secondary,
        AxesXml(chart, !secondary.empty()), LabelLook());
}

} // namespace ombrix::xlsx
