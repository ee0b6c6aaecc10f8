#include "calibration/AuditSheets.h"

#include "calibration/CalibrationBench.h"
#include "calibration/MeasuredChannels.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

class AuditSheetsTest : public ::testing::Test {
  protected:
    AuditSheetsTest() { m_Bench.Bench.Messages.Answers = {Answer::No}; }
    WorkbookProbe Sheet(const VelocityMeasurement& measured) {
        m_Outcome = CreateAuditSheet_PV16(m_Bench.Services, m_Bench.Record(), measured, false);
        return ProbeOf(m_Outcome.File);
    }

    CalibrationBench m_Bench{"acu"};
    WorkbookOutcome m_Outcome;
};

struct CellContent {
    const char* Address;
    const char* Content;
};

void Expect(WorkbookProbe& book, std::initializer_list<CellContent> cells) {
    for (const CellContent& cell : cells)
        EXPECT_EQ(book.Value("Audit", cell.Address), cell.Content) << cell.Address;
}

TEST_F(AuditSheetsTest, TheVelocitySheetHasItsHeaderAndTexts) {
    const double now = m_Bench.Bench.Time.Now().Days();
    WorkbookProbe book = Sheet(GoodRun(CalibrationKind::Audit));
    EXPECT_EQ(m_Outcome.File.value().filename(), "PV16_ACU00301_VelocityAudit_40315_XX.xls");
    EXPECT_NEAR(std::stod(book.Value("Audit", "D5")), now, 1e-6);
    EXPECT_EQ(book.NumberFormat("Audit", "D5"), "yyyy-mm-dd hh:mm:ss");
    Expect(book, {{"B2", "SUGGESTED CALIBRATION METHOD FOR AN AERATION CONTROL UNIT "
                         "\xE2\x80\x98"
                         "AUDIT \xE2\x80\x98 CALIBRATION"},
                  {"C5", "Date:"},
                  {"D6", "QUILLON"},
                  {"D7", "ACU00301"},
                  {"D8", "5000"},
                  {"D9", "200"},
                  {"D10", "10"},
                  {"F7", "Serial Number of the Aeration Control Unit being calibrated"},
                  {"D13", "Calibration Results"},
                  {"C16", "Demand, % of Full Scale"},
                  {"J16", "Expected Value, ml/min"},
                  {"M16", "% Difference"},
                  {"O16", "Result, Pass/Fail"},
                  {"D28", "Channel"},
                  {"N28", "Version:"}});
}

TEST_F(AuditSheetsTest, PointsAreJudgedByTheSheet) {
    VelocityMeasurement run = GoodRun(CalibrationKind::Audit);
    run.Channels[0].Rising[0].Flow_ml_m = 150.00025F; // as a Single 150.00025
    run.Channels[0].Falling[0].Flow_ml_m = 151.0F;
    WorkbookProbe book = Sheet(run);
    Expect(book, {{"C17", "3"},
                  {"C26", "90"},
                  {"E17", "150.5001"},
                  {"H17", "=\"|C|<\" & 0.001*$D$8"},
                  {"I17", "=IF(E17=\"\",\"-\", IF(F17<($D$8*0.001), \"Pass\",\"Fail\"))"},
                  {"N19", "=\"|I|<\" & 0.001*$D$9"},
                  {"O19", "=IF(K19=\"\",\"-\", IF(L19<($D$9*0.001), \"Pass\",\"Fail\"))"},
                  {"H20", "=\"D<1\""},
                  {"I20", "=IF(E20=\"\",\"-\", IF(G20<1, \"Pass\",\"Fail\"))"},
                  {"N26", "=\"J<1\""},
                  {"O26", "=IF(K26=\"\",\"-\", IF(M26<1, \"Pass\",\"Fail\"))"},
                  // the template's own
                  {"D17", "=IF(C17=\"\",\"\",C17*$D$8/100)"},
                  {"F17", "=IF(E17=\"\",\"\",ABS(E17-D17))"},
                  {"M26", "=IF(K26=\"\",\"\",IF(J26=0,\"-\",L26/J26*100))"}});
}

TEST_F(AuditSheetsTest, WhatWasNotMeasuredStaysEmpty) {
    WorkbookProbe book = Sheet(CancelledRun(CalibrationKind::Audit));
    Expect(book, {{"C23", "45"},
                  {"E23", ""},
                  {"E24", "3001.5106"},
                  {"K17", ""},
                  {"N17", ""},
                  {"O17", ""},
                  {"C34", ""},
                  {"E34", ""}});
    EXPECT_FALSE(book.Formula("Audit", "I23").empty()) << "it shows a dash";
}

TEST_F(AuditSheetsTest, StepsStandBelowThePoints) {
    VelocityMeasurement run = GoodRun(CalibrationKind::Audit);
    run.Channels[1].Steps[1].Reading = {};
    WorkbookProbe book = Sheet(run);
    Expect(book, {{"C34", "2"},
                  {"D34", "300"},
                  {"E34", "301"},
                  {"C35", "4"},
                  {"D35", "600"},
                  {"J34", "12"},
                  {"K34", "13"},
                  {"J35", "24"},
                  {"K35", ""},
                  {"F34", "=IF(E34=\"\",\"\",ABS(E34-D34))"}});
}

TEST_F(AuditSheetsTest, ThePressureSheetHasTheFlowsThreeTimes) {
    const WorkbookOutcome outcome = CreateAuditSheet_PV17(
        m_Bench.Services, m_Bench.Record(), {0.0F, 1000.0F, 2000.0F, 3000.0F, 4000.0F}, false);
    EXPECT_EQ(outcome.File.value().filename(), "PV17_ACU00301_PressureAudit_40315_XX.xls");
    WorkbookProbe book = ProbeOf(outcome.File);
    Expect(book, {{"D6", "QUILLON"},
                  {"D7", "ACU00301"},
                  {"D8", "5000"},
                  {"D9", "200"},
                  {"D10", "5"},
                  {"D11", "0.3"},
                  {"E19", "0"},
                  {"H20", "1000"},
                  {"K23", "4000"},
                  {"G19", "=IF(F19=\"\",\"-\",IF(ABS(F19-$D19)<=$D$11,\"Pass\",\"Fail\"))"}});
}

} // namespace
} // namespace ombrix
