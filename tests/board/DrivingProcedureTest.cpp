#include "board/procedure/DrivingProcedure.h"

#include "board/procedure/BoardClaims.h"
#include "board/procedure/SafeOutputs.h"
#include "support/TestBench.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

class DrivingProcedureTest : public ::testing::Test {
  protected:
    bool Marked() { return FindMark(m_Bench.World, m_Board->DevSerialNum()).has_value(); }
    void Drive() {
        for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
            m_Board->SetDAC(channel, 30000);
    }

    TestBench m_Bench;
    std::shared_ptr<AIB> m_Board = (m_Bench.Detect(), m_Bench.TheStation.CurrentAIB);
};

TEST_F(DrivingProcedureTest, AnExceptionLeavesEveryOutputOffAndNoMark) {
    const auto procedure = [this] {
        DrivingProcedure running(m_Bench.TheStation, "air test", {{m_Board}});
        running.Begin();
        EXPECT_TRUE(Marked());
        Drive();
        throw std::bad_alloc();
    };
    EXPECT_THROW(procedure(), std::bad_alloc);
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
        EXPECT_EQ(m_Bench.Bench.Board(0).DAC(channel), 0);
    EXPECT_LT(m_Bench.FlowLater_bits(), TestBench::NoFlow_bits);
    EXPECT_FALSE(Marked());
    EXPECT_FALSE(m_Bench.TheStation.Procedures.Running());
    EXPECT_TRUE(m_Bench.Messages.Shown.empty());
}

TEST_F(DrivingProcedureTest, OutputsOfTheModeThatIsNotSelectedAreSwitchedOffToo) {
    m_Board->IsDigitalSetup(false);
    Drive();
    m_Board->IsDigitalSetup(true);
    EXPECT_TRUE(m_Board->SwitchOutputsOff());
    EXPECT_EQ(m_Bench.Bench.Board(0).DAC(0), 0);
    EXPECT_TRUE(m_Board->IsDigitalSetup());

    TestBench refusing("acu", {"status:32@MFCSetFlowrate", "not-ready:0"});
    AIB& board = refusing.Detect();
    board.IsDigitalSetup(false);
    EXPECT_FALSE(board.SwitchOutputsOff()) << "the digital demands were not tried";

    const Faults noLink = Faults::Parse(std::vector<std::string>{"status:32@MFCSetFlowrate"});
    for (const std::int32_t index : {0, 1}) { // analog MFCs by USB, FireWire
        TestBench analog("pair");
        AIB& driven = analog.Detect(index);
        analog.Bench.SetFaults(noLink);
        driven.SetDAC(0, 30000);
        EXPECT_TRUE(driven.SwitchOutputsOff()) << "a link that was never used matters to nobody";
        analog.Bench.SetFaults({});
        driven.IsDigitalSetup(true);
        driven.SetDAC(0, 30000);
        driven.IsDigitalSetup(false);
        analog.Bench.SetFaults(noLink);
        EXPECT_FALSE(driven.SwitchOutputsOff());
        analog.Bench.SetFaults({});
        EXPECT_TRUE(driven.SwitchOutputsOff());
        EXPECT_LT(analog.FlowLater_bits(index), TestBench::NoFlow_bits);
    }
}

TEST_F(DrivingProcedureTest, WhatTheOperatorDrivesGoesOnWhenNothingWasDriven) {
    Drive();
    {
        DrivingProcedure running(m_Bench.TheStation, "calibration", {{m_Board}});
        running.Begin();
        running.LeaveOutputs();
    }
    EXPECT_EQ(m_Bench.Bench.Board(0).DAC(2), 30000);
    EXPECT_FALSE(Marked());
}

TEST_F(DrivingProcedureTest, BoardOfAnotherProgramIsNotTouched) {
    BoardClaims other(m_Bench.World);
    ASSERT_TRUE(other.Claim(m_Board->DevSerialNum()));
    LeaveMark(m_Bench.World, m_Board->DevSerialNum(), "its own");
    Drive(); // as the other program does
    {
        DrivingProcedure running(m_Bench.TheStation, "air test", {{m_Board}});
        EXPECT_THROW(running.Begin(), BoardInUse);
    }
    SwitchAllOff(m_Bench.TheStation);
    EXPECT_EQ(m_Bench.Bench.Board(0).DAC(2), 30000);
    EXPECT_TRUE(Marked());
}

