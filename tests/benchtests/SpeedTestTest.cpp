#include "benchtests/SpeedTest.h"

#include "benchtests/BenchTestFixture.h"

namespace ombrix {
namespace {

using SpeedTestTest = BenchTestFixture;

TEST_F(SpeedTestTest, TimesBothModesAndLeavesTheBoardInItsOwn) {
    for (const bool digital : {false, true}) {
        Use("acu");
        m_Station->CurrentAIB->IsDigitalSetup(digital);
        m_Bench->Events.EveryPass = [this] { m_Bench->Time.Advance(0.001); }; // for each pair
        At(1.9995, [this] { EXPECT_EQ(m_Station->CurrentAIB->DAC(1), 1999); });
        At(2.5, [this] {
            EXPECT_EQ(m_Bench->Bench.Board(0).DAC(0), 0) << "where analogue demands have gone";
        });
        std::vector<bool> modes;
        SpeedTest test(*m_Station,
                       [&] { modes.push_back(m_Station->CurrentAIB->IsDigitalSetup()); });
        const SpeedResult result = test.Run(View());
        ExpectLeftSafely();
        EXPECT_EQ(result.Ended, End::Passed);
        EXPECT_NEAR(result.Analog_s.value(), 2.0, 0.01);
        EXPECT_NEAR(result.Digital_s.value(), 2.0, 0.01);
        EXPECT_EQ(m_Stages.back(), "Analogue 2.00 s, digital 2.00 s");
        EXPECT_EQ(modes, (std::vector<bool>{false, true, digital}));
        EXPECT_LT(m_Bench->FlowLater_bits(), TestBench::NoFlow_bits);
    }
}

} // namespace
} // namespace ombrix
