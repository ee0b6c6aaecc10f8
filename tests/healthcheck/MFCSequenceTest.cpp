#include "healthcheck/MFCSequence.h"

#include "healthcheck/RecordedViews.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

class MFCSequenceTest : public ::testing::Test {
  protected:
    void UseBench(const std::vector<std::string>& faults) {
        m_Bench = std::make_unique<TestBench>("acu", faults);
        m_Board = &m_Bench->Detect();
        m_Bench->TheStation.Calibration().ReadEPROMValues();
    }
    void SetUp() override { UseBench({}); }

    bool Run(const SequenceView& view = {}) {
        Station& station = m_Bench->TheStation;
        const RunningProcedure procedure(station.Procedures, "test");
        ProcedureWait wait(station);
        std::int32_t row = 7;
        return m_Sequence.RunSequence(station, wait, view, nullptr, "", row);
    }
    double Now_s() const {
        return static_cast<double>(m_Bench->Time.Counter()) /
               static_cast<double>(m_Bench->Time.Frequency());
    }
    void ExpectAirOff() { EXPECT_LT(m_Bench->FlowLater_bits(), TestBench::NoFlow_bits); }

    std::unique_ptr<TestBench> m_Bench;
    AIB* m_Board = nullptr;
    MFCSequence m_Sequence;
};

TEST_F(MFCSequenceTest, RunsItsStepsBackToBack) {
    m_Sequence.AddStep(0.0F, 0.0F, 2.0F);
    m_Sequence.AddStep(0.2F, 0.0F, 2.0F);
    m_Sequence.AddStep(0.0F, 0.3F, 2.0F);
    EXPECT_FLOAT_EQ(m_Sequence.TotalTime_s(), 6.0F);
    RecordedStepList steps;
    EXPECT_TRUE(Run({.Steps = &steps}));
    EXPECT_NEAR(Now_s(), 6.0, 0.01);
    ExpectAirOff();
    EXPECT_EQ(steps.Selections, (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(steps.Items[1], "2.    Ch1 20.0%     Ch2 0.0%     for     2s");
    for (std::int32_t step = 0; step < 3; ++step)
        EXPECT_NEAR(m_Sequence.Step(step).DataCount(), 100, 1);
    EXPECT_EQ(m_Sequence.Step(1).data(50, 1), 13106);
    EXPECT_EQ(m_Sequence.Step(2).data(50, 3), 19660);
}

TEST_F(MFCSequenceTest, AStepWithoutDurationRecordsOneSample) {
    m_Sequence.AddStep(0.0F, 0.0F, 0.5F);
    m_Sequence.AddStep(0.1F, 0.0F, 0.0F);
    m_Sequence.AddStep(0.0F, 0.0F, 0.5F);
    EXPECT_TRUE(Run());
    EXPECT_EQ(m_Sequence.Step(1).DataCount(), 1);
}

TEST_F(MFCSequenceTest, GraphsGetTheirFramesAndTheExpectedDemand) {
    m_Sequence.AddStep(0.0F, 0.0F, 2.0F);
    m_Sequence.AddStep(0.2F, 0.0F, 2.0F);
    m_Sequence.AddStep(0.0F, 0.0F, 2.5F);
    RecordedGraphs graphs;
    RecordedLabels labels;
    Run({.Graphs = &graphs.Set, .Labels = &labels});
    const RecordedSurface& channel1 = graphs.Surfaces[0];
    EXPECT_NEAR(channel1.Corners[2], 6.825, 1e-6);
    EXPECT_EQ(channel1.Texts,
              (std::vector<std::string>{"Channel 1 - 5000 mL/min  (6.5 seconds)", "100%"}));
    EXPECT_EQ(graphs.Surfaces[2].Texts[1], "12000");
    EXPECT_EQ(graphs.Surfaces[4].Texts, (std::vector<std::string>{"Ch2 - Diff (Read - Set)"}));
    std::vector<RecordedSurface::Segment> dotted;
    for (const auto& segment : channel1.Segments) {
        if (segment.LineStyle == GraphSurface::Style::Dotted)
            dotted.push_back(segment);
    }
    ASSERT_EQ(dotted.size(), 5U) << "three levels and the two steps between them";
    EXPECT_NEAR(dotted[1].Y2, 13107.0, 0.01);
    EXPECT_DOUBLE_EQ(dotted[1].X1, 2.0);
    EXPECT_DOUBLE_EQ(dotted[4].X2, 6.5);
    EXPECT_EQ(channel1.Segments.back().Width, 2);
    EXPECT_EQ(graphs.Surfaces[3].Segments.back().Width, 1);
}

TEST_F(MFCSequenceTest, AFullRecordIsSaid) {
    m_Sequence.AddStep(0.0F, 0.0F, 210.0F);
    EXPECT_TRUE(Run());
    EXPECT_TRUE(m_Sequence.RecordFull());
    EXPECT_NE(JudgeStep(m_Sequence.Step(0), {}).Why.find("record was full"), std::string::npos);
}

TEST_F(MFCSequenceTest, CancelEndsItAtOnceWithTheAirOff) {
    m_Sequence.AddStep(0.9F, 0.9F, 100.0F);
    m_Bench->Events.At(3.0, [this] { m_Bench->TheStation.Procedures.Cancel(); });
    int told = 0;
    EXPECT_FALSE(Run({.StepEnded = [&told](std::int32_t index) { told += 1 + index; }}));
    EXPECT_EQ(told, 1) << "a step that was not measured to its end";
    EXPECT_NEAR(Now_s(), 3.0, 0.05);
    ExpectAirOff();
    EXPECT_NEAR(m_Sequence.SampleCount(), 150, 2);
}

TEST_F(MFCSequenceTest, ALostBoardEndsItWithTheAirSwitchedOff) {
    UseBench({"unplug@2"});
    m_Sequence.AddStep(0.5F, 0.0F, 100.0F);
    EXPECT_THROW(Run(), BoardError);
    EXPECT_NEAR(Now_s(), 3.0, 0.1);
    EXPECT_EQ(m_Board->DAC(0), 32768) << "what it has taken last";
}

} // namespace
} // namespace ombrix
