#include "healthcheck/MFCStep.h"

#include "healthcheck/RecordedViews.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

class MFCStepTest : public ::testing::Test {
  protected:
    TestBench m_Bench{"acu"};
    AIB& m_Board = m_Bench.Detect();
    HiResTimer m_Timer{m_Bench.Time};
    MFCStep m_Step;

    void SetUp() override { m_Bench.TheStation.Calibration().ReadEPROMValues(); }
    void Start(float ch1, float ch2, float duration_s) {
        m_Step.Init(0, ch1, ch2, duration_s, nullptr);
        m_Step.StartStep(m_Timer, m_Bench.TheStation);
    }
    bool Record() { return m_Step.RecordDataPoint(m_Board, nullptr, nullptr); }
    void RecordFor(double seconds) {
        for (double passed = 0.0; passed < seconds; passed += 0.02) {
            EXPECT_TRUE(Record());
            m_Bench.Time.Advance(0.02);
        }
    }
};

TEST_F(MFCStepTest, DemandsGoThroughTheSliders) {
    Start(0.2F, 0.9F, 2.0F);
    EXPECT_EQ(m_Board.DAC(0), 13106);
    EXPECT_EQ(m_Board.DAC(1), 58980);
}

TEST_F(MFCStepTest, SamplesAreAtLeast20MillisecondsApart) {
    Start(0.2F, 0.0F, 2.0F);
    EXPECT_TRUE(Record()) << "the first at once";
    m_Bench.Time.Advance(0.010);
    EXPECT_FALSE(Record());
    m_Bench.Time.Advance(0.0099);
    EXPECT_FALSE(Record());
    m_Bench.Time.Advance(0.0001);
    EXPECT_TRUE(Record());
    EXPECT_EQ(m_Step.DataCount(), 2);
    EXPECT_EQ(m_Step.data(1, 0) - m_Step.data(0, 0), 20);
    EXPECT_EQ(m_Step.data(1, 1), 13106);
    EXPECT_GT(m_Step.data(1, 2), 0);
    EXPECT_NEAR(m_Step.data(1, 5), 6553, 30);
    EXPECT_THROW((void)m_Step.data(0, 6), std::out_of_range);
    EXPECT_THROW((void)m_Step.MinValue(2), std::out_of_range);
}

TEST_F(MFCStepTest, ExtremesAreTheFirstSamplesThatReachedThem) {
    EXPECT_EQ(m_Step.MaxValueIndex(0), -1);
    Start(0.5F, 0.0F, 2.0F);
    RecordFor(2.0);
    const std::int32_t highest = m_Step.MaxValueIndex(0);
    for (std::int32_t row = 0; row < m_Step.DataCount(); ++row) {
        EXPECT_GE(m_Step.data(row, 2), m_Step.MinValue(0));
        EXPECT_LE(static_cast<float>(m_Step.data(row, 2)), m_Step.MaxValue(0));
        EXPECT_EQ(row < highest && static_cast<float>(m_Step.data(row, 2)) >= m_Step.MaxValue(0),
                  false);
    }
}

TEST_F(MFCStepTest, EndValueIsTheMeanOfTheLastTwoSeconds) {
    Start(0.5F, 0.0F, 3.0F);
    EXPECT_EQ(m_Step.Get_EndVal(2, 2000.0F), 0.0F);
    RecordFor(1.9);
    EXPECT_EQ(m_Step.Get_EndVal(2, 2000.0F), 0.0F) << "the record does not reach back far enough";
    RecordFor(1.1);
    EXPECT_NEAR(m_Step.Get_EndVal(2, 2000.0F), 32767.0F, 150.0F);
    EXPECT_NEAR(m_Step.Get_EndVal(1, 2000.0F), 32768.0F, 1.0F);
}

