#include "calibration/judge/Judgement.h"

#include "calibration/MeasuredChannels.h"
#include "calibration/run/CalibrationLog.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace ombrix {
namespace {

class Judgement : public ::testing::Test {
  protected:
    bool HasLine(const std::string& line) const {
        return std::find(m_Log.begin(), m_Log.end(), line) != m_Log.end();
    }
    /// Ten points on the line; readings as the demands.
    static ChannelMeasurement OnTheLine() {
        ChannelMeasurement measured;
        for (std::int32_t point = 0; point < 10; ++point) {
            measured.Demand.push_back({6000 * (point + 1)});
            measured.Rising.push_back({6000 * (point + 1)});
            measured.Falling.push_back({6000 * (point + 1)});
        }
        return measured;
    }

    LogLines m_Log;
    Line m_BestFit;
};

TEST_F(Judgement, HysteresisIsLimitedAtEveryPoint) {
    ChannelMeasurement measured = OnTheLine();
    measured.Rising[2] = {20012};
    measured.Falling[2] = {20140};
    measured.Falling[5].Reading_bits += 131;
    EXPECT_TRUE(CheckSystemCalibrationData(measured, m_BestFit, m_Log));
    EXPECT_TRUE(HasLine("Checking Point 3,20012,20140,128,<-- Pass (0.2% Full Scale),128 is not "
                        "greater than 131.068"));
    EXPECT_TRUE(HasLine(" -> Hysteresis Check - Passed"));
    EXPECT_EQ(m_Log.back(), " -> Calibration Passed");

    measured.Falling[5].Reading_bits += 1;
    EXPECT_FALSE(CheckSystemCalibrationData(measured, m_BestFit, m_Log));
    EXPECT_TRUE(HasLine("Checking Point 6,36000,36132,132,<-- Fail (0.2% Full Scale),132 is "
                        "greater than 131.068"));
    EXPECT_TRUE(HasLine(" -> Hysteresis Check - Failed"));
    EXPECT_EQ(m_Log.end()[-2], " -> MC Fit Test - Passed");
    EXPECT_EQ(m_Log.back(), " -> Calibration Failed");
}

TEST_F(Judgement, DeviationsFromTheLineAreWarnedOfOnly) {
    ChannelMeasurement measured = OnTheLine();
    // Both sweeps off by the same: no hysteresis, but a bend.
    measured.Rising[4].Reading_bits += 400;
    measured.Falling[4].Reading_bits += 400;
    EXPECT_TRUE(CheckSystemCalibrationData(measured, m_BestFit, m_Log));
    EXPECT_NEAR(m_BestFit.Slope, 1.0F, 0.001F);
    std::vector<std::string> warnings;
    std::copy_if(m_Log.begin(), m_Log.end(), std::back_inserter(warnings),
                 [](const auto& line) { return line.find("<-- Warn") != std::string::npos; });
    ASSERT_EQ(warnings.size(), 1U);
    // The fit's y, the reading and the deviation, the point counted from 0.
    EXPECT_TRUE(warnings[0].starts_with("Against MC:   4,30"));
    EXPECT_NE(warnings[0].find(",,30400,"), std::string::npos);
    EXPECT_NE(warnings[0].find(",<-- Warning (0.1% Full Scale),"), std::string::npos);
    EXPECT_TRUE(warnings[0].ends_with(" is greater than 65.534"));
}

TEST_F(Judgement, ReadingsMustRise) {
    ChannelMeasurement measured = OnTheLine();
    EXPECT_TRUE(ReadingsRiseWithDemand(measured));
    measured.Falling[3].Reading_bits = measured.Falling[4].Reading_bits;
    EXPECT_FALSE(ReadingsRiseWithDemand(measured));
}

/// An audit of the small channel whose point reads other flows than it should.
ChannelMeasurement AuditOf(std::size_t point, float rising_ml_m, float falling_ml_m) {
    ChannelMeasurement measured = MeasuredChannel(CalibrationKind::Audit, 200.0F);
    measured.Rising.at(point).Flow_ml_m = rising_ml_m;
    measured.Falling.at(point).Flow_ml_m = falling_ml_m;
    return measured;
}

struct AuditCase {
    std::size_t Point;
    float Rising_ml_m;
    float Falling_ml_m;
    bool Passes;
    const char* Line;
};

TEST_F(Judgement, AnAuditIsLimitedByReadingAndAtTheLowestPointsByFullScale) {
    for (const AuditCase& c :
         {// The mean of both sweeps decides.
          AuditCase{3, 24.5F, 23.98F, true,
                    "Checking Point 4,24,24.5,23.98,24.24,<-- Pass (1% of Reading),0.9900981 is "
                    "less than 1"},
          AuditCase{3, 24.25F, 24.25F, false,
                    "Checking Point 4,24,24.25,24.25,24.25,<-- Fail (1% of Reading),1.030928 is "
                    "greater than 1"},
          AuditCase{3, 0.0F, 0.0F, false,
                    "Checking Point 4,24,0,0,0,<-- Fail (1% of Reading),- is greater than 1"},
          AuditCase{2, 18.25F, 18.125F, true,
                    "Checking Point 3,18,18.25,18.125,18.1875,<-- Pass (0.1% Full Scale),0.1875 is "
                    "less than 0.2"},
          AuditCase{2, 18.25F, 18.25F, false,
                    "Checking Point 3,18,18.25,18.25,18.25,<-- Fail (0.1% Full Scale),0.25 is "
                    "greater than 0.2"}}) {
        EXPECT_EQ(CheckAuditCalibrationData(AuditOf(c.Point, c.Rising_ml_m, c.Falling_ml_m), m_Log),
                  c.Passes);
        EXPECT_TRUE(HasLine(c.Line)) << c.Line;
    }
}

TEST_F(Judgement, AnErrorExactlyAtTheLimitPasses) {
    // 1 % of 100 ml/min at 99 ml/min; 0.1 % of 1000 ml/min at the lowest point.
    ChannelMeasurement measured = AuditOf(3, 100.0F, 100.0F);
    measured.Demand[3].Flow_ml_m = 99.0F;
    EXPECT_TRUE(CheckAuditCalibrationData(measured, m_Log));
    measured = AuditOf(0, 7.0F, 7.0F);
    measured.Capacity_ml_m = 1000.0F;
    EXPECT_TRUE(CheckAuditCalibrationData(measured, m_Log));
}

TEST(CalibrationLogTest, LinesLieInTheSystemFolder) {
    TestBench bench;
    CalibrationLog log(bench.World);
    log.OpenCalibrationLog("ACUCal_AirVel", "ACU00301");
    log.LogCalibration("Point 0,655,661");
    ASSERT_EQ(log.Files().size(), 1U);
    EXPECT_TRUE(log.Files()[0].string().ends_with(
        "Pulvatron/System/Calibration/ACUCal_AirVel_240315_140509.txt"));
    EXPECT_EQ(ReadWholeFile(log.Files()[0]), "ACU Calibration,ACU00301\r\n"
                                             "Date,15/03/2024 14:05:09\r\n\r\n"
                                             "Point 0,655,661\r\n");
    EXPECT_TRUE(log.AllStored());
    log.OpenCalibrationLog("ACUCal_AirVel", "ACU00302");
    EXPECT_TRUE(log.Files()[0].string().ends_with("ACUCal_AirVel_240315_140509 (2).txt"));
}

TEST(CalibrationLogTest, ALogThatCannotBeWrittenGoesOnElsewhere) {
    TestBench bench;
    CalibrationLog log(bench.World);
    std::filesystem::create_directories(bench.Folder.Path() /
                                        "Program Files/Pulvatron/System/Calibration/"
                                        "ACUCal_AirVel_240315_140509.txt");
    log.OpenCalibrationLog("ACUCal_AirVel", "ACU00301");
    log.LogCalibration("Point 0,655,661");
    EXPECT_FALSE(log.AllStored());
    EXPECT_TRUE(bench.Messages.Shown.empty()) << "air may be driven now";
    log.CloseCalibrationLog();
    ASSERT_EQ(bench.Messages.Shown.size(), 1U) << "told once";
    ASSERT_EQ(log.Files().size(), 1U);
    EXPECT_EQ(log.Files()[0].parent_path(), bench.Folder.Path() / "Kept");
    EXPECT_TRUE(ReadWholeFile(log.Files()[0]).ends_with("\r\nPoint 0,655,661\r\n"));
}

} // namespace
} // namespace ombrix
