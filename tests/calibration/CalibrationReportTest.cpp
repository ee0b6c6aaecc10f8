#include "calibration/CalibrationReport.h"

#include "calibration/CalibrationBench.h"
#include "calibration/MeasuredChannels.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

using Kind = CalibrationKind;

class CalibrationReportTest : public ::testing::Test {
  protected:
    WorkbookProbe Report(const VelocityMeasurement& measured, bool passed) {
        CalibrationReport report(m_Bench.Services, m_Bench.Record());
        EXPECT_TRUE(report.Open(measured.Kind));
        report.Fill(measured, passed);
        m_Outcome = report.Save(measured.Kind);
        EXPECT_TRUE(m_Outcome.Saved);
        return ProbeOf(m_Outcome.File);
    }

    CalibrationBench m_Bench{"acu"};
    WorkbookOutcome m_Outcome;
};

double Number(WorkbookProbe& book, const char* address) {
    return std::stod(book.Value("Report", address));
}

TEST_F(CalibrationReportTest, ASystemRunIsJudgedInBits) {
    WorkbookProbe book = Report(GoodRun(Kind::System), true);
    EXPECT_TRUE(m_Outcome.File.value().string().ends_with("_System.xls"));
    EXPECT_EQ(m_Bench.Wait.Story.front(), "Initialising Excel Report");
    EXPECT_EQ(book.Value("Report", "D3"), "System");
    EXPECT_EQ(book.Value("Report", "J3"), "ACU00301");
    EXPECT_EQ(book.Value("Report", "M3"), "PASSED");
    EXPECT_EQ(book.Value("Report", "D10"), "Data acceptable");
    EXPECT_EQ(book.Value("Report", "I12"), "bits");
    EXPECT_EQ(Number(book, "C13"), 655.0);
    EXPECT_EQ(Number(book, "G22"), 62257.0 + 40.0);
    EXPECT_EQ(Number(book, "I13"), 40.0) << "falling less rising";
    EXPECT_EQ(Number(book, "J13"), -20.0) << "the fit lies 20 bits above";
    EXPECT_EQ(Number(book, "K13"), 20.0);
    EXPECT_EQ(Number(book, "F23"), 20.0);
    EXPECT_NEAR(Number(book, "N13"), 1.0, 1e-6);
    EXPECT_NEAR(Number(book, "O21"), 20.0, 0.1);
    EXPECT_EQ(Number(book, "B26"), 4.0) << "the second step is that to the fourth point";
    EXPECT_NEAR(Number(book, "I45"), 1.0, 1e-5) << "channel 2's step in ml/min";
    EXPECT_EQ(book.Charts("Charts").size(), 8U);
}

TEST_F(CalibrationReportTest, ChartsDrawTheReadingsOfTheirChannel) {
    WorkbookProbe book = Report(GoodRun(Kind::System), true);
    EXPECT_EQ(book.Value("Chart Data", "J1"), "Demand (bits)");
    EXPECT_EQ(book.Value("Chart Data", "L2"), "655");
    EXPECT_NEAR(std::stod(book.Value("Chart Data", "P11")), -65.534, 1e-4);
    const auto charts = book.Charts("Charts");
    const auto rising = [&](std::size_t chart) {
        return std::string(book.Xml(charts.at(chart))
                               .select_node("//c:ser[2]/c:yVal/c:numRef/c:f")
                               .node()
                               .text()
                               .get());
    };
    EXPECT_EQ(rising(0), "'Chart Data'!$C$2:$C$11");
    EXPECT_EQ(rising(5), "'Chart Data'!$O$2:$O$11") << "the deviations of channel 2";
}

TEST_F(CalibrationReportTest, TracesKeepTheirTimes) {
    WorkbookProbe book = Report(GoodRun(Kind::System), true);
    EXPECT_EQ(book.Value("Traces Ch1", "A3"), "0.5");
    EXPECT_EQ(book.Value("Traces Ch1", "B4"), "655");
    EXPECT_EQ(book.Value("Traces Ch1", "V4"), "695") << "point 1 of the falling sweep";
    EXPECT_EQ(book.Value("Traces Ch2", "AR4"), "7874") << "the second step";
    EXPECT_EQ(book.Value("Traces Ch2", "AR1"), "Step 2 from zero (bits)");
}

TEST_F(CalibrationReportTest, AnAuditIsJudgedInFlowsAgainstItsDemand) {
    VelocityMeasurement run = GoodRun(Kind::Audit);
    run.Channels[1].AuditPassed = false;
    WorkbookProbe book = Report(run, false);
    EXPECT_TRUE(m_Outcome.File.value().string().ends_with("_Audit.xls"));
    EXPECT_EQ(book.Value("Report", "M3"), "FAILED");
    EXPECT_EQ(book.Value("Report", "D10"), "Audit passed");
    EXPECT_EQ(book.Value("Report", "D29"), "Audit failed");
    EXPECT_EQ(book.Value("Report", "J12"), "rising, ml/min");
    EXPECT_EQ(Number(book, "J13"), 0.0);
    EXPECT_NEAR(Number(book, "K13"), 40.0 * 5000.0 / 65534.0, 0.04);
    EXPECT_EQ(book.Value("Report", "D23"), "") << "an audit fits no line";
    EXPECT_EQ(book.Value("Report", "M11"), "Stored segments");
    EXPECT_EQ(static_cast<float>(Number(book, "N13")),
              m_Bench.Record().Record().m_VelocityCal[0].M[0]);
}

TEST_F(CalibrationReportTest, ACancelledRunHasEmptyCellsInPlaceOfReadings) {
    WorkbookProbe book = Report(CancelledRun(Kind::System), false);
    EXPECT_EQ(book.Value("Report", "M3"), "NOT COMPLETE");
    EXPECT_EQ(book.Value("Report", "D10"), "Not complete");
    EXPECT_EQ(book.Value("Report", "D29"), "Not measured");
    EXPECT_EQ(Number(book, "E13"), 655.0);
    EXPECT_EQ(Number(book, "G20"), 39320.0 + 40.0) << "point 8, where the falling sweep ended";
    for (const char* address : {"G13", "H19", "I13", "J13", "N13", "B25", "C32", "E32"})
        EXPECT_EQ(book.Value("Report", address), "") << address;
    EXPECT_EQ(book.Value("Chart Data", "D2"), "");
    EXPECT_EQ(book.Value("Traces Ch1", "U2"), "");
    EXPECT_EQ(book.Charts("Charts").size(), 1U) << "no deviation without a fit, no second channel";
}

TEST_F(CalibrationReportTest, AirThatDoesNotRiseIsSaid) {
    VelocityMeasurement run = GoodRun(Kind::System);
    run.Channels[0].Rising[5].Reading_bits = run.Channels[0].Rising[4].Reading_bits;
    run.Channels[1] = {};
    WorkbookProbe book = Report(run, false);
    EXPECT_EQ(book.Value("Report", "D10"),
              "Data acceptable; the readings do not rise with the demand");
    EXPECT_EQ(book.Value("Report", "D29"), "Not present");
}

TEST_F(CalibrationReportTest, WithoutATemplateThereIsNoReport) {
    m_Bench.Services.Templates = R"(C:\Nowhere\)";
    CalibrationReport report(m_Bench.Services, m_Bench.Record());
    EXPECT_FALSE(report.Open(Kind::System));
    EXPECT_FALSE(report.IsOpen());
    EXPECT_EQ(m_Bench.Told().size(), 1U);
}

} // namespace
} // namespace ombrix
