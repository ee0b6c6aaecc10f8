#include "support/WorkbookFixture.h"

#include <fmt/format.h>

#include <array>

namespace ombrix {
namespace {

/// A workbook with one sequence and its chart beside the samples.
class WorkbookChartsTest : public ::testing::Test {
  protected:
    WorkbookFixture m_Fixture;
    Worksheet& m_Data = m_Fixture.Sheet("DataTemplate");
    Chart& m_Chart = m_Data.AddChart(ChartType::XYScatterSmoothNoMarkers, m_Data.Box("M2:AD36"));

    void Fill(std::span<const float> fractions) {
        const std::array<float, 3> times = {0.0F, 11.9F, 23.95F};
        m_Data.SetValues("A2:A4", CellBlock<float>{times, 1});
        m_Data.SetValues("F2:I4", CellBlock<float>{fractions, 4});
        m_Chart.SetSourceData(m_Data, "A:A,F:J");
    }
    pugi::xml_node Saved() {
        m_Saved.emplace(m_Fixture.Saved());
        return m_Saved->Xml(m_Saved->Charts("DataTemplate").at(0)).document_element();
    }
    static std::string Text(const pugi::xml_node& chart, const char* path) {
        const auto found = chart.select_node(path);
        return found.attribute() ? found.attribute().value() : found.node().text().get();
    }

