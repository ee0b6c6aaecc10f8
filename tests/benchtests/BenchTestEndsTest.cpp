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
        EXPECT_TRUE(outcome.Files.empty() || LinesOf(outcome).size() > 1);
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
    EXPECT_TRUE(outcome.Files.empty() || LinesOf(outcome).size() > 1);
    EXPECT_NE(outcome.Error.find("The board "), std::string::npos) << outcome.Error;
    EXPECT_NE(m_Bench->Messages.Shown.at(m_Bench->Messages.Shown.size() - 2).Text.find("FLOWING"),
              std::string::npos);
    EXPECT_TRUE(FindMark(*m_World, Board(0)->DevSerialNum())) << "for the next start";
    EXPECT_EQ(m_Bench->Messages.Shown.back().Text, GetParam().Heading + "\r\n\r\n" + outcome.Error);
}

TEST_P(BenchTestDisk, FullDiskLeavesWholeLinesOrNoFile) {
    Use(GetParam().Bench);
    m_Disk->WritesLeft = 3;
    Outcome outcome = RunIt();
    EXPECT_EQ(outcome.Ended, End::NotStored);
    EXPECT_EQ(LinesOf(outcome).size(), 3U);
    EXPECT_EQ(m_Bench->Messages.Shown.back().Icon, MessageIcon::Critical);
    EXPECT_LT(m_Bench->FlowLater_bits(), TestBench::NoFlow_bits);

    m_Disk->NoNewFiles = true;
    outcome = RunIt();
    EXPECT_EQ(outcome.Ended, End::NotStored);
    EXPECT_TRUE(outcome.Files.empty());
}

} // namespace
} // namespace ombrix
