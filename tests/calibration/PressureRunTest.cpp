#include "calibration/CalibrationBench.h"
#include "platform/text/Text.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>

namespace ombrix {
namespace {

using Kind = CalibrationKind;

class PressureRunTest : public ::testing::Test {
  protected:
    void Use(const std::string& bench, const std::vector<std::string>& faults = {}) {
        m_Bench = std::make_unique<CalibrationBench>(bench, faults);
        m_Before = m_Bench->Eprom();
    }
    CalibrationOutcome Run(Kind kind) {
        CalibrationOutcome outcome = m_Bench->SetUp.RunPressure(kind);
        EXPECT_TRUE(m_Bench->Board.DAC(0) + m_Bench->Board.DAC(1) == 0 ||
                    m_Bench->Bench.TheStation.AirMayFlow);
        EXPECT_FALSE(m_Bench->Bench.TheStation.Procedures.Running());
        return outcome;
    }
    std::string Log(const CalibrationOutcome& outcome) const {
        return ReadWholeFile(outcome.Files.at(0));
    }
    bool Told(const std::string& text) const {
        const auto told = m_Bench->Told();
        return std::any_of(told.begin(), told.end(), [&text](const std::string& message) {
            return message.find(text) != std::string::npos;
        });
    }

    std::unique_ptr<CalibrationBench> m_Bench;
    std::vector<std::int32_t> m_Before;
};

class PressureSystemTest : public PressureRunTest,
                           public ::testing::WithParamInterface<const char*> {};

TEST_P(PressureSystemTest, RecoversTheBenchsBackPressure) {
    Use(GetParam());
    // The factory's record holds the bench's own polynomial.
    const std::array<float, 4> expected = m_Bench->Record().Record().PressureCoeff;
    const CalibrationOutcome outcome = Run(Kind::System);
    EXPECT_TRUE(outcome.Passed && outcome.Saved);
    EXPECT_TRUE(Told("ACU Pressure System Caibration Passed"));
    const ACURecord record = m_Bench->Stored();
    for (const float flow : {0.0F, 1000.0F, 2500.0F, 4000.0F}) {
        const auto bits = [flow](const std::array<float, 4>& c) {
            return c[0] + c[1] * flow + c[2] * flow * flow;
        };
        EXPECT_NEAR(bits(record.PressureCoeff), bits(expected), 3.0F) << flow;
    }
    EXPECT_EQ(record.BaseDiameter, 50.0F);
    EXPECT_EQ(record.PressureSystemPassed, 1);
    EXPECT_TRUE(record.LastCalDone_Pressure_System().User.starts_with("QUILLON "));

    // The log tells the readings that the polynomial was made of.
    const std::string log = Log(outcome);
    EXPECT_NE(log.find("Flow Rate: 3000.00 lm/min\r\n   Result: "), std::string::npos);
    EXPECT_NE(log.find("\r\n4,4000.00,"), std::string::npos);
    EXPECT_NE(log.find(fmt::format("\r\n2,{}\r\n", GeneralText(record.PressureCoeff[2]))),
              std::string::npos);
    EXPECT_TRUE(log.ends_with("Values Written to EPROM\r\n"));
}

INSTANTIATE_TEST_SUITE_P(Benches, PressureSystemTest, ::testing::Values("plain", "acu"));

TEST_F(PressureRunTest, AfterItAnOpenBaseReadsZeroAtAnyFlow) {
    Use("plain");
    Run(Kind::System);
    const CalibrationOutcome audit = Run(Kind::Audit);
    EXPECT_TRUE(audit.Passed);
    EXPECT_TRUE(Told("ACU Pressure Audit Caibration Passed"));
    EXPECT_EQ(audit.Files.size(), 2U) << "log and audit sheet";
    EXPECT_TRUE(m_Bench->Record().Record().LastCalDone_Pressure_Audit().Passed);
    EXPECT_NE(Log(audit).find("Audit Calibration Passed:  Base Index: 0  (50 mm)"),
              std::string::npos);
    AirChannelControl air(m_Bench->Bench.TheStation);
    air.SetAirVelocityInternal_ml_m(2700.0F, 0);
    m_Bench->Bench.Time.Advance(5.0);
    EXPECT_NEAR(air.PressureGet_mBar().value(), 0.0F, 0.5F);
    air.PressureZero();
    EXPECT_NEAR(air.PressureGet_mBar().value(), 0.0F, 0.3F);
}

TEST_F(PressureRunTest, TooMuchOffsetFailsTheAuditAsTooLittleDoes) {
    Use("plain");
    const float slope = m_Bench->Record().Record().PressureCoeff[1];
    PutWord(m_Bench->Board, 756, std::bit_cast<std::int32_t>(2.0F * slope));
    m_Bench->Record().ReadEPROMValues();
    const CalibrationOutcome audit = Run(Kind::Audit);
    EXPECT_FALSE(audit.Passed);
    EXPECT_NE(Log(audit).find("Calibration Point Passed: 0:  0.00:"), std::string::npos);
    EXPECT_NE(Log(audit).find("Calibration Point Failed: 4:  4000.00:  -"), std::string::npos);
}

TEST_F(PressureRunTest, WithValvesTheOffsetIsThatOfTheChannelTheyLetThrough) {
    Use("acu");
    EXPECT_TRUE(Run(Kind::System).Saved);
    EXPECT_TRUE(Run(Kind::Audit).Passed);
    EXPECT_TRUE(m_Bench->Record().Record().LastCalDone_Pressure_Audit().Passed);
}

TEST_F(PressureRunTest, TheOperatorSeesWhatIsGoingOn) {
    Use("plain");
    m_Bench->Bench.Events.At(25.0, [this] {
        // 18 s at zero, then the first point.
        EXPECT_EQ(m_Bench->Stages.Lines[0], "Air Pressure Calibration - Phase 1 of 5");
        EXPECT_EQ(m_Bench->Stages.Lines[1], "Initialising Calibration Point");
        EXPECT_EQ(m_Bench->Stages.Lines[2], "Flow rate: 0 ml/min");
        EXPECT_TRUE(m_Bench->Stages.Lines[3].starts_with("Current pressure: "));
        EXPECT_EQ(m_Bench->Stages.Span_s, 15.0F);
    });
    m_Bench->Bench.Events.At(34.0, [this] {
        EXPECT_EQ(m_Bench->Stages.Lines[1], "Recording Calibration Data");
        EXPECT_EQ(m_Bench->Stages.Span_s, 3.0F);
        m_Bench->Cancel();
    });
    EXPECT_EQ(Run(Kind::System).Ended, End::Cancelled);
}

class PressureCancelTest : public PressureRunTest,
                           public ::testing::WithParamInterface<std::tuple<Kind, double>> {};

TEST_P(PressureCancelTest, StoresNothing) {
    Use("plain");
    const auto [kind, at_s] = GetParam();
    if (at_s == 0.0)
        m_Bench->Bench.Messages.Answers = {Answer::Cancel};
    else
        m_Bench->Bench.Events.At(at_s, [this] { m_Bench->Cancel(); });
    const CalibrationOutcome outcome = Run(kind);
    EXPECT_EQ(outcome.Ended, End::Cancelled);
    EXPECT_FALSE(outcome.Passed || outcome.Saved);
    EXPECT_EQ(m_Bench->Stages.Results, std::vector<std::string>{"Aborted"});
    EXPECT_EQ(m_Bench->Eprom(), m_Before);
    EXPECT_LT(m_Bench->Bench.FlowLater_bits(), TestBench::NoFlow_bits);
    if (at_s > 0.0) {
        EXPECT_NE(Log(outcome).find("Calibration Terminated by User"), std::string::npos);
    }
}

INSTANTIATE_TEST_SUITE_P(Phases, PressureCancelTest,
                         ::testing::Combine(::testing::Values(Kind::System, Kind::Audit),
                                            ::testing::Values(0.0, 5.0, 17.0, 60.0, 70.5)));

TEST_F(PressureRunTest, ALostBoardEndsTheRun) {
    Use("plain", {"unplug@40"});
    const CalibrationOutcome outcome = Run(Kind::System);
    EXPECT_EQ(outcome.Ended, End::Stopped);
    EXPECT_TRUE(Told("The board does not answer"));
    EXPECT_EQ(m_Bench->Stages.Results, std::vector<std::string>{"Run: Failed"});
    EXPECT_NE(Log(outcome).find("Calibration stopped: The board does not answer"),
              std::string::npos);
}

TEST_F(PressureRunTest, UnitsThatCannotBeMeasuredAreToldSo) {
    Use("fresh");
    EXPECT_FALSE(Run(Kind::System).Passed);
    EXPECT_TRUE(Told("before the velocity"));

    Use("plain");
    PutWord(m_Bench->Board, 600, 0);
    m_Bench->Record().ReadEPROMValues();
    EXPECT_FALSE(Run(Kind::Audit).Passed);
    EXPECT_TRUE(Told("\"Pressure Sensor…\" in the Tools menu"));
}

} // namespace
} // namespace ombrix
