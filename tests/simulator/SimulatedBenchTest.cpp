#include "support/TestBench.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ombrix {
namespace {

double MeanReading(TestBench& bench, clsAIB& board, std::int32_t channel) {
    constexpr int samples = 500;
    double sum = 0.0;
    for (int i = 0; i < samples; ++i) {
        bench.Time.Advance(0.01);
        sum += board.MyGetADC(channel);
    }
    return sum / samples;
}

/// Mean reading of a channel once a demand has settled.
double Settled(TestBench& bench, clsAIB& board, std::int32_t channel, std::int32_t demand) {
    board.SetDAC(channel, demand);
    bench.Time.Advance(1.5);
    return MeanReading(bench, board, channel);
}

class HealthyBench : public ::testing::TestWithParam<const char*> {};

TEST_P(HealthyBench, SettlesWithinASecondNearItsDemand) {
    TestBench bench(GetParam());
    clsAIB& board = bench.Detect();
    for (const std::int32_t channel : {0, 1}) {
        board.SetDAC(channel, 32767);
        bench.Time.Advance(0.05);
        const std::int32_t early = board.MyGetADC(channel);
        EXPECT_GT(early, 3000);
        EXPECT_LT(early, 30000) << "a flow takes its time";
        bench.Time.Advance(0.95);
        EXPECT_NEAR(board.MyGetADC(channel), 32767, 200);
        board.SetDAC(channel, 0);
        bench.Time.Advance(1.5);
        EXPECT_LT(board.MyGetADC(channel), 30);
    }
}

TEST_P(HealthyBench, HysteresisStaysFarBelowTheLimit) {
    TestBench bench(GetParam());
    clsAIB& board = bench.Detect();
    const double rising = Settled(bench, board, 0, 20000);
    Settled(bench, board, 0, 60000);
    const double falling = Settled(bench, board, 0, 20000);
    EXPECT_GT(falling - rising, 5.0);
    EXPECT_LT(falling - rising, 60.0);
}

INSTANTIATE_TEST_SUITE_P(Benches, HealthyBench, ::testing::Values("acu", "plain", "fresh"));

TEST(BenchFaults, EachSpoilsWhatItNames) {
    {
        TestBench bench("plain", {"hysteresis:0,132"});
        clsAIB& board = bench.Detect();
        const double rising = Settled(bench, board, 0, 20000);
        Settled(bench, board, 0, 60000);
        EXPECT_GT(Settled(bench, board, 0, 20000) - rising, 133.0);
    }
    {
        TestBench bench("plain", {"gain:1,3"});
        clsAIB& board = bench.Detect();
        EXPECT_NEAR(Settled(bench, board, 1, 40000), 41200, 100);
        EXPECT_NEAR(Settled(bench, board, 0, 40000), 40000, 100);
    }
    {
        TestBench bench("plain", {"no-air"});
        EXPECT_LT(Settled(bench, bench.Detect(), 0, 40000), 10.0);
    }
    {
        TestBench bench("acu", {"pressure-frozen"});
        clsAIB& board = bench.Detect();
        std::int32_t first = 0;
        std::int32_t second = 0;
        board.ReadReg(92, first);
        board.SetDAC(0, 60000);
        bench.Time.Advance(2.0);
        board.ReadReg(92, second);
        EXPECT_EQ(first, second);
    }
    {
        TestBench bench("acu", {"not-ready:1"});
        EXPECT_FALSE(bench.Detect().MFCReady());
    }
    {
        TestBench bench("acu", {"unplug@5"});
        clsAIB& board = bench.Detect();
        std::int32_t value = 0;
        EXPECT_EQ(board.GetADC(2, value), Status::NoError);
        bench.Time.Advance(5.0);
        EXPECT_EQ(board.GetADC(2, value), Status::HardwareError);
    }
}

TEST(BenchFaults, TextsThatNameNoneAreRejected) {
    for (const char* text :
         {"status", "status:x", "status:1@NoSuchCall", "stuck-bit:16", "not-ready:2",
          "hysteresis:0", "gain:0,", "unplug@", "unplug@-1", "no-air:1", "no-water", ""}) {
        const std::string fault = text;
        EXPECT_THROW(Faults::Parse({&fault, 1}), FaultError) << text;
    }
}

TEST(Bench, PressureFollowsTheFlowOnTheLine) {
    TestBench bench("acu");
    clsAIB& board = bench.Detect();
    const double atRest = MeanReading(bench, board, 2);
    Settled(bench, board, 0, 60000);
    const double flowing = MeanReading(bench, board, 2);
    EXPECT_GT(flowing - atRest, 150.0);
    board.ClearExtGPO(8); // the valve takes the large channel off the line
    EXPECT_NEAR(MeanReading(bench, board, 2), atRest, 3.0);
}

TEST(Bench, SameSeedSameReadings) {
    TestBench first;
    TestBench second;
    clsAIB& board = first.Detect();
    clsAIB& twin = second.Detect();
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(board.MyGetADC(2), twin.MyGetADC(2));
}

TEST(Bench, BoardsOfTheRigAreWiredBackToBack) {
    TestBench bench("rig");
    bench.Detect(1).SetDAC(3, 30000);
    EXPECT_NEAR(bench.TheStation.g_AIBList.AIB(0)->MyGetADC(3), 30000, 10);
    EXPECT_NEAR(bench.TheStation.g_AIBList.AIB(1)->MyGetADC(3), 0, 10);
}

TEST(Bench, TheMeasureBoardSeesTheFlowBoardsLine) {
    TestBench bench("airflow");
    bench.Detect(0).SetDAC(0, 65534);
    bench.Time.Advance(2.0);
    EXPECT_NEAR(bench.TheStation.g_AIBList.AIB(1)->MyGetADC(0), 32767, 200);
}

TEST(Bench, EpromAndIdentityOutliveTheProgram) {
    const TemporaryFolder folder;
    const std::filesystem::path simulator = PrepareSimulatorFolder(folder.Path());
    VirtualClock clock;
    {
        SimulatedBench bench(clock, {"acu", {}, 1, simulator});
        bench.WriteEEPROM(0, 2044, 1234567);
        bench.WriteAIBInfo(0, 0, 2, 77);
    }
    SimulatedBench bench(clock, {"acu", {}, 1, simulator});
    std::int32_t word = 0;
    bench.ReadEEPROM(0, 2044, word);
    EXPECT_EQ(word, 1234567);
    AccessoryInfoRecord record;
    bench.GetAccessoryInfo(0, record);
    EXPECT_EQ(record.DevSerialNum, 77);
    EXPECT_EQ(record.HWVersion, 2);
    EXPECT_EQ(ReadWholeFile(simulator / "EPROM_301.bin").substr(2044),
              std::string("\x87\xD6\x12\0", 4));
}

TEST(Bench, AnImageOfTheWrongSizeIsRefusedAndLeftAlone) {
    const TemporaryFolder folder;
    ReplaceWholeFile(folder.Path() / "EPROM_301.bin", "short");
    VirtualClock clock;
    EXPECT_THROW(SimulatedBench(clock, {"acu", {}, 1, folder.Path()}), DriveError);
    EXPECT_EQ(ReadWholeFile(folder.Path() / "EPROM_301.bin"), "short");
}

TEST(Bench, FPGAFilesAreLaidOnceAndNeverReplaced) {
    const TemporaryFolder folder;
    const auto systemFolder = folder.Path() / "Program Files" / "Pulvatron" / "System";
    std::filesystem::create_directories(systemFolder);
    ReplaceWholeFile(systemFolder / "AIBCNF00.bin", "the real one");
    PrepareSimulatorFolder(folder.Path());
    EXPECT_EQ(ReadWholeFile(systemFolder / "AIBCNF00.bin"), "the real one");
    std::filesystem::remove(systemFolder / "AIBCNF03.bit");
    PrepareSimulatorFolder(folder.Path());
    EXPECT_FALSE(std::filesystem::exists(systemFolder / "AIBCNF03.bit"));
}

} // namespace
} // namespace ombrix
