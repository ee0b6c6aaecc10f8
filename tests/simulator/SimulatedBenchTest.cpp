#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

double MeanReading(TestBench& bench, AIB& board, std::int32_t channel) {
    constexpr int samples = 500;
    double sum = 0.0;
    for (int i = 0; i < samples; ++i) {
        bench.Time.Advance(0.01);
        sum += board.MyGetADC(channel);
    }
    return sum / samples;
}

class HealthyBench : public ::testing::TestWithParam<const char*> {};

TEST_P(HealthyBench, SettlesWithinASecondNearItsDemand) {
    TestBench bench(GetParam());
    AIB& board = bench.Detect();
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

INSTANTIATE_TEST_SUITE_P(Benches, HealthyBench, ::testing::Values("acu", "plain", "fresh"));

TEST(BenchFaults, AFrozenPressureIgnoresTheFlow) {
    TestBench bench("acu", {"pressure-frozen"});
    AIB& board = bench.Detect();
    const std::int32_t atRest = board.MyGetADC(2);
    board.SetDAC(0, 60000);
    bench.Time.Advance(2.0);
    EXPECT_EQ(board.MyGetADC(2), atRest);
}

TEST(BenchFaults, LatencyTakesTheBenchsOwnTime) {
    TestBench bench("acu", {"latency:2", "latency:30.5@GetADC"});
    AIB& board = bench.Detect();
    const double before_s = MonotonicSeconds(bench.Time);
    board.MyGetADC(2);
    EXPECT_NEAR(MonotonicSeconds(bench.Time) - before_s, 0.0325, 1e-6);
    board.ClearExtGPO(8);
    EXPECT_NEAR(MonotonicSeconds(bench.Time) - before_s, 0.0345, 1e-6);
}

TEST(BenchFaults, TextsThatNameNoneAreRejected) {
    for (const char* text :
         {"status", "status:x", "status:1@NoSuchCall", "stuck-bit:16", "not-ready:2",
          "hysteresis:0", "gain:0,", "unplug@", "unplug@-1", "no-air:1", "no-water",
          "latency:", "latency:-1", "latency:1@NoSuchCall", "status:1@OpenAIBAPI", ""}) {
        const std::string fault = text;
        EXPECT_THROW(Faults::Parse({&fault, 1}), FaultError) << text;
    }
}

TEST(Bench, PressureFollowsTheFlowOnTheLine) {
    TestBench bench("acu");
    AIB& board = bench.Detect();
    const double atRest = MeanReading(bench, board, 2);
    board.SetDAC(0, 60000);
    bench.Time.Advance(1.5);
    const double flowing = MeanReading(bench, board, 2);
    EXPECT_GT(flowing - atRest, 150.0);
    board.ClearExtGPO(8); // the valve takes the large channel off the line
    EXPECT_NEAR(MeanReading(bench, board, 2), atRest, 3.0);
}

TEST(Bench, SameSeedSameReadings) {
    TestBench first;
    TestBench second;
    AIB& board = first.Detect();
    AIB& twin = second.Detect();
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(board.MyGetADC(2), twin.MyGetADC(2));
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
    AccessoryInfoBlock record;
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
