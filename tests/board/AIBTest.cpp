#include "board/AIB.h"

#include "support/TestBench.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

std::int32_t SetPointOf(TestBench& bench, std::int32_t channel) {
    bench.Time.Advance(60.0);
    return bench.Bench.Board(0).FlowReading(channel, 1e6);
}

TEST(AIB, StatusTexts) {
    EXPECT_EQ(AIB::AIBErrorStr(0), "AIB No Error");
    EXPECT_EQ(AIB::AIBErrorStr(-1), "AIB Generic Hardware Error");
    EXPECT_EQ(AIB::AIBErrorStr(3), "AIB Access Denied");
    EXPECT_EQ(AIB::AIBErrorStr(32), "AIB Timeout");
    EXPECT_EQ(AIB::AIBErrorStr(-7), "[Unknown Error: -7]");
}

/// Counts and keeps what is sent, in place of a board.
class SentValues final : public AIBControl {
  public:
    std::vector<std::int32_t> FlowSetPoints;
    std::vector<std::int32_t> DACChannels;
    std::int32_t RawFlow = 0;
    AccessoryInfoBlock Record;
    std::int32_t Variable = 0x30000;

    std::int32_t OpenAIBAPI() override { return 1; }
    AIBStatus CloseAIBAPI() override { return 0; }
    AIBStatus GetAccessoryInfo(std::int32_t, AccessoryInfoBlock& record) override {
        record = Record;
        return 0;
    }
    AIBStatus UploadFPGAImage(std::int32_t, const std::string&) override { return 0; }
    AIBStatus WriteReg(std::int32_t, std::int32_t, std::int32_t) override { return 0; }
    AIBStatus ReadReg(std::int32_t, std::int32_t, std::int32_t&) override { return 0; }
    AIBStatus ConfigureGPIO(std::int32_t, std::int32_t) override { return 0; }
    AIBStatus SetGPO(std::int32_t, std::int32_t) override { return 0; }
    AIBStatus ClearGPO(std::int32_t, std::int32_t) override { return 0; }
    AIBStatus SetExtGPO(std::int32_t, std::int32_t) override { return 0; }
    AIBStatus ClearExtGPO(std::int32_t, std::int32_t) override { return 0; }
    AIBStatus GetGPI(std::int32_t, std::int32_t, std::int32_t&) override { return 0; }
    AIBStatus SetDAC(std::int32_t, std::int32_t channel, std::int32_t) override {
        DACChannels.push_back(channel);
        return 0;
    }
    AIBStatus GetADC(std::int32_t, std::int32_t, std::int32_t& value) override {
        value = 4711;
        return 0;
    }
    AIBStatus WriteAIBInfo(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {
        return 0;
    }
    AIBStatus WriteEEPROM(std::int32_t, std::int32_t, std::int32_t) override { return 0; }
    AIBStatus ReadEEPROM(std::int32_t, std::int32_t, std::int32_t&) override { return 0; }
    AIBStatus DumpEEPROM(std::int32_t, const std::string&) override { return 0; }
    AIBStatus MFCSetFlowrate(std::int32_t, std::int32_t, std::int32_t setPoint) override {
        FlowSetPoints.push_back(setPoint);
        return 0;
    }
    AIBStatus MFCGetFlowrate(std::int32_t, std::int32_t, std::int32_t& flow) override {
        flow = RawFlow;
        return 0;
    }
    AIBStatus MFCSetParameter(std::int32_t, const MFCParameter&, std::int32_t) override {
        return 0;
    }
    AIBStatus MFCGetParameter(std::int32_t, const MFCParameter&, std::int32_t&) override {
        return 0;
    }
    AIBStatus GetVariable(std::int32_t, std::int32_t, std::int32_t& value) override {
        value = Variable;
        return 0;
    }
    AIBStatus SetVariable(std::int32_t, std::int32_t, std::int32_t) override { return 0; }
};

class DigitalBoard : public ::testing::Test {
  protected:
    TestBench m_Bench;
    SentValues m_Library;
    AIB m_Board{{m_Library, m_Bench.World}};

