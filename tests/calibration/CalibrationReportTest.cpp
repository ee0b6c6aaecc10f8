#include "calibration/report/CalibrationReport.h"

#include "calibration/CalibrationBench.h"
#include "calibration/MeasuredChannels.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

using Kind = CalibrationKind;
using Texts = std::vector<std::string>;

class CalibrationReportTest : public ::testing::Test {
  protected:
    WorkbookProbe Report(const VelocityResult& result, bool passed) {
        const CalibrationKind kind = result.Measured.Kind;
        CalibrationReport report(m_Bench.Reports);
        EXPECT_TRUE(report.Open(kind, m_Bench.Record().Unit(), m_Bench.Bench.Time.Now()));
        report.Fill(result, passed);
        m_Report = report.Save(kind);
        EXPECT_TRUE(m_Report.WhereItBelongs);
        return ProbeOf(m_Report.File);
    }

    CalibrationBench m_Bench{"acu"};
    StoredReport m_Report;
};

double Number(WorkbookProbe& book, const char* address) {
    return std::stod(book.Value("Report", address));
}

TEST_F(CalibrationReportTest, ASystemRunIsJudgedInBits) {
    WorkbookProbe book = Report(GoodRun(Kind::System), true);
    EXPECT_TRUE(m_Report.File.value().string().ends_with("_System.xls"));
    EXPECT_EQ(m_Bench.Wait.Story.front(), "Initialising Excel Report");
    EXPECT_EQ(Cells(book, "Report", {"D3", "J3", "M3", "D10", "I12"}),
              (Texts{"System", "ACU00301", "PASSED", "Data acceptable", "bits"}));
    // Falling less rising; the fit lies 20 bits above.
    EXPECT_EQ(Cells(book, "Report", {"C13", "G22", "I13", "J13", "K13", "F23"}),
              (Texts{"655", "62297", "40", "-20", "20", "20"}));
    EXPECT_NEAR(Number(book, "N13"), 1.0, 1e-6);
    EXPECT_NEAR(Number(book, "O21"), 20.0, 0.1);
    EXPECT_EQ(book.Value("Report", "B26"), "4") << "the second step is that to the fourth point";
    EXPECT_NEAR(Number(book, "I45"), 1.0, 1e-5) << "channel 2's step in ml/min";
    EXPECT_EQ(book.Charts("Charts").size(), 8U);
}

TEST_F(CalibrationReportTest, ChartsAndTracesAreThoseOfTheirChannel) {
    WorkbookProbe book = Report(GoodRun(Kind::System), true);
    EXPECT_EQ(book.Value("Chart Data", "J1"), "Demand (bits)");
    EXPECT_EQ(book.Value("Chart Data", "L2"), "655");
    EXPECT_NEAR(std::stod(book.Value("Chart Data", "P11")), -65.534, 1e-4);
    const auto charts = book.Charts("Charts");
    const pugi::xpath_query rising("string(//c:ser[2]/c:yVal/c:numRef/c:f)");
    EXPECT_EQ(rising.evaluate_string(book.Xml(charts.at(0))), "'Chart Data'!$C$2:$C$11");
    EXPECT_EQ(rising.evaluate_string(book.Xml(charts.at(5))), "'Chart Data'!$O$2:$O$11")
        << "the deviations of channel 2";
    // Times and bits, point 1 of the falling sweep; the second step.
    EXPECT_EQ(Cells(book, "Traces Ch1", {"A3", "B4", "V4"}), (Texts{"0.5", "655", "695"}));
    EXPECT_EQ(Cells(book, "Traces Ch2", {"AR1", "AR4"}),
              (Texts{"Step 2 from zero (bits)", "7874"}));
}

TEST_F(CalibrationReportTest, AnAuditIsJudgedInFlowsAgainstItsDemand) {
    VelocityResult run = GoodRun(Kind::Audit);
    run.Verdicts[1].value().AuditPassed = false;
    WorkbookProbe book = Report(run, false);
    EXPECT_TRUE(m_Report.File.value().string().ends_with("_Audit.xls"));
    // D23: an audit fits no line.
    EXPECT_EQ(Cells(book, "Report", {"M3", "D10", "D29", "J12", "J13", "D23", "M11"}),
              (Texts{"FAILED", "Audit passed", "Audit failed", "rising, ml/min", "0", "",
                     "Stored segments"}));
    EXPECT_NEAR(Number(book, "K13"), 40.0 * 5000.0 / 65534.0, 0.04);
    EXPECT_EQ(static_cast<float>(Number(book, "N13")),
              m_Bench.Record().Record().VelocityCal[0].M[0]);
}

TEST_F(CalibrationReportTest, ACancelledRunHasEmptyCellsInPlaceOfReadings) {
    WorkbookProbe book = Report(CancelledRun(Kind::System), false);
    // G20: point 8, where the falling sweep ended.
    EXPECT_EQ(Cells(book, "Report", {"M3", "D10", "D29", "E13", "G20"}),
              (Texts{"NOT COMPLETE", "Not complete", "Not measured", "655", "39360"}));
    for (const char* address : {"G13", "H19", "I13", "J13", "N13", "B25", "C32", "E32"})
        EXPECT_EQ(book.Value("Report", address), "") << address;
    EXPECT_EQ(book.Value("Chart Data", "D2"), "");
    EXPECT_EQ(book.Value("Traces Ch1", "U2"), "");
    EXPECT_EQ(book.Charts("Charts").size(), 1U) << "no deviation without a fit, no second channel";
}

TEST_F(CalibrationReportTest, AirThatDoesNotRiseIsSaid) {
    VelocityResult run = GoodRun(Kind::System);
    std::vector<PointReading>& rising = run.Measured.Channels[0].Rising;
    rising[5].Reading_bits = rising[4].Reading_bits;
    run.Measured.Channels[1] = {};
    run.Verdicts[1].reset();
    WorkbookProbe book = Report(run, false);
    EXPECT_EQ(book.Value("Report", "D10"),
              "Data acceptable; the readings do not rise with the demand");
    EXPECT_EQ(book.Value("Report", "D29"), "Not present");
}

} // namespace
} // namespace ombrix
