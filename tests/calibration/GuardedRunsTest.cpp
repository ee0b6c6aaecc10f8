// What the guard of the EPROM means for calibrations.
#include "calibration/CalibrationBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

using Kind = CalibrationKind;

struct GuardedRun {
    const char* Name;
    std::function<CalibrationOutcome(ACUSetUp&)> Run;
};
class GuardedRunsTest : public ::testing::TestWithParam<GuardedRun> {};

TEST_P(GuardedRunsTest, ABoardOfAnotherProgramIsNeitherWrittenNorDriven) {
    CalibrationBench bench("plain");
    BoardClaims other(bench.Bench.World);
    ASSERT_TRUE(other.Claim(303));
    constexpr std::int32_t drivenByTheOther = 4711;
    bench.Board.SetDAC(0, drivenByTheOther);
    const std::vector<std::int32_t> before = bench.Eprom();
    EXPECT_THROW(GetParam().Run(bench.SetUp), BoardInUse);
    EXPECT_EQ(bench.Board.DAC(0), drivenByTheOther);
    EXPECT_EQ(bench.Eprom(), before);
}

TEST_P(GuardedRunsTest, WhatTheEpromDoesNotHoldIsNotInTheRecord) {
    CalibrationBench bench("plain", {"eprom-readonly"});
    const ACURecord before = bench.Record().Record();
    const CalibrationOutcome outcome = GetParam().Run(bench.SetUp);
    EXPECT_EQ(outcome.Ended, End::NotStored);
    EXPECT_FALSE(outcome.Saved || outcome.AllStored);
    const ACURecord& after = bench.Record().Record();
    EXPECT_EQ(after.MFCNumber, before.MFCNumber);
    EXPECT_EQ(after.VelocityCal, before.VelocityCal);
    EXPECT_EQ(after.VelocitySystemDate, before.VelocitySystemDate);
    EXPECT_EQ(after.VelocityAuditDate, before.VelocityAuditDate);
    EXPECT_EQ(after.PressureCoeff, before.PressureCoeff);
    EXPECT_EQ(after.PressureAuditDate, before.PressureAuditDate);
}

INSTANTIATE_TEST_SUITE_P(
    Runs, GuardedRunsTest,
    ::testing::Values(GuardedRun{"Initialisation",
                                 [](ACUSetUp& setUp) {
                                     std::string number = "M1";
                                     return setUp.RunACUInitialisation(number, true, false);
                                 }},
                      GuardedRun{"VelocitySystem",
                                 [](ACUSetUp& setUp) { return setUp.RunVelocity(Kind::System); }},
                      GuardedRun{"VelocityAudit",
                                 [](ACUSetUp& setUp) { return setUp.RunVelocity(Kind::Audit); }},
                      GuardedRun{"PressureSystem",
                                 [](ACUSetUp& setUp) { return setUp.RunPressure(Kind::System); }},
                      GuardedRun{"PressureAudit",
                                 [](ACUSetUp& setUp) { return setUp.RunPressure(Kind::Audit); }}),
    [](const auto& info) { return info.param.Name; });

} // namespace
} // namespace ombrix
