// The ways in which a procedure on the bench ends early, the same for each of them.
#include "benchtests/AirFlowTest.h"
#include "benchtests/BenchTestFixture.h"
#include "benchtests/DigitalMFCTest.h"
#include "benchtests/OutputSweep.h"
#include "benchtests/SpeedTest.h"
#include "benchtests/TestRigRun.h"
#include "board/procedure/BoardClaims.h"

#include <fmt/format.h>

namespace ombrix {
namespace {

class BenchTestEnds;

struct Procedure {
    std::string Heading;
    std::string Bench;
    /// In the middle of a demand.
    double LeftAt_s;
    Outcome (BenchTestEnds::*Run)();
};

class BenchTestEnds : public BenchTestFixture, public ::testing::WithParamInterface<Procedure> {
  public:
    Outcome RunAirFlow() {
        AirFlowTest test(*m_Station);
        return Run([&] { return test.TestAirFlow({}); });
    }
    Outcome RunDigitalMFCs() {
        DigitalMFCTest test(*m_Station);
        return Run([&] { return test.Run({}); });
    }
    Outcome RunSweep() {
        OutputSweep sweep(*m_Station);
        return Run([&] { return sweep.Run(SweepPlan::UpperHalf(), {}); });
    }
    Outcome RunSpeed() {
        m_Bench->Events.EveryPass = [this] { m_Bench->Time.Advance(0.001); };
        SpeedTest test(*m_Station, [] {});
        return Run([&] { return test.Run({}); });
    }
    Outcome RunRig() {
        struct : TestRigView {
            void ShowSteps(const std::vector<TestRigStep>& /*steps*/) override {}
            void BeginProgress(const RampStep& /*ramp*/) override {}
            void ShowProgress(double /*elapsed_s*/) override {}
        } unseen;
        TestRigRun rig(*m_Station, unseen);
        return Run([&] { return rig.Run(TestRigJob::LoopThrough); });
    }

  protected:
    Outcome RunIt() { return (this->*GetParam().Run)(); }

