// The empty graphs of a sequence: frames, titles, reference lines and the expected demand.
#include "healthcheck/MFCSequence.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <initializer_list>

namespace ombrix {

namespace {

constexpr double ReadingFullScale_bits = 65535.0;
constexpr double PressureTop = 12000.0;
/// 0.2 % of full scale.
constexpr double DifferenceLimit_bits = 131.0;
constexpr Colour ReferenceColour{222, 222, 255};
constexpr Colour ExpectedColour{222, 222, 222};

void DrawFrame(GraphSurface& surface, double right, double top, double bottom,
               std::string_view title, std::initializer_list<double> referenceLevels) {
    surface.Scale(0.0, top, right, bottom);
    surface.Cls();
    surface.Print(0.0, top, title);
    for (const double level : referenceLevels)
        surface.Line(0.0, level, right, level, ReferenceColour);
}

void PrintLevel(GraphSurface& surface, double level, std::string_view text) {
    surface.Print(0.0, level - surface.TextHeight(text), text);
}

} // namespace

void clsMFCSequence::DrawGraphTemplate(const GraphSurfaces& graphs) const {
    const double right = TotalTime_s() * 1.05;
    const std::string seconds = fmt::format("  ({} seconds)", GeneralText(TotalTime_s()));
    for (const std::size_t thick : {0U, 1U, 2U})
        graphs.at(thick)->DrawWidth(1);

    constexpr double flowTop = 84000.0;
    constexpr double flowBottom = -3360.0;
    DrawFrame(*graphs[0], right, flowTop, flowBottom, "Channel 1 - 5000 mL/min" + seconds,
              {ReadingFullScale_bits, 0.0});
    PrintLevel(*graphs[0], ReadingFullScale_bits, "100%");
    DrawFrame(*graphs[1], right, flowTop, flowBottom, "Channel 2 - 200 mL/min" + seconds,
              {ReadingFullScale_bits, 0.0});
    PrintLevel(*graphs[1], ReadingFullScale_bits, "100%");

    constexpr double pressureBottom = -1000.0;
    DrawFrame(*graphs[2], right, PressureTop, pressureBottom, "Pressure Measurement" + seconds,
              {0.0, PressureTop});
    PrintLevel(*graphs[2], PressureTop, "12000");

    constexpr double differenceTop = 1000.0;
    DrawFrame(*graphs[3], right, differenceTop, -differenceTop, "Ch1 - Diff (Read - Set)",
              {0.0, DifferenceLimit_bits, -DifferenceLimit_bits});
    DrawFrame(*graphs[4], right, differenceTop, -differenceTop, "Ch2 - Diff (Read - Set)",
              {0.0, DifferenceLimit_bits, -DifferenceLimit_bits});

    DrawExpectedDemand(*graphs[0], 0);
    DrawExpectedDemand(*graphs[1], 1);
    for (const std::size_t thick : {0U, 1U, 2U}) {
        graphs.at(thick)->DrawStyle(GraphSurface::Style::Solid);
        graphs.at(thick)->DrawWidth(2);
    }
}

void clsMFCSequence::DrawExpectedDemand(GraphSurface& surface, std::int32_t channel) const {
    surface.DrawStyle(GraphSurface::Style::Dotted);
    double x = 0.0;
    double y = Step(0).DemandValue_Percent(channel) * ReadingFullScale_bits;
    for (const clsMFCStep& step : m_Steps) {
        const double level = step.DemandValue_Percent(channel) * ReadingFullScale_bits;
        if (x > 0.0)
            surface.Line(x, y, x, level, ExpectedColour);
        surface.Line(x, level, step.EndTime_s(), level, ExpectedColour);
        x = step.EndTime_s();
        y = level;
    }
}

} // namespace ombrix
