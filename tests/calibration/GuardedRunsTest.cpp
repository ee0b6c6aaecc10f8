// What the guard of the EPROM means for calibrations.
#include "calibration/CalibrationBench.h"
#include "calibration/history/HistoryText.h"
#include "support/WorkbookProbe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <deque>

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

TEST(NotStored, IsSaidInReportLogAndHistory) {
    const std::string lack = "Table not stored in the EPROM";
    const std::deque declined{Answer::Ok, Answer::No, Answer::Yes};
    for (const auto& [fault, answers, verdict] :
         {std::tuple("gain:0,1", declined, "passed, not stored"),
          {"eprom-readonly", {}, "not stored"},
          {"hysteresis:1,150", {}, "failed"},
          {"gain:0,1", {}, "passed"}}) {
        CalibrationBench bench("acu", {fault});
        bench.Bench.Messages.Answers = answers;
        const CalibrationOutcome outcome = bench.SetUp.RunVelocity(Kind::System);
        WorkbookProbe report(ReadWholeFile(outcome.Files.at(1)));
        EXPECT_EQ(report.Value("Report", "M6"), outcome.Saved ? "" : lack) << verdict;
        const std::string log = ReadWholeFile(outcome.Files.at(0));
        EXPECT_NE(log.find("\r\n" + lack + "\r\n") != std::string::npos, outcome.Saved) << verdict;
        const HistoryEntry run = ReadHistory(bench.Bench.Files, 301).Runs.at(0);
        EXPECT_EQ(ShownVerdict(run), verdict);
        EXPECT_NE(std::count(run.Reasons.begin(), run.Reasons.end(), lack), outcome.Saved);
        EXPECT_EQ(run.Eprom == "The EPROM is as it was.", !outcome.Saved) << run.Eprom;
    }
}

constexpr const char* AsItWas = "The EPROM is as it was.";
constexpr const char* NotPutBack = "Changed in the EPROM: solenoid valves, MFC number. It could "
                                   "not be put back: The EPROM";
constexpr const char* WithTable = "Changed in the EPROM: solenoid valves, velocity table, result "
                                  "of the velocity system calibration, MFC number.";

/// What ends an initialisation; its first table is stored after some 700 s.
struct Ending {
    const char* Name;
    const char* Bench;
    double At_s;
    /// "cancel", "end" of the program, or a fault of the bench.
    std::string What;
    End Ended;
    std::string Text;
};
class PutBackTest : public ::testing::TestWithParam<Ending> {
  protected:
    void Act() {
        if (GetParam().What == "cancel")
            m_Bench.Cancel();
        else if (GetParam().What == "end")
            m_Bench.Bench.Events.EndProgram();
        else
            m_Bench.Bench.Bench.SetFaults(Faults::Parse(std::array{GetParam().What}));
    }

    CalibrationBench m_Bench{GetParam().Bench, {}, GetParam().Bench == std::string("pair") ? 1 : 0};
};

TEST_P(PutBackTest, OnlyANewTableKeepsTheSetUpAndWhatIsSaidIsTrue) {
    const Ending& c = GetParam();
    PutWord(m_Bench.Board, ACUMemoryMap::HasSolenoidValves, 0);
    m_Bench.Record().ReadEPROMValues();
    const std::string found = m_Bench.Record().Record().MFCNumber;
    const std::vector<std::int32_t> before = m_Bench.Eprom();
    m_Bench.Bench.Events.At(c.At_s, [this] { Act(); });
    std::string number = "M1";
    const auto outcome = m_Bench.SetUp.RunACUInitialisation(number, true, false);
    m_Bench.Bench.Bench.SetFaults({}); // what the EPROM holds can be read again
    EXPECT_EQ(outcome.Ended, c.Ended);
    EXPECT_TRUE(m_Bench.Told().front().ends_with(
        "(PV16)\r\n\r\nThis changes in the EPROM:\r\n  Solenoid valves: no → yes"));
    EXPECT_TRUE(outcome.Eprom.starts_with(c.Text)) << outcome.Eprom;
    EXPECT_EQ(m_Bench.Eprom() == before, c.Text == AsItWas);
    const bool stays = c.Text == WithTable || c.Text == NotPutBack;
    EXPECT_EQ(m_Bench.Eprom().at(ACUMemoryMap::HasSolenoidValves / 4), stays ? -1 : 0);
    EXPECT_EQ(m_Bench.Record().Record().HasSolenoidValves, stays ? -1 : 0);
    EXPECT_EQ(m_Bench.Record().Record().MFCNumber != found, stays);
    EXPECT_TRUE(c.What == "end" || m_Bench.Told().back().ends_with(outcome.Eprom));
    const auto runs = ReadHistory(m_Bench.Bench.Files, m_Bench.Board.SerialNumber()).Runs;
    EXPECT_EQ(runs.back().Eprom, outcome.Eprom);
    EXPECT_EQ(runs.front().Found.HasSolenoidValves, 0) << "as found is before the set-up";
    EXPECT_EQ(runs.front().Found.ACUMFCNumber(), Trimmed(found));
}

INSTANTIATE_TEST_SUITE_P(
    Ends, PutBackTest,
    ::testing::ValuesIn(std::vector<Ending>{
        {"Cancel", "plain", 100, "cancel", End::Cancelled, AsItWas},
        {"CancelFireWire", "pair", 320, "cancel", End::Cancelled, AsItWas},
        {"CancelFresh", "fresh", 650, "cancel", End::Cancelled, AsItWas},
        {"CancelWithTable", "plain", 900, "cancel", End::Cancelled, WithTable},
        {"ProgramEnd", "plain", 100, "end", End::Cancelled, AsItWas},
        {"Lost", "plain", 100, "unplug@0", End::Stopped, NotPutBack},
        {"LostFireWire", "pair", 100, "unplug@0", End::Stopped, NotPutBack},
        {"LostWithTable", "plain", 900, "unplug@0", End::Stopped, WithTable},
        {"Refused", "plain", 100, "status:32@SetDAC", End::Stopped, AsItWas},
        {"RefusedFireWire", "pair", 100, "status:32@SetGPO", End::Stopped, AsItWas},
        {"RefusedWithTable", "plain", 900, "status:32@SetDAC", End::Stopped, WithTable},
        {"TableRefused", "plain", 100, "status:32@WriteEEPROM", End::NotStored, NotPutBack},
        {"NoTableFresh", "fresh", 1, "hysteresis:0,200", End::Failed, AsItWas},
        {"NoTable", "plain", 1, "hysteresis:0,900", End::Failed, AsItWas}}),
    [](const auto& info) { return info.param.Name; });

} // namespace
} // namespace ombrix
