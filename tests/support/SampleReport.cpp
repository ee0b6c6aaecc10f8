#include "support/SampleReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

constexpr float FullScale = 65535.0F;
constexpr float TimeConstant_s = 0.4F;

struct Trace {
    std::vector<float> Times;
    std::vector<std::int32_t> Bits;
    std::vector<float> Fractions;
    std::vector<std::int32_t> Pressures;
    std::vector<float> EndValues;
};

std::int32_t InBits(float fraction) {
    return static_cast<std::int32_t>(fraction * FullScale);
}

Trace MakeTrace(const SampleSequence& sequence) {
    Trace trace;
    const auto samples = static_cast<int>(sequence.StepTime_s / sequence.SampleSpacing_s);
    float flow = 0.0F;
    for (const float demand : sequence.Demands) {
        const auto step = static_cast<float>(trace.EndValues.size());
        const float target = std::max(demand - sequence.Error, 0.0F);
        for (int i = 0; i < samples; ++i) {
            flow += (target - flow) * std::min(sequence.SampleSpacing_s / TimeConstant_s, 1.0F);
            const float ripple = 0.0004F * std::sin(static_cast<float>(i) * 1.7F);
            trace.Times.push_back(step * sequence.StepTime_s +
                                  static_cast<float>(i) * sequence.SampleSpacing_s);
            for (const std::int32_t bits :
                 {InBits(demand), InBits(std::max(flow + ripple, 0.0F)), 0, 21 + i % 3}) {
                trace.Bits.push_back(bits);
                trace.Fractions.push_back(static_cast<float>(bits) / FullScale);
            }
            trace.Pressures.push_back(4200 + static_cast<std::int32_t>(flow * 30000.0F));
        }
        trace.EndValues.push_back(flow * FullScale);
    }
    return trace;
}

void FillData(Worksheet& sheet, const Trace& trace) {
    const std::size_t last = trace.Times.size() + 1;
    sheet.SetValues(fmt::format("A2:A{}", last), CellBlock<float>{trace.Times, 1});
    sheet.SetValues(fmt::format("B2:E{}", last), CellBlock<std::int32_t>{trace.Bits, 4});
    sheet.SetValues(fmt::format("F2:I{}", last), CellBlock<float>{trace.Fractions, 4});
    sheet.SetValues(fmt::format("J2:J{}", last), CellBlock<std::int32_t>{trace.Pressures, 1});
}

void AddChart(const Worksheet& data, Worksheet& target, const std::string& title,
              const std::string& area) {
    Chart& chart = target.AddChart(ChartType::XYScatterSmoothNoMarkers, target.Box(area));
    chart.SetSourceData(data, "A:A,F:J");
    chart.SetElement(ChartElement::TitleAboveChart);
    chart.SetTitle(title);
    for (int series = 1; series <= 5; ++series)
        chart.SetSeriesSmooth(series, false);
    for (const int demand : {1, 3})
        chart.SetSeriesLineWeight(demand, 1.0);
    chart.SetSeriesAxisGroup(5, AxisGroup::Secondary);
}

void FillSteps(Worksheet& overview, const SampleSequence& sequence, const Trace& trace, int row) {
    for (std::size_t step = 0; step < sequence.Demands.size(); ++step) {
        const float demand = sequence.Demands[step];
        char column = 'B';
        const auto write = [&](const auto&... values) {
            (overview.SetValue(fmt::format("{}{}", column++, row), values), ...);
        };
        write(fmt::format("Step {}", step + 1), demand, 0.0F, sequence.StepTime_s, 12,
              InBits(demand), 19, 24, trace.EndValues[step], 22.0F,
              step == 0 ? "First in Sequence" : fmt::format("CH1 to {:.1f}%", demand * 100.0F));
        ++row;
    }
}

void BoxSteps(Worksheet& overview, int first, int last) {
    const std::string areas = fmt::format(
        "B{0}:B{1},C{0}:E{1},F{0}:G{1},H{0}:I{1},J{0}:K{1},L{0}:L{1},N{0}:O{1}", first, last);
    for (const BorderEdge edge :
         {BorderEdge::Left, BorderEdge::Top, BorderEdge::Bottom, BorderEdge::Right})
        overview.SetBorder(areas, edge, LineStyle::Continuous);
    for (const BorderEdge edge : {BorderEdge::DiagonalDown, BorderEdge::DiagonalUp,
                                  BorderEdge::InsideVertical, BorderEdge::InsideHorizontal})
        overview.SetBorder(areas, edge, LineStyle::None);
}

} // namespace

int FillSampleReport(Workbook& book, const std::vector<SampleSequence>& sequences) {
    Worksheet& overview = book.Sheet("Overview");
    int row = 7;
    for (const SampleSequence& sequence : sequences) {
        const Trace trace = MakeTrace(sequence);
        const auto steps = static_cast<int>(sequence.Demands.size());
        book.Sheet("DataTemplate").CopyAfter(book.Sheet(book.WorksheetCount() - 1));
        Worksheet& data = book.Sheet(book.WorksheetCount() - 1);
        overview.SetValue("C2", std::int32_t{301});
        overview.SetValue("C3", std::string("M9200123Z"));
        overview.SetValue("C5", OleDate::FromCivil({2026, 1, 16, 14, 30, 5}));
        data.SetName(sequence.Name);
        data.SetValue("J1", std::string("Pressure (Analog)"));
        overview.SetValue("N7", data.Value("J1"));
        FillData(data, trace);
        AddChart(data, data, sequence.Name, "M2:AD36");
        if (row > 10) {
            overview.CopyRange("B7:O9", fmt::format("B{}:O{}", row, row + 2));
            overview.AddPageBreak(row);
        }
        row += 3;
        FillSteps(overview, sequence, trace, row);
        BoxSteps(overview, row, row + steps - 1);
        if (steps > 3)
            overview.SetRowHeight(row + steps, row + 2 * steps - 3, 2.0);
        row += 2 * steps - 2;
        if (steps > 8)
            overview.AddPageBreak(row);
        overview.ExtendPrintArea(fmt::format("A1:O{}", row + 25));
        AddChart(data, overview, sequence.Name, fmt::format("B{}:L{}", row, row + 25));
        row += 29;
    }
    book.Sheet("DataTemplate").SetVisible(SheetVisibility::Hidden);
    overview.SetValue("C6", std::string("Completed"));
    overview.Select();
    return row;
}

std::vector<SampleSequence> ShortReport() {
    return {{"Zero - Ch1", {0.0F, 0.2F, 0.0F}, 10.0F},
            {"Zero - Ch1 (2)", {0.0F, 0.6F, 0.0F}, 10.0F, 0.05F, 0.02F},
            {"Low - Ch1", {0.0F, 0.02F, 0.0F}, 10.0F},
            {"Zero - Ch2", {0.0F, 0.2F, 0.0F}, 2.0F, 0.01F}};
}

} // namespace ombrix
