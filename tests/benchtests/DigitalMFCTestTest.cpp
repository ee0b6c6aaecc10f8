#include "benchtests/DigitalMFCTest.h"

#include "benchtests/BenchTestFixture.h"
#include "board/unit/RecordCoding.h"

#include <algorithm>

namespace ombrix {
namespace {

class DigitalMFCTestTest : public BenchTestFixture {
  protected:
    DigitalMFCResult Run() {
        DigitalMFCTest test(*m_Station);
        const DigitalMFCResult result = test.Run(View());
        ExpectLeftSafely();
        return result;
    }
    static double Number(const std::string& line, std::size_t field) {
        return std::stod(Fields(line).at(field));
    }
    static std::vector<double> Demands(const std::vector<std::string>& lines, std::size_t field) {
        std::vector<double> demands;
        for (std::size_t i = 1; i < lines.size(); ++i)
            demands.push_back(Number(lines[i], field));
        return Changes(demands);
    }
};

const std::vector<double> Profile = {0, 1311,  0, 1311,  0, 13107, 0, 32768, 0, 52428, 0, 52428,
                                     0, 32768, 0, 13107, 0, 1311,  0, 1311,  0};

TEST_F(DigitalMFCTestTest, BothChannelsFollowTheProfile) {
    Use("acu");
    const DigitalMFCResult result = Run();
    EXPECT_EQ(result.Ended, End::Passed);
    EXPECT_NEAR(Now_s(), 4.0 + 2 * 166.0, 0.5);
    EXPECT_EQ(result.Files.at(0).filename(), "ACU_301_M9200301A_20240315_141045.csv");
    const std::vector<std::string> lines = LinesOf(result);
    ASSERT_EQ(lines.size(), 3521U);
    EXPECT_EQ(lines[0], "Timer0,Demand0,Value0,Pressure0,,Timer1,Demand1,Value1,Pressure1,,"
                        "Data0,EndPointUp,EndPointDn");
    EXPECT_EQ(Demands(lines, 1), Profile);
    EXPECT_EQ(Demands(lines, 6), Profile);
    EXPECT_NEAR(Number(lines[3320], 0), 165.95, 0.01) << "a sample each 50 ms";
    EXPECT_EQ(lines[3521 - 1], "0,0,0,0,,0,0,0,0");
    // At the end of the third demand phase, that of 20 %.
    const std::string& settled = lines[static_cast<std::size_t>(47.9 / 0.05)];
    EXPECT_EQ(Number(settled, 1), 13107);
    EXPECT_NEAR(Number(settled, 2), 13107, 60);
    EXPECT_GT(Number(settled, 3), 6000) << "the back-pressure";
    EXPECT_EQ(m_Captions.front(), "Step 1 of 10 (Zero Demand)");
    EXPECT_EQ(m_Captions[5], "Step 3 of 10 (20% Demand)");
    EXPECT_EQ(m_Captions.back(), "Final Zero Demand");
    EXPECT_EQ(m_Stages.back(), "Complete");
    EXPECT_TRUE(std::count(m_Stages.begin(), m_Stages.end(), "Writing Data to File..."));
    EXPECT_TRUE(m_Stages.front().starts_with("CH0 - -1 - 0.00 - "));
}

TEST_F(DigitalMFCTestTest, WayUpIsComparedWithTheWayDown) {
    Use("acu", {"hysteresis:1,600"});
    const DigitalMFCResult result = Run();
    const std::vector<std::string> lines = LinesOf(result);
    for (std::size_t level = 0; level < 5; ++level) {
        for (const std::size_t channel : {0U, 1U}) {
            const std::vector<std::string> fields = Fields(lines[1 + level + 7 * channel]);
            ASSERT_EQ(fields.size(), 14U);
            EXPECT_EQ(fields[9], "");
            EXPECT_EQ(std::stof(fields[10]),
                      DigitalMFCTable::ProfileDemand(static_cast<std::int32_t>(level)));
            const float up = result.Means.at(channel).at(level).value();
            const float down = result.Means.at(channel).at(9 - level).value();
            EXPECT_NEAR(std::stof(fields[11]), up, 0.01);
            EXPECT_NEAR(std::stof(fields[12]), down, 0.01);
            EXPECT_NEAR(std::stof(fields[13]), up - down, 0.01);
            EXPECT_NEAR(up, std::stof(fields[10]) * 655.35F, channel == 0 ? 60.0F : 400.0F);
        }
    }
    EXPECT_EQ(Fields(lines[1 + 5]).size(), 9U);
    EXPECT_TRUE(lines[1 + 6].ends_with(",,Data1,EndPointUp,EndPointDn,Diff"));
    EXPECT_EQ(Fields(lines[1 + 12]).size(), 9U);
}

TEST_F(DigitalMFCTestTest, UnitWithoutAirStillFillsTheFile) {
    Use("acu", {"no-air"});
    const std::vector<std::string> lines = LinesOf(Run());
    ASSERT_EQ(lines.size(), 3521U);
    EXPECT_TRUE(lines[4].ends_with(",,50,0,0,0")) << lines[4];
}

TEST_F(DigitalMFCTestTest, DeclinedTestDrivesNothing) {
    Use("acu");
    m_Bench->Messages.Answers = {Answer::Cancel};
    const DigitalMFCResult result = Run();
    EXPECT_EQ(result.Ended, End::Cancelled);
    EXPECT_TRUE(result.Files.empty());
    EXPECT_EQ(m_Bench->Messages.Shown.at(0).Text, "Click OK to start the Test");
    EXPECT_EQ(m_Bench->Messages.Shown.at(0).Buttons, MessageButtons::OkCancel);
    EXPECT_EQ(m_Bench->Messages.Shown.at(0).Icon, MessageIcon::Question);
    EXPECT_EQ(Now_s(), 0.0);
}

TEST_F(DigitalMFCTestTest, LeavingItStoresWhatWasMeasured) {
    for (const bool unplugged : {false, true}) {
        Use("acu", unplugged ? std::vector<std::string>{"unplug@47"} : std::vector<std::string>{});
        // In the demand phase of channel 0's third step.
        At(4.0 + 2 * 16.0 + 6.0 + 5.0, [&] {
            EXPECT_EQ(m_Station->CurrentAIB->DAC(0), 13107);
            // What a program that dies now would leave.
            const std::vector<std::string> samples =
                LinesOf(m_Bench->Folder.Path() / "ACU_301_M9200301A_20240315_140509_samples.csv");
            EXPECT_NEAR(static_cast<double>(samples.size()), 43.0 / 0.05, 2.0);
            EXPECT_TRUE(samples.back().starts_with("0,43,13107,")) << samples.back();
            if (!unplugged)
                Cancel();
        });
        const DigitalMFCResult result = Run();
        EXPECT_EQ(m_Stages.back(), unplugged ? "Stopped" : "Cancelled");
        const std::vector<std::string> lines = LinesOf(result);
        ASSERT_EQ(lines.size(), 3522U) << "the last line tells why";
        EXPECT_EQ(Number(lines[850], 1), 13107);
        EXPECT_NEAR(Number(lines[850], 2), 13107, 60);
        EXPECT_TRUE(lines[900].starts_with("0,0,0,0,,0,0,0,0"));
        EXPECT_NEAR(result.Means[0][1].value(), 1311, 60);
        EXPECT_FALSE(result.Means[0][2]) << "its end has not been reached";
    }
}

TEST_F(DigitalMFCTestTest, CancelBeforeTheFirstSampleLeavesNoFile) {
    Use("acu");
    At(3.0, [this] { Cancel(); });
    EXPECT_TRUE(Run().Files.empty());
}

TEST_F(DigitalMFCTestTest, MFCNumberCannotLeadOutOfTheFolder) {
    Use("acu");
    const AIB::EpromWriting writing(*m_Station->CurrentAIB);
    ACURecord record;
    WriteEPROM_MFCNumber(*m_Station->CurrentAIB, record, R"(..\M/1)");
    m_Station->Calibration().ReadEPROMValues();
    At(5.0, [this] { Cancel(); });
    EXPECT_EQ(Run().Files.at(0).filename(), "ACU_301____M_1_20240315_140514.csv");
}

} // namespace
} // namespace ombrix
