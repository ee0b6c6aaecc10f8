#include "spreadsheet/chart/ChartXml.h"

#include "spreadsheet/chart/DrawingXml.h"
#include "spreadsheet/package/XmlText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

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