    std::optional<WorkbookProbe> m_Saved;
    const std::array<float, 12> m_Wide = {0, 0, 0, 0, 0.2F, 0.1F, 0, 0, 0.2F, 0.19F, 0, 0};
};

TEST_F(WorkbookChartsTest, SeriesReachFromTheNamesToTheLastFilledRow) {
    Fill(m_Wide);
    m_Data.SetValue("J5", std::int32_t{4200}); // the longest column counts
    const pugi::xml_node chart = Saved();
    EXPECT_EQ(chart.select_nodes("//c:ser").size(), 5U);
    EXPECT_EQ(Text(chart, "//c:ser[2]/c:tx//c:f"), "'DataTemplate'!$G$1");
    EXPECT_EQ(Text(chart, "//c:ser[2]/c:tx//c:v"), "Ch1 Reading");
    EXPECT_EQ(Text(chart, "//c:ser[2]/c:xVal//c:f"), "'DataTemplate'!$A$2:$A$5");
    EXPECT_EQ(Text(chart, "//c:ser[2]/c:yVal//c:f"), "'DataTemplate'!$G$2:$G$5");
    EXPECT_TRUE(chart.select_nodes("//c:symbol[@val!='none']").empty());
    // The time axis ends at the mark behind the last sample.
    EXPECT_EQ(Text(chart, "//c:valAx[1]/c:title//a:t"), "Time (s)");
    EXPECT_EQ(Text(chart, "//c:valAx[1]//c:max/@val"), "24");
    EXPECT_EQ(Text(chart, "//c:valAx[1]/c:majorUnit/@val"), "2");
}

TEST_F(WorkbookChartsTest, SeriesLookAndStandAsTold) {
    Fill(m_Wide);
    m_Chart.SetTitle("Zero & <Ch1>");
    m_Chart.SetSeriesLineWeight(3, 1.0);
    m_Chart.SetSeriesSmooth(3, false);
    m_Chart.SetSeriesAxisGroup(5, AxisGroup::Secondary);
    const pugi::xml_node chart = Saved();
    EXPECT_EQ(Text(chart, "//c:chart/c:title//a:t"), "Zero & <Ch1>");
    EXPECT_EQ(Text(chart, "//c:ser[3]//a:ln/@w"), "12700");
    EXPECT_EQ(Text(chart, "//c:ser[3]/c:smooth/@val"), "0");
    EXPECT_EQ(Text(chart, "//c:ser[2]/c:smooth/@val"), "1");
    EXPECT_EQ(chart.select_nodes("//c:scatterChart[1]/c:ser").size(), 4U);
    EXPECT_EQ(Text(chart, "//c:scatterChart[2]/c:ser/c:order/@val"), "4");
    // The second pair of axes: pressure at the right, its x axis hidden.
    const std::string right = Text(chart, "//c:scatterChart[2]/c:axId[2]/@val");
    const std::string axis = fmt::format("//c:valAx[c:axId/@val='{}']", right);
    EXPECT_EQ(Text(chart, (axis + "/c:axPos/@val").c_str()), "r");
    EXPECT_EQ(Text(chart, (axis + "/c:title//a:t").c_str()), "Pressure");
    EXPECT_EQ(chart.select_nodes("//c:delete[@val='1']").size(), 1U);
    for (const int series : {0, 6})
        EXPECT_THROW(m_Chart.SetSeriesSmooth(series, true), SpreadsheetError);
    EXPECT_THROW(m_Chart.SetSeriesLineWeight(1, 0.0), SpreadsheetError);
}

TEST_F(WorkbookChartsTest, ASteadyReadingIsNotBlownUpToItsNoise) {
    const std::array<std::int32_t, 3> pressures = {4000, 4012, 4003};
    m_Data.SetValues("J2:J4", CellBlock<std::int32_t>{pressures, 1});
    Fill(m_Wide);
    m_Chart.SetSeriesAxisGroup(5, AxisGroup::Secondary);
    const pugi::xml_node chart = Saved();
    EXPECT_EQ(Text(chart, "//c:valAx[3]//c:min/@val"), "0");
    EXPECT_EQ(Text(chart, "//c:valAx[3]//c:max/@val"), "4500");
    const std::array<std::int32_t, 3> below = {-5, 4012, 4003};
    m_Data.SetValues("J2:J4", CellBlock<std::int32_t>{below, 1});
    EXPECT_EQ(Text(Saved(), "//c:valAx[3]//c:max/@val"), "") << "left to the spreadsheet program";
}

TEST_F(WorkbookChartsTest, PercentagesHaveTheDecimalsThatTellTheMarksApart) {
    const auto format = [this](float highest) {
        std::array<float, 12> values = {};
        values.back() = highest;
        Fill(values);
        return Text(Saved(), "//c:valAx[2]/c:numFmt/@formatCode");
    };
    EXPECT_EQ(format(0.9F), "0%");
    EXPECT_EQ(format(0.04F), "0.0%");
    EXPECT_EQ(format(0.002F), "0.00%");
}

TEST_F(WorkbookChartsTest, AChartWithoutDataIsStillSound) {
    EXPECT_EQ(Saved().select_nodes("//c:scatterChart").size(), 1U);
    EXPECT_TRUE(Saved().select_nodes("//c:ser").empty());
    WorkbookFixture other;
    EXPECT_THROW(m_Chart.SetSourceData(other.Sheet("DataTemplate"), "A:A,F:J"), SpreadsheetError);
    EXPECT_THROW(m_Chart.SetSourceData(m_Data, "A1:A2"), SpreadsheetError);
    EXPECT_THROW(m_Data.AddChart(static_cast<ChartType>(5), {}), SpreadsheetError);
}

TEST_F(WorkbookChartsTest, TheChartCoversTheCellsItsBoxWasTakenFrom) {
    const SheetBox exact = m_Data.Box("B3:H9");
    // The program hands over whole points.
    const SheetBox whole = {std::trunc(exact.Left), std::trunc(exact.Top),
                            std::trunc(exact.Left + exact.Width) - std::trunc(exact.Left),
                            std::trunc(exact.Top + exact.Height) - std::trunc(exact.Top)};
    m_Data.AddChart(ChartType::XYScatterSmoothNoMarkers, whole);
    WorkbookProbe saved = m_Fixture.Saved();
    const std::string drawing = saved.Related(saved.SheetPart("DataTemplate"), "/drawing").at(0);
    const pugi::xml_node root = saved.Xml(drawing).document_element();
    // Column, offset, row, offset.
    EXPECT_EQ(pugi::xpath_query("string(*[2]/xdr:from)").evaluate_string(root), "1020");
    EXPECT_EQ(pugi::xpath_query("string(*[2]/xdr:to)").evaluate_string(root), "8090");
    EXPECT_EQ(root.select_nodes("*[1]//@id[.=../../../*[2]//@id]").size(), 0U);
}

TEST_F(WorkbookChartsTest, ChartsFollowTheirSheetsAndDrawFromTheCopiesOnThose) {
    const auto reference = [](WorkbookProbe saved, const char* sheet) {
        return Text(saved.Xml(saved.Charts(sheet).at(0)).document_element(),
                    "//c:ser[1]/c:yVal//c:f");
    };
    Fill(m_Wide);
    m_Data.CopyAfter(m_Fixture.Sheet("Overview"));
    m_Fixture.Book->Sheet(2).SetName("Copy");
    EXPECT_EQ(reference(m_Fixture.Saved(), "Copy"), "'Copy'!$F$2:$F$4");
    EXPECT_EQ(reference(m_Fixture.Saved(), "DataTemplate"), "'DataTemplate'!$F$2:$F$4");
    // The same with charts that a template brings along.
    WorkbookFixture second(m_Fixture.Files.ReadFile(R"(C:\saved.xlsx)"));
    second.Sheet("DataTemplate").CopyAfter(second.Sheet("Overview"));
    second.Sheet("DataTemplate").SetName("Renamed");
    EXPECT_EQ(reference(second.Saved(), "Renamed"), "'Renamed'!$F$2:$F$4");
    EXPECT_EQ(reference(second.Saved(), "DataTemplate (2)"), "'DataTemplate (2)'!$F$2:$F$4");
}

} // namespace
} // namespace ombrix