  private:
    template <class Work>
    Outcome Run(Work work) {
        const bool digital = m_Station->CurrentAIB->IsDigitalSetup();
        Outcome outcome = work();
        ExpectLeftSafely();
        EXPECT_EQ(m_Station->CurrentAIB->IsDigitalSetup(), digital);
        return outcome;
    }
};

class BenchTestDisk : public BenchTestEnds {};

const std::vector<Procedure> Filing = {
    {"The air flow test has been stopped.", "airflow", 20.0, &BenchTestEnds::RunAirFlow},
    {"The test of the digital MFCs has been stopped.", "acu", 15.0, &BenchTestEnds::RunDigitalMFCs},
    {"The air test has been stopped.", "acu", 10.0, &BenchTestEnds::RunSweep},
    {"The test rig job has been stopped.", "rig", 10.0, &BenchTestEnds::RunRig}};
// Set-points go out also to a board that has analog MFCs only.
const std::vector<Procedure> Speed = {
    {"The speed test has been stopped.", "acu", 0.5, &BenchTestEnds::RunSpeed},
    {"The speed test has been stopped.", "plain", 2.5, &BenchTestEnds::RunSpeed}};

INSTANTIATE_TEST_SUITE_P(Filing, BenchTestEnds, ::testing::ValuesIn(Filing));
INSTANTIATE_TEST_SUITE_P(Speed, BenchTestEnds, ::testing::ValuesIn(Speed));
INSTANTIATE_TEST_SUITE_P(Filing, BenchTestDisk, ::testing::ValuesIn(Filing));

TEST_P(BenchTestEnds, CancelAndTheEndOfTheProgramKeepWhatWasMeasured) {
    for (const bool programEnds : {false, true}) {
        Use(GetParam().Bench);
        At(GetParam().LeftAt_s, [&] { programEnds ? m_Bench->Events.EndProgram() : Cancel(); });
        const Outcome outcome = RunIt();
        EXPECT_EQ(outcome.Ended, End::Cancelled);
        EXPECT_NEAR(Now_s(), GetParam().LeftAt_s, 0.01);
        EXPECT_TRUE(outcome.Files.empty() ||
                    LinesOf(outcome).back() == "Cancelled by the operator");
        for (const Message& message : m_Bench->Messages.Shown)
            EXPECT_NE(message.Icon, MessageIcon::Critical) << message.Text;
        EXPECT_LT(m_Bench->FlowLater_bits(), TestBench::NoFlow_bits);
    }
}

TEST_P(BenchTestEnds, BoardThatIsGoneEndsItWithinASecond) {
    Use(GetParam().Bench, {fmt::format("unplug@{}", GetParam().LeftAt_s)});
    const Outcome outcome = RunIt();
    EXPECT_EQ(outcome.Ended, End::Stopped);
    EXPECT_NEAR(Now_s(), GetParam().LeftAt_s + 1.0, 0.2);
    const std::string reason = outcome.Error.substr(0, outcome.Error.find("\r\n"));
    EXPECT_TRUE(outcome.Files.empty() || LinesOf(outcome).back() == "Stopped: " + reason);
    EXPECT_TRUE(reason.starts_with("The board ")) << outcome.Error;
    EXPECT_NE(m_Bench->Messages.Shown.at(m_Bench->Messages.Shown.size() - 2).Text.find("FLOWING"),
              std::string::npos);
    EXPECT_TRUE(FindMark(*m_World, Board(0)->DevSerialNum())) << "for the next start";
    EXPECT_EQ(m_Bench->Messages.Shown.back().Text, GetParam().Heading + "\r\n\r\n" + outcome.Error);
}

TEST_P(BenchTestDisk, FullDiskLosesNoLineAndTheOperatorHearsWhereTheyAre) {
    Use(GetParam().Bench);
    const std::vector<std::string> whole = LinesOf(RunIt());
    // The table of the digital MFCs comes after its samples, of which none stays behind.
    const bool isTable = whole.size() == 3521;
    Use(GetParam().Bench);
    m_Disk->WritesLeft = isTable ? 2 * 3320 + 1 + 3 : 3;
    Outcome outcome = RunIt();
    EXPECT_EQ(outcome.Ended, End::Passed);
    EXPECT_FALSE(outcome.AllStored);
    // Of the test rig the file of the last ramp, which finds no room from the beginning.
    const bool isRig = GetParam().Bench == "rig";
    ASSERT_EQ(outcome.Files.size(), 2U);
    std::vector<std::string> lines = LinesOf(outcome.Files[0]);
    EXPECT_EQ(lines.size(), isRig ? 0U : 3U);
    const std::vector<std::string> kept = LinesOf(outcome.Files[1]);
    if (isTable || isRig)
        lines.clear(); // the other one is whole
    lines.insert(lines.end(), kept.begin() + (lines.empty() ? 0 : 1), kept.end());
    EXPECT_EQ(lines, whole);
    EXPECT_EQ(kept[0], whole[0]);
    EXPECT_NE(outcome.KeptElsewhere.find(outcome.Files[1].string()), std::string::npos);
    EXPECT_EQ(m_Bench->Messages.Shown.back().Text, outcome.KeptElsewhere);
    for (const auto& file : std::filesystem::directory_iterator(m_Bench->Folder.Path()))
        EXPECT_EQ(file.path().string().find("samples"), std::string::npos);

    m_Disk->WritesLeft = m_Disk->WritesLeftElsewhere = 3;
    outcome = RunIt();
    EXPECT_EQ(outcome.Ended, End::NotStored);
    ASSERT_EQ(outcome.Files.size(), 2U);
    EXPECT_EQ(LinesOf(outcome.Files[0]).size() + LinesOf(outcome.Files[1]).size(), 6U);
    EXPECT_LT(m_Bench->FlowLater_bits(), TestBench::NoFlow_bits);

    m_Disk->NoNewFiles = true;
    outcome = RunIt();
    EXPECT_EQ(outcome.Ended, End::NotStored);
    EXPECT_TRUE(outcome.Files.empty());
}

} // namespace
} // namespace ombrix
