#include "board/AIBTools.h"

#include "board/Filter.h"
#include "board/procedure/HiResTimer.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

TEST(ModAIB, TextsAndPaths) {
    EXPECT_EQ(FormatArgs("Channel [1] at [2], [1]", {"2", "50"}), "Channel 2 at 50, 2");
    EXPECT_EQ(AddBackslash(R"(C:\Data)"), R"(C:\Data\)");
    EXPECT_EQ(AddBackslash(R"(C:\Data\)"), R"(C:\Data\)");
    EXPECT_EQ(LeftOfLast(R"(C:\a\b)", "\\"), R"(C:\a\)");
    EXPECT_EQ(LeftOfLast("none", "\\"), "none");
    EXPECT_EQ(GetFolderOfPath(R"(C:\Logs\run.csv)"), R"(C:\Logs\)");
    EXPECT_EQ(GetFolderOfPath(R"(C:\Logs)"), R"(C:\Logs\)");
}

TEST(ModAIB, ColumnLettersCarry) {
    const std::vector<std::pair<int, const char*>> cases = {
        {0, "A"}, {25, "Z"}, {26, "AA"}, {51, "AZ"}, {52, "BA"}, {701, "ZZ"}, {16383, "XFD"}};
    for (const auto& [column, letters] : cases)
        EXPECT_EQ(ColumnLetters(column), letters);
    EXPECT_EQ(CellAddress(0, 5), "A5");
}

TEST(ModAIB, FoldersAreMadeWithTheirParents) {
    TestBench bench;
    Drive& drive = bench.Files;
    const std::string folder = R"(C:\ACUs\ACU00301_M1\)";
    EXPECT_FALSE(CheckFolderExists(drive, bench.Messages, folder, FolderMode::Query));
    EXPECT_TRUE(CheckFolderExists(drive, bench.Messages, folder, FolderMode::Create));
    EXPECT_TRUE(drive.FolderExists(folder));
    EXPECT_FALSE(CreateFolderPath(drive, R"(Z:\nowhere\at all)"));
    EXPECT_FALSE(CreateFolderPath(drive, R"(C:\..\outside)"));
    EXPECT_TRUE(bench.Messages.Shown.empty());
}

TEST(ModAIB, AFolderIsMadeOnlyWhenTheOperatorAgrees) {
    TestBench bench;
    bench.Messages.Answers = {Answer::No, Answer::Yes};
    EXPECT_FALSE(CheckFolderExists(bench.Files, bench.Messages, R"(C:\New)", FolderMode::Ask));
    EXPECT_TRUE(CheckFolderExists(bench.Files, bench.Messages, R"(C:\New)", FolderMode::Ask));
    EXPECT_EQ(bench.Messages.Shown[0].Text,
              "The folder does not exist:\r\n\r\n    C:\\New\\\r\n\r\n"
              "Would you like to create it?");
}

TEST(ModAIB, SystemFolderIsSearchedInItsOrder) {
    TestBench bench;
    const std::string own = R"(C:\Program Files\Pulvatron\System\Calibration\log.txt)";
    EXPECT_EQ(GetSystemFolder(bench.Files, "Calibration", "log.txt"), own);
    EXPECT_TRUE(bench.Files.FolderExists(R"(C:\Program Files\Pulvatron\System\Calibration)"));
    std::filesystem::remove_all(bench.Folder.Path() / "Program Files");
    EXPECT_EQ(GetSystemFolder(bench.Files, "Calibration", "log.txt"), R"(C:\log.txt)");
    std::filesystem::create_directories(bench.Folder.Path() / "Pulvatron" / "System");
    std::filesystem::create_directories(bench.Folder.Path() / "Programme");
    EXPECT_EQ(GetSystemFolder(bench.Files, "Calibration", "log.txt"),
              R"(C:\Pulvatron\System\log.txt)");
}

TEST(ModAIB, LinearFitFindsTheLine) {
    const std::vector<std::array<std::int32_t, 2>> table = {{9, 9}, {0, 1}, {1, 3}, {2, 5}};
    Line line{7.0F, 7.0F};
    EXPECT_TRUE(LinearFit(table, 1, 3, line));
    EXPECT_FLOAT_EQ(line.Slope, 2.0F);
    EXPECT_FLOAT_EQ(line.Intercept, 1.0F);
    EXPECT_FALSE(LinearFit(table, 2, 2, line)) << "one point has no slope";
    EXPECT_FLOAT_EQ(line.Slope, 2.0F);
    EXPECT_FALSE(LinearFit(table, 3, 2, line));
    EXPECT_FLOAT_EQ(line.Slope, 0.0F);
}

TEST(Filter, JumpsOnFallsOfMoreThanFivePercentOnly) {
    clsFilter filter;
    EXPECT_FLOAT_EQ(filter.LPF(100.0F), 100.0F) << "without a coefficient the input passes";
    filter.Coeff(0.9F);
    EXPECT_FLOAT_EQ(filter.LPF(96.0F), 99.6F);
    EXPECT_FLOAT_EQ(filter.LPF(94.0F), 94.0F);
    EXPECT_FLOAT_EQ(filter.LPF(194.0F), 104.0F);
    filter.Coeff(1.5F);
    EXPECT_FLOAT_EQ(filter.Coeff(), 1.0F);
    filter.Coeff(-0.2F);
    EXPECT_FLOAT_EQ(filter.Coeff(), 0.0F);
}

TEST(HiResTimer, AddsUpItsIntervals) {
    VirtualClock clock;
    clsHiResTimer timer(clock);
    clock.Advance(1.5);
    EXPECT_DOUBLE_EQ(timer.ElapsedTime(), 1.5);
    EXPECT_DOUBLE_EQ(timer.StopTimer(), 1.5);
    EXPECT_DOUBLE_EQ(timer.StopTimer(), 0.0);
    EXPECT_DOUBLE_EQ(timer.ElapsedTime(), 0.0);
    timer.StartTimer(false);
    clock.Advance(1.0);
    EXPECT_DOUBLE_EQ(timer.TotalTime(), 1.5) << "no new reading has been taken";
    timer.ElapsedTime();
    EXPECT_DOUBLE_EQ(timer.TotalTime(), 2.5);
    timer.StartTimer(true);
    EXPECT_DOUBLE_EQ(timer.TotalTime(), 0.0);
}

TEST(HiResTimer, FormatsTimeInPlainDecimals) {
    VirtualClock clock;
    clsHiResTimer timer(clock);
    clock.Advance(12.3456);
    double seconds = -1.0;
    EXPECT_EQ(timer.FormatTime("took ### s (###)", seconds, 2), "took 12.35 s (12.35)");
    EXPECT_DOUBLE_EQ(seconds, 12.3456);
    seconds = 100.0;
    EXPECT_EQ(timer.FormatTime("###", seconds, 1), "100");
}

class NoCounter final : public Clock {
  public:
    std::int64_t Counter() const override { return 0; }
    std::int64_t Frequency() const override { return 0; }
    double SecondsSinceMidnight() const override { return 0.0; }
    OleDate Now() const override { return {}; }
    void Rest(double) override {}
};

TEST(HiResTimer, NeedsACounter) {
    const NoCounter clock;
    EXPECT_THROW(clsHiResTimer{clock}, HiResTimingError);
}

} // namespace
} // namespace ombrix
