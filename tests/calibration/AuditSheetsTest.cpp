#include "calibration/report/AuditSheets.h"

#include "calibration/CalibrationBench.h"
#include "calibration/MeasuredChannels.h"
#include "calibration/report/ReportCharts.h"
#include "spreadsheet/Cells.h"
#include "spreadsheet/LibreOfficeConverter.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ombrix {
namespace {

class AuditSheetsTest : public ::testing::Test {
  protected:
    AuditSheetsTest() { m_Bench.Bench.Messages.Answers = {Answer::No}; }
    WorkbookProbe Sheet(const VelocityMeasurement& measured) {
        m_Report = CreateAuditSheet_PV16(m_Bench.Reports, m_Bench.Record().Unit(),
                                         m_Bench.Bench.Time.Now(), measured, false);
        return ProbeOf(m_Report.File);
    }

    CalibrationBench m_Bench{"acu"};
    StoredReport m_Report;
};

using Texts = std::vector<std::string>;

TEST_F(AuditSheetsTest, TheVelocitySheetHasItsHeaderAndTexts) {
    const double now = m_Bench.Bench.Time.Now().Days();
    WorkbookProbe book = Sheet(GoodRun(CalibrationKind::Audit).Measured);
    EXPECT_EQ(m_Report.File.value().filename(), "PV16_ACU00301_VelocityAudit_40315_XX.xls");
    EXPECT_NEAR(std::stod(book.Value("Audit", "D5")), now, 1e-6);
    EXPECT_EQ(book.NumberFormat("Audit", "D5"), "yyyy-mm-dd hh:mm:ss");
    EXPECT_EQ(book.Value("Audit", "B2"), "SUGGESTED CALIBRATION METHOD FOR AN AERATION CONTROL "
                                         "UNIT \xE2\x80\x98"
                                         "AUDIT \xE2\x80\x98 CALIBRATION");
    EXPECT_EQ(Cells(book, "Audit", {"D6", "D7", "D8", "D9", "D10"}),
              (Texts{"QUILLON", "ACU00301", "5000", "200", "10"}));
    EXPECT_EQ(Cells(book, "Audit", {"C5", "F7", "D13", "C16", "J16", "M16", "O16", "D28", "N28"}),
              (Texts{"Date:", "Serial Number of the Aeration Control Unit being calibrated",
                     "Calibration Results", "Demand, % of Full Scale", "Expected Value, ml/min",
                     "% Difference", "Result, Pass/Fail", "Channel", "Version:"}));
}

TEST_F(AuditSheetsTest, PointsAreJudgedByTheSheet) {
    VelocityMeasurement run = GoodRun(CalibrationKind::Audit).Measured;
    run.Channels[0].Rising[0].Flow_ml_m = 150.00025F; // as a Single 150.00025
    run.Channels[0].Falling[0].Flow_ml_m = 151.0F;
    WorkbookProbe book = Sheet(run);
    EXPECT_EQ(Cells(book, "Audit", {"C17", "C26", "E17", "H17", "N19", "H20", "N26"}),
              (Texts{"3", "90", "150.5001", "=\"|C|<\" & 0.001*$D$8", "=\"|I|<\" & 0.001*$D$9",
                     "=\"D<1\"", "=\"J<1\""}));
    EXPECT_EQ(Cells(book, "Audit", {"I17", "O19", "I20", "O26"}),
              (Texts{"=IF(E17=\"\",\"-\", IF(F17<($D$8*0.001), \"Pass\",\"Fail\"))",
                     "=IF(K19=\"\",\"-\", IF(L19<($D$9*0.001), \"Pass\",\"Fail\"))",
                     "=IF(E20=\"\",\"-\", IF(G20<1, \"Pass\",\"Fail\"))",
                     "=IF(K26=\"\",\"-\", IF(M26<1, \"Pass\",\"Fail\"))"}));
    // The template's own.
    EXPECT_EQ(Cells(book, "Audit", {"D17", "F17", "M26"}),
              (Texts{"=IF(C17=\"\",\"\",C17*$D$8/100)", "=IF(E17=\"\",\"\",ABS(E17-D17))",
                     "=IF(K26=\"\",\"\",IF(K26=0,\"-\",L26/K26*100))"}));
}

TEST_F(AuditSheetsTest, LogSheetAndChartJudgeAlikeAtTheLimit) {
    VelocityMeasurement run = GoodRun(CalibrationKind::Audit).Measured;
    ChannelMeasurement& channel = run.Channels[0];
    // How much of its limit each point's error is; the sweeps lie on both sides of their mean.
    const std::array<float, 10> shares = {0.995F, -1.005F, 1.005F,  0.995F,  0.999F,
                                          1.001F, 1.005F,  -0.995F, -1.001F, -1.005F};
    for (std::size_t point = 0; point < shares.size(); ++point) {
        const float demand_ml_m = channel.Demand[point].Flow_ml_m;
        const float mean_ml_m =
            point < 3 ? demand_ml_m + shares.at(point) * 0.001F * channel.Capacity_ml_m
                      : demand_ml_m / (1.0F - shares.at(point) / 100.0F);
        channel.Rising[point].Flow_ml_m = mean_ml_m - 20.0F;
        channel.Falling[point].Flow_ml_m = mean_ml_m + 20.0F;
    }
    VelocityResult result{run, {}};
    result.Verdicts[0] = JudgeChannel(channel, CalibrationKind::Audit, 0);
    const VelocitySeries chart = SeriesOf(result, 0);
    Sheet(run);
    WorkbookProbe sheet(
        LibreOfficeConverter().Convert(ReadWholeFile(m_Report.File.value()), "xlsx", "xlsx"));
    const auto calculated = [&sheet](const std::string& address) {
        return std::string(sheet.Cell("Audit", address).child("v").text().get());
    };
    for (std::size_t point = 0; point < shares.size(); ++point) {
        const bool passes = std::abs(shares.at(point)) < 1.0F;
        EXPECT_EQ(calculated(Cell('I', 17 + static_cast<int>(point))), passes ? "Pass" : "Fail");
        EXPECT_NE(result.Verdicts[0]->Log.at(point + 1).find(passes ? "Pass (" : "Fail ("),
                  std::string::npos)
            << result.Verdicts[0]->Log.at(point + 1);
        const float deviation = chart.MeanDeviation.at(point).value();
        EXPECT_EQ(deviation <= chart.UpperLimit.at(point).value() &&
                      deviation >= chart.LowerLimit.at(point).value(),
                  passes)
            << point;
    }
    // The letters that the criteria name stand above their columns.
    EXPECT_EQ(Cells(sheet, "Audit", {"F15", "G15", "L15", "M15"}), (Texts{"C", "D", "I", "J"}));
    EXPECT_EQ(calculated("H17") + "," + calculated("H20"), "|C|<5,D<1");
    EXPECT_EQ(calculated("N17") + "," + calculated("N20"), "|I|<0.2,J<1");
}

TEST_F(AuditSheetsTest, WhatWasNotMeasuredStaysEmpty) {
    WorkbookProbe book = Sheet(CancelledRun(CalibrationKind::Audit).Measured);
    EXPECT_EQ(Cells(book, "Audit", {"C23", "E24"}), (Texts{"45", "3001.5106"}));
    for (const char* address : {"E23", "K17", "N17", "O17", "C34", "E34"})
        EXPECT_EQ(book.Value("Audit", address), "") << address;
    EXPECT_FALSE(book.Formula("Audit", "I23").empty()) << "it shows a dash";
}

TEST_F(AuditSheetsTest, StepsStandBelowThePoints) {
    VelocityMeasurement run = GoodRun(CalibrationKind::Audit).Measured;
    run.Channels[1].Steps[1].Reading = {};
    WorkbookProbe book = Sheet(run);
    EXPECT_EQ(Cells(book, "Audit", {"C34", "D34", "E34", "C35", "D35"}),
              (Texts{"2", "300", "301", "4", "600"}));
    EXPECT_EQ(Cells(book, "Audit", {"J34", "K34", "J35", "K35", "F34"}),
              (Texts{"12", "13", "24", "", "=IF(E34=\"\",\"\",ABS(E34-D34))"}));
}

TEST_F(AuditSheetsTest, ThePressureSheetHasTheFlowsThreeTimes) {
    const StoredReport report =
        CreateAuditSheet_PV17(m_Bench.Reports, m_Bench.Record().Unit(), m_Bench.Bench.Time.Now(),
                              {0.0F, 1000.0F, 2000.0F, 3000.0F, 4000.0F}, false);
    EXPECT_EQ(report.File.value().filename(), "PV17_ACU00301_PressureAudit_40315_XX.xls");
    WorkbookProbe book = ProbeOf(report.File);
    EXPECT_EQ(Cells(book, "Audit", {"D6", "D7", "D8", "D9", "D10", "D11", "E19", "H20", "K23"}),
              (Texts{"QUILLON", "ACU00301", "5000", "200", "5", "0.3", "0", "1000", "4000"}));
    EXPECT_EQ(book.Value("Audit", "G19"),
              "=IF(F19=\"\",\"-\",IF(ABS(F19-$D19)<=$D$11,\"Pass\",\"Fail\"))");
}

} // namespace
} // namespace ombrix
