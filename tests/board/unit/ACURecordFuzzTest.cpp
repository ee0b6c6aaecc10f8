// An EPROM may hold anything: whatever 2048 bytes there are, reading ends, stays within the
// record, and what is shown is text.
#include "board/unit/CalibrationSummary.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

#include <random>

namespace ombrix {
namespace {

std::string RandomImage(std::mt19937& random) {
    std::string image(2048, '\0');
    for (char& byte : image)
        byte = static_cast<char>(random());
    // Most images get past the version, so that the fields behind it are read too.
    if (random() % 4 != 0) {
        image.replace(0, 12, std::string("\2\0\0\0\0\0\0\0\2\0\0\0", 12));
    }
    return image;
}

class ACURecordFuzz : public ::testing::TestWithParam<const char*> {};

TEST_P(ACURecordFuzz, AnyBytesAreRead) {
    constexpr int runs = 2000;
    std::mt19937 random(20240315);
    TestBench bench(GetParam());
    AIB& board = bench.Detect(bench.Bench.OpenAIBAPI() - 1);
    for (int run = 0; run < runs; ++run) {
        bench.Bench.LoadEprom(board.BoardIndex(), RandomImage(random));
        const CalibrationSummary summary = ReadCalibrationSummary(bench.TheStation.Calibration());
        for (const ColouredText& shown : {summary.VelocitySystem, summary.VelocityAudit,
                                          summary.PressureSystem, summary.PressureAudit})
            ASSERT_FALSE(shown.Text.empty());
        ASSERT_LE(bench.TheStation.Calibration().Record().ACUMFCNumber().size(), 12U * 3U);
        ASSERT_LE(summary.MFCNumber.size(), 12U);
    }
}

INSTANTIATE_TEST_SUITE_P(Benches, ACURecordFuzz, ::testing::Values("acu", "pair"));

} // namespace
} // namespace ombrix
