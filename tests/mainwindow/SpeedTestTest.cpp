#include "mainwindow/SpeedTest.h"

#include "mainwindow/BenchTestFixture.h"

namespace ombrix {
namespace {

class SpeedTestTest : public BenchTestFixture {
  protected:
    SpeedResult Run() {
        SpeedTest test(*m_Station, *m_Sliders,
                       [this] { m_Modes.push_back(m_Station->g_CurrentAIB->IsDigitalSetup()); });
        m_Cancel = [&test] { test.Cancel(); };
        const SpeedResult result =
            test.Run({.Stage = [this](const std::string& text) { m_Stage = text; }});
        ExpectLeftSafely();
        return result;
    }
    /// Lets each pair take a millisecond.
    void TakeTime() {
        m_Bench->Events.EveryPass = [this] { m_Bench->Time.Advance(0.001); };
    }

    std::function<void()> m_Cancel;
    std::vector<bool> m_Modes;
    std::string m_Stage;
};

TEST_F(SpeedTestTest, TimesBothModesAndLeavesTheBoardInItsOwn) {
    for (const bool digital : {false, true}) {
        Use("acu");
        m_Modes.clear();
        m_Station->g_CurrentAIB->IsDigitalSetup(digital);
        TakeTime();
        std::int32_t highest = 0;
        At(1.9995, [&] { highest = m_Station->g_CurrentAIB->DAC(1); });
        const SpeedResult result = Run();
        EXPECT_EQ(result.Outcome.Ended, End::Completed);
        EXPECT_NEAR(result.Analog_s, 2.0, 0.01);
        EXPECT_NEAR(result.Digital_s, 2.0, 0.01);
        EXPECT_EQ(m_Stage, "Analogue 2.00 s, digital 2.00 s");
        EXPECT_EQ(highest, 1999);
        EXPECT_EQ(m_Modes, (std::vector<bool>{false, true, digital}));
        EXPECT_EQ(m_Station->g_CurrentAIB->IsDigitalSetup(), digital);
        EXPECT_LT(m_Bench->FlowLater_bits(), TestBench::NoFlow_bits);
    }
}

TEST_F(SpeedTestTest, AnalogOutputsDoNotKeepTheirLastValue) {
    Use("acu");
    TakeTime();
    std::int32_t analog = -1;
    At(2.5, [&] { analog = m_Bench->Bench.Board(0).DAC(0); });
    Run();
    EXPECT_EQ(analog, 0);
}

TEST_F(SpeedTestTest, CancelGivesTheModeBack) {
    Use("acu");
    TakeTime();
    At(1.0, [this] { m_Cancel(); });
    EXPECT_EQ(Run().Outcome.Ended, End::Cancelled);
    EXPECT_TRUE(m_Station->g_CurrentAIB->IsDigitalSetup());
    EXPECT_EQ(m_Stage, "Cancelled");
    EXPECT_LT(Now_s(), 1.01);
}

TEST_F(SpeedTestTest, LostBoardEndsTheTest) {
    Use("plain", {"unplug@0.5"});
    TakeTime();
    EXPECT_EQ(Run().Outcome.Ended, End::Failed);
    EXPECT_NEAR(Now_s(), 1.5, 0.01);
    EXPECT_EQ(m_Stage, "Stopped");
    EXPECT_FALSE(m_Station->g_CurrentAIB->IsDigitalSetup());
}

} // namespace
} // namespace ombrix