    void SetUp() override { Identify(1, 1); }
    void Identify(std::int32_t busType, std::int32_t hwVersion) {
        m_Library.Record.BusType = busType;
        m_Library.Record.HWVersion = hwVersion;
        m_Board.GetAccessoryInfo(0);
        m_Board.CheckMFCReady();
    }
};

TEST_F(DigitalBoard, FlowDemandsAreHeldToTheScale) {
    m_Board.MFCSetFlowRate(0, 150.0F);
    m_Board.MFCSetFlowRate(0, -5.0F);
    m_Board.MFCSetFlowRate(0, 50.0F);
    EXPECT_EQ(m_Library.FlowSetPoints, (std::vector<std::int32_t>{32000, 0, 16000}));
}

TEST_F(DigitalBoard, ReadingsComeOnTheScaleOfTheConverters) {
    std::int32_t value = 0;
    m_Library.RawFlow = 32000;
    m_Board.GetADC(0, value);
    EXPECT_EQ(value, 65535);
    m_Library.RawFlow = 16000;
    m_Board.GetADC(1, value);
    EXPECT_EQ(value, 32768);
    EXPECT_EQ(m_Board.ADC(0), 4711) << "the converter itself, past the digital path";
}

TEST_F(DigitalBoard, OnlyTheAirChannelsGoToTheMFCs) {
    for (const std::int32_t channel : {0, 1, 2, 3})
        m_Board.SetDAC(channel, 65535);
    EXPECT_EQ(m_Library.FlowSetPoints, (std::vector<std::int32_t>{32000, 32000}));
    EXPECT_EQ(m_Library.DACChannels, (std::vector<std::int32_t>{2, 3}));
    EXPECT_EQ(m_Board.DAC(1), 65535);
    EXPECT_THROW(m_Board.SetDAC(4, 1), std::out_of_range);
    m_Board.IsDigitalSetup(false);
    m_Board.SetDAC(0, 1);
    EXPECT_EQ(m_Library.DACChannels.back(), 0);
}

TEST_F(DigitalBoard, NothingIsSentOrReadWhileTheMFCsAreNotReady) {
    m_Library.Variable = 0x10000;
    EXPECT_FALSE(m_Board.CheckMFCReady());
    m_Library.RawFlow = 100;
    std::int32_t value = 5;
    EXPECT_EQ(m_Board.GetADC(0, value), 0);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(m_Board.SetDAC(0, 100), 0);
    EXPECT_TRUE(m_Library.FlowSetPoints.empty());
}

struct ReadyCase {
    std::int32_t BusType;
    std::int32_t HWVersion;
    std::int32_t Variable;
    bool Digital;
    bool Ready;
};
class ReadyTest : public DigitalBoard, public ::testing::WithParamInterface<ReadyCase> {};

TEST_P(ReadyTest, FollowsBusVersionAndStatusWord) {
    m_Library.Variable = GetParam().Variable;
    Identify(GetParam().BusType, GetParam().HWVersion);
    EXPECT_EQ(m_Board.IsDigitalSetup(), GetParam().Digital);
    EXPECT_EQ(m_Board.MFCReady(), GetParam().Ready);
}

INSTANTIATE_TEST_SUITE_P(
    Boards, ReadyTest,
    ::testing::Values(ReadyCase{1, 0, 0, false, true}, ReadyCase{1, 1, 0x30000, true, true},
                      ReadyCase{1, 2, 0x20000, true, false}, ReadyCase{1, 3, 0x30000, true, false},
                      ReadyCase{2, 2, 0, false, true}, ReadyCase{9, 0, 0x30000, false, false}));

struct FPGACase {
    std::int32_t HWVersion;
    const char* File;
};
class FPGATest : public DigitalBoard, public ::testing::WithParamInterface<FPGACase> {};

TEST_P(FPGATest, FileFollowsTheHighHalfOfTheVersion) {
    Identify(1, GetParam().HWVersion);
    EXPECT_EQ(m_Board.FPGAFileName(), GetParam().File);
}

INSTANTIATE_TEST_SUITE_P(
    Versions, FPGATest,
    ::testing::Values(FPGACase{2, R"(C:\Program Files\Pulvatron\System\AIBCNF00.bin)"},
                      FPGACase{0x00010002, R"(C:\Program Files\Pulvatron\System\AIBCNF01.bin)"},
                      FPGACase{0x00030000, R"(C:\Program Files\Pulvatron\System\AIBCNF03.bit)"},
                      FPGACase{0x00040000, ""}, FPGACase{-1, ""}));

TEST_F(DigitalBoard, TheSecondSystemFolderServesWhenTheFirstLacksTheFile) {
    std::filesystem::remove(m_Bench.Folder.Path() / "Program Files/Pulvatron/System/AIBCNF00.bin");
    EXPECT_EQ(m_Board.FPGAFileName(), R"(C:\Program Files (x86)\Pulvatron\System\AIBCNF00.bin)");
    EXPECT_THROW(m_Board.StartFPGAUpload(), ProgramEnded);
    ASSERT_EQ(m_Bench.Messages.Shown.size(), 1U);
    EXPECT_EQ(m_Bench.Messages.Shown[0].Text,
              "An error occurred while trying to program the Aeration Control Unit\r\n\r\n"
              "The Following filehas not been found:\r\n\r\n"
              "   C:\\Program Files (x86)\\Pulvatron\\System\\AIBCNF00.bin\r\n\r\n"
              "The program will now end.\r\n\r\nOn this computer it is looked for in:\r\n\r\n   " +
                  m_Bench.Files.RealPath(Paths::SystemFolders[0]).string() + "\r\n   " +
                  m_Bench.Files.RealPath(Paths::SystemFolders[1]).string() +
                  "\r\n\r\nPlease put it there, or give its folder with --fpga-folder.");
}

TEST(AIBOnBench, AFailedCallIsPassedOnAndNoted) {
    TestBench bench("plain", {"status:32@SetGPO"});
    AIB& board = bench.Detect();
    EXPECT_EQ(board.SetGPO(1), 32);
    EXPECT_EQ(board.ClearGPO(1), 0);
    EXPECT_FALSE(board.StatusOK());
}

TEST(AIBOnBench, AStuckRegisterBitIsNamedOncePerBit) {
    TestBench bench("acu", {"stuck-bit:3", "stuck-bit:15"});
    WalkingFindings found;
    EXPECT_FALSE(bench.Detect().RunWalkingRegisterTest(&found));
    EXPECT_EQ(found.FailedBits, (std::vector<int>{3, 15}));
    ASSERT_EQ(bench.Messages.Shown.size(), 2U);
    EXPECT_EQ(bench.Messages.Shown[0].Text, "AIB Walking one bus error!");
}

TEST(AIBOnBench, DemandReachesTheController) {
    TestBench bench("acu");
    bench.Detect().SetDAC(0, 32767);
    EXPECT_NEAR(SetPointOf(bench, 0), 16000, 60);
}

TEST(AIB, TheFeedHasEveryReadingAndDemandWithItsAnswer) {
    TestBench bench("acu", {"status:32@ReadReg"});
    AIB& board = bench.Detect();
    std::vector<std::string> story;
    auto listener = bench.TheStation.Feed.Listen([&](const BoardNote& note) {
        constexpr std::array names = {"input", "output", "pressure"};
        story.push_back(fmt::format("{} {} {} {}", note.Board.SerialNumber(),
                                    names.at(static_cast<std::size_t>(note.What)), note.Channel,
                                    note.Value_bits.value_or(-1)));
        throw std::runtime_error("a listener's own trouble");
    });
    board.CheckMFCReady();
    board.SetDAC(0, 30000);
    board.SetDAC(3, 4000);
    const std::int32_t input = board.MyGetADC(3);
    std::int32_t value = 0;
    board.ReadReg(AIB::PressureRegister, value);
    EXPECT_TRUE(board.SwitchOutputsOff()) << "a listener's trouble is none of the board's";
    EXPECT_EQ(story, (std::vector<std::string>{
                         "301 output 0 30000", "301 output 3 4000",
                         fmt::format("301 input 3 {}", input), "301 pressure 0 -1",
                         "301 output 0 0", "301 output 1 0", "301 output 2 0", "301 output 3 0"}));
    listener = {};
    board.MyGetADC(3);
    EXPECT_EQ(story.size(), 8U);
}

} // namespace
} // namespace ombrix
