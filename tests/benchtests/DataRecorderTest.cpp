#include "benchtests/DataRecorder.h"

#include "benchtests/BenchTestFixture.h"

namespace ombrix {
namespace {

class DataRecorderTest : public BenchTestFixture {
  protected:
    Outcome Record(double seconds) {
        TimedRecording recording(*m_Station);
        const RecordingResult outcome = recording.Run(seconds, [](double) {});
        m_Lines = outcome.Lines;
        m_FailedReadings = outcome.FailedReadings;
        return outcome;
    }

    std::int64_t m_Lines = 0;
    std::int64_t m_FailedReadings = 0;
};

TEST_F(DataRecorderTest, ALineEveryTenMillisecondsForAnHour) {
    Use("acu");
    m_Station->CurrentAIB->SetDAC(0, 30000);
    m_Bench->Time.Advance(5.0);
    const Outcome outcome = Record(3600.0);
    EXPECT_EQ(outcome.Ended, End::Passed);
    EXPECT_EQ(m_Lines, 360000);
    EXPECT_EQ(outcome.Files.at(0).filename(), "Data_20241503_140514.csv") << "day before month";
    const std::vector<std::string> lines = LinesOf(outcome);
    ASSERT_EQ(lines.size(), 360001U);
    EXPECT_EQ(lines[0], "Timer,CH1 Flow,Ch2 Flow,3v3,Floating");
    for (std::size_t i = 0; i < 360000; i += 7919) {
        const std::vector<std::string> fields = Fields(lines.at(i + 1));
        ASSERT_EQ(fields.size(), 6U) << lines.at(i + 1);
        EXPECT_NEAR(std::stod(fields[0]), static_cast<double>(i) * 0.01, 0.002) << i;
        EXPECT_NEAR(std::stoi(fields[1]), 30000, 150) << "the flow of channel 1";
        EXPECT_LT(std::stoi(fields[2]), 20);
        EXPECT_NEAR(std::stoi(fields[5]), std::stoi(fields[3]), 40)
            << "input and register show the same sensor";
    }
    EXPECT_EQ(Fields(lines.at(2))[0], "0.01");
}

TEST_F(DataRecorderTest, TimesTurnNegativeAtMidnight) {
    Use("acu");
    m_Bench->Time.Advance(86400.0 - m_Bench->Time.SecondsSinceMidnight() - 0.5);
    const std::vector<std::string> lines = LinesOf(Record(1.0));
    ASSERT_EQ(lines.size(), 101U);
    EXPECT_EQ(Fields(lines.at(50))[0], "0.49");
    EXPECT_LT(std::stod(Fields(lines.back())[0]), -86398.0);
}

TEST_F(DataRecorderTest, AFullDiskHasItGoOnElsewhereWithWholeLines) {
    Use("acu");
    At(2.0, [this] { m_Disk->WritesLeft = 0; });
    const Outcome outcome = Record(10.0);
    EXPECT_EQ(outcome.Ended, End::Passed);
    EXPECT_FALSE(outcome.AllStored);
    EXPECT_EQ(m_Bench->Messages.Shown.size(), 1U);
    ASSERT_EQ(outcome.Files.size(), 2U);
    EXPECT_NEAR(static_cast<double>(LinesOf(outcome.Files[0]).size()), 201.0, 1.0);
    const std::vector<std::string> lines = LinesOf(outcome.Files[1]);
    EXPECT_EQ(static_cast<std::int64_t>(LinesOf(outcome.Files[0]).size() + lines.size()),
              m_Lines + 2);
    EXPECT_EQ(lines.front(), LinesOf(outcome.Files[0]).front());
    EXPECT_EQ(Fields(lines.back()).size(), 6U);

    m_Disk->NoNewFiles = true;
    EXPECT_EQ(Record(10.0).Ended, End::NotStored);
}

TEST_F(DataRecorderTest, ASlowBenchSkipsLinesAndKeepsTheTime) {
    Use("acu");
    constexpr double slow_s = 0.05;
    m_Bench->Events.EveryPass = [this] { m_Bench->Time.Advance(slow_s); };
    const std::vector<std::string> lines = LinesOf(Record(10.0));
    EXPECT_NEAR(static_cast<double>(lines.size()), 200.0, 5.0);
    EXPECT_NEAR(std::stod(Fields(lines.back())[0]), 10.0, 0.1);
}

TEST_F(DataRecorderTest, EndsWhenCancelledAndGoesOnWithoutABoard) {
    Use("acu", {"unplug@1"});
    At(3.0, [this] { Cancel(); });
    const Outcome outcome = Record(10.0);
    EXPECT_EQ(outcome.Ended, End::Cancelled);
    const std::vector<std::string> lines = LinesOf(outcome);
    EXPECT_NEAR(static_cast<double>(lines.size()), 300.0, 5.0);
    EXPECT_TRUE(lines.end()[-2].ends_with(",,,,,")) << lines.end()[-2];
    EXPECT_EQ(lines.back(), "Cancelled by the operator");
    EXPECT_NEAR(static_cast<double>(m_FailedReadings), 1000.0, 25.0) << "five of each line";
}

TEST_F(DataRecorderTest, OneThatNothingAnsweredHasFailed) {
    Use("acu", {"status:32@ReadReg"});
    EXPECT_EQ(Record(1.0).Ended, End::Passed);
    EXPECT_EQ(m_FailedReadings, 100);
    Use("acu", {"status:32"});
    EXPECT_EQ(Record(1.0).Ended, End::Failed);
}

TEST_F(DataRecorderTest, BelongsToTheBoardItBeganWith) {
    Use("pair");
    m_Station->CurrentAIB->SetDAC(0, 30000);
    m_Bench->Time.Advance(5.0);
    DataRecorder recorder(*m_Station);
    recorder.Start();
    m_Station->CurrentAIB = m_Station->AIBList.AIB(1);
    recorder.RecordLine();
    EXPECT_NEAR(std::stoi(Fields(LinesOf(recorder.File().Files().front()).at(1)).at(1)), 30000,
                150);
}

} // namespace
} // namespace ombrix