TEST_F(MFCStepTest, AFullRecordTakesNoMoreSamples) {
    Start(0.0F, 0.0F, 300.0F);
    RecordFor(199.99);
    EXPECT_EQ(m_Step.DataCount(), MFCStep::DataCapacity);
    EXPECT_FALSE(m_Step.RecordFull());
    m_Bench.Time.Advance(1.0);
    EXPECT_FALSE(Record());
    EXPECT_TRUE(m_Step.RecordFull());
    EXPECT_GT(m_Step.NextSampleTime_s(), m_Timer.ElapsedTime()) << "no reason to hurry";
}

TEST_F(MFCStepTest, TracesRunOnAcrossAStepChange) {
    RecordedGraphs graphs;
    RecordedLabels labels;
    Start(0.0F, 0.0F, 2.0F);
    m_Step.RecordDataPoint(m_Board, &graphs.Set, &labels);
    EXPECT_TRUE(graphs.Surfaces[0].Segments.empty()) << "one point makes no line";
    m_Bench.Time.Advance(0.02);
    m_Step.RecordDataPoint(m_Board, &graphs.Set, &labels);
    const std::array<std::size_t, 5> perSample = {2, 2, 1, 1, 1};
    for (std::size_t i = 0; i < perSample.size(); ++i)
        EXPECT_EQ(graphs.Surfaces.at(i).Segments.size(), perSample.at(i)) << i;

    MFCStep next;
    next.Init(1, 0.2F, 0.0F, 2.0F, &m_Step);
    EXPECT_FLOAT_EQ(next.EndTime_s(), 4.0F);
    next.StartStep(m_Timer, m_Bench.TheStation);
    next.RecordDataPoint(m_Board, &graphs.Set, &labels);
    const RecordedSurface::Segment& joint = graphs.Surfaces[0].Segments.at(2);
    EXPECT_DOUBLE_EQ(joint.X1, m_Step.data(1, 0) / 1000.0);
    EXPECT_DOUBLE_EQ(joint.Y2, 13106.0);
    EXPECT_EQ(graphs.Surfaces[3].Segments.size(), 1U) << "differences are not joined";
    EXPECT_EQ(labels.Captions[0], "13106  :  " + std::to_string(next.data(0, 2)));
    EXPECT_EQ(labels.Captions[3], std::to_string(next.data(0, 2) - 13106));
}

TEST(MFCStepSensors, ThePressureColumnFollowsTheSensor) {
    for (const std::int32_t sensor : {0, 1, 2}) {
        TestBench bench("acu");
        AIB& board = bench.Detect();
        PutWord(board, 44, sensor);
        bench.TheStation.Calibration().ReadEPROMValues();
        HiResTimer timer(bench.Time);
        MFCStep step;
        step.Init(0, 0.0F, 0.0F, 1.0F, nullptr);
        step.StartStep(timer, bench.TheStation);
        step.RecordDataPoint(board, nullptr, nullptr);
        EXPECT_EQ(step.data(0, 5) != 0, sensor < 2) << sensor;
    }
}

TEST(MFCStepFaults, ADisturbanceIsNotRecordedAndABoardGoneForASecondEndsIt) {
    TestBench bench("acu", {"unplug@1"});
    AIB& board = bench.Detect();
    HiResTimer timer(bench.Time);
    MFCStep step;
    step.Init(0, 0.0F, 0.0F, 10.0F, nullptr);
    step.StartStep(timer, bench.TheStation);
    EXPECT_TRUE(step.RecordDataPoint(board, nullptr, nullptr));
    bench.Time.Advance(1.1);
    EXPECT_FALSE(step.RecordDataPoint(board, nullptr, nullptr));
    bench.Time.Advance(0.9);
    EXPECT_FALSE(step.RecordDataPoint(board, nullptr, nullptr));
    bench.Time.Advance(0.2);
    EXPECT_THROW(step.RecordDataPoint(board, nullptr, nullptr), BoardError);
    EXPECT_EQ(step.DataCount(), 1);
}

} // namespace
} // namespace ombrix