TEST(OutputsOff, BoardThatRefusesOneOutputIsToldAboutAndTheOthersAreOff) {
    TestBench bench("acu", {"status:32@MFCSetFlowrate"});
    bench.Detect();
    SwitchAllOff(bench.TheStation);
    EXPECT_TRUE(bench.Messages.Shown.empty()) << "nothing was ever driven";
    bench.TheStation.CurrentAIB->SetDAC(2, 30000);
    SwitchAllOff(bench.TheStation);
    ASSERT_EQ(bench.Messages.Shown.size(), 1U);
    EXPECT_NE(bench.Messages.Shown[0].Text.find("Board 301 (USB)"), std::string::npos);
    EXPECT_EQ(bench.Bench.Board(0).DAC(2), 0);
    EXPECT_TRUE(bench.TheStation.AirMayFlow);
    EXPECT_TRUE(FindMark(bench.World, 301)) << "for the next start";
}

TEST(OutputsOff, MarkOfAnEarlierProgramStaysForTheDetectionThatProgramsTheBoard) {
    TestBench bench;
    bench.Detect();
    LeaveMark(bench.World, 301, "air test");
    EXPECT_TRUE(SwitchAllOff(bench.TheStation)); // as at the end for want of an FPGA file
    EXPECT_TRUE(FindMark(bench.World, 301)) << "an FPGA without its program may have taken nothing";
    bench.TheStation.CurrentAIB->SetDAC(2, 30000);
    EXPECT_TRUE(SwitchAllOff(bench.TheStation));
    EXPECT_FALSE(FindMark(bench.World, 301));
}

TEST(Recovery, AMarkedBoardThatIsNotThereIsWarnedOf) {
    TestBench bench("none");
    LeaveMark(bench.World, 301, "air test");
    TellOfMissingBoards(bench.TheStation);
    ASSERT_EQ(bench.Messages.Shown.size(), 1U);
    EXPECT_NE(bench.Messages.Shown[0].Text.find("Board 301: \"air test\""), std::string::npos);
}

TEST(Recovery, EveryBoardThatWasDrivenByHandIsSwitchedOff) {
    TestBench bench("pair");
    bench.Detect();
    const Boards boards = bench.TheStation.AIBList.Boards();
    ASSERT_EQ(boards.size(), 2U);
    for (const auto& board : boards) {
        const std::int32_t serial = board->DevSerialNum();
        bench.TheStation.Outputs.Set(*board, 2, 30000);
        EXPECT_EQ(FindMark(bench.World, serial)->Procedure, "driving by hand");
        bench.TheStation.Outputs.Set(*board, 2, 0);
        EXPECT_FALSE(FindMark(bench.World, serial)) << "nothing is driven any more";
        bench.TheStation.Outputs.Set(*board, 1, 20000);
        bench.TheStation.Outputs.Set(*board, 2, 30000);
        bench.TheStation.Outputs.Set(*board, 1, 0);
        EXPECT_TRUE(FindMark(bench.World, serial)) << "another output still drives";
    }
    // The program is gone here; the next one finds both.
    FinishRecovery(bench.TheStation, SwitchOffUnfinished(bench.TheStation));
    ASSERT_EQ(bench.Messages.Shown.size(), 1U);
    for (const auto& board : boards) {
        const std::int32_t serial = board->DevSerialNum();
        EXPECT_EQ(bench.Bench.Board(board->BoardIndex()).DAC(2), 0);
        EXPECT_FALSE(FindMark(bench.World, serial));
        EXPECT_NE(bench.Messages.Shown[0].Text.find(fmt::format("outputs of board {} on", serial)),
                  std::string::npos);
    }
}

TEST(Recovery, ADemandThatWasRefusedLeavesItsMark) {
    TestBench bench("acu", {"status:32@SetDAC"});
    AIB& board = bench.Detect();
    EXPECT_FALSE(bench.TheStation.Outputs.Set(board, 2, 30000).Taken());
    EXPECT_TRUE(FindMark(bench.World, 301)) << "it may have been taken all the same";
}

TEST(Recovery, ALockThatCannotBeTakenDoesNotKeepTheAirOn) {
    TestBench bench;
    LeaveMark(bench.World, 301, "air test");
    bench.Detect().SetDAC(2, 30000);
    std::filesystem::create_directory(bench.Folder.Path() / "Claims/AIB_00301.lock");
    EXPECT_EQ(SwitchOffUnfinished(bench.TheStation).size(), 1U);
    EXPECT_EQ(bench.Bench.Board(0).DAC(2), 0);
}

TEST_F(DrivingProcedureTest, TheMarkOfAnEarlierProcedureStaysUntilTheOutputsAreOff) {
    LeaveMark(m_Bench.World, 301, "earlier");
    for (const bool leave : {true, false}) {
        DrivingProcedure running(m_Bench.TheStation, "calibration", {{m_Board}});
        running.Begin();
        EXPECT_EQ(FindMark(m_Bench.World, 301)->Procedure, "earlier");
        if (leave)
            running.LeaveOutputs();
    }
    EXPECT_FALSE(Marked());
}

} // namespace
} // namespace ombrix
