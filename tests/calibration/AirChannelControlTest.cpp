#include "calibration/air/AirChannelControl.h"

#include "calibration/air/AirUnits.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

using State = ChangeOverState;

struct TableRow {
    State Present;
    ChangeOverInputs Inputs;
    State Next;
};

class ChangeOverTable : public ::testing::TestWithParam<TableRow> {};

TEST_P(ChangeOverTable, Next) {
    EXPECT_EQ(NextChangeOverState(GetParam().Present, GetParam().Inputs), GetParam().Next);
}

INSTANTIATE_TEST_SUITE_P(
    StateByState, ChangeOverTable,
    ::testing::Values(
        TableRow{State::NewDemand, {.Demand_bits = 0}, State::Off},
        TableRow{State::NewDemand, {.Demand_bits = 0, .Output_bits = 9}, State::Off},
        TableRow{State::NewDemand, {.Demand_bits = 655, .Output_bits = 1}, State::Settled},
        TableRow{State::NewDemand, {.Demand_bits = 19660}, State::PreCharge},
        TableRow{State::NewDemand, {.Demand_bits = 19661}, State::Settle},
        TableRow{State::PreCharge, {.Reading_bits = 9999, .InState_s = 99.0}, State::PreCharge},
        TableRow{State::PreCharge, {.Reading_bits = 10000}, State::Settle},
        TableRow{State::Settle, {.InState_s = 4.999}, State::Settle},
        TableRow{State::Settle, {.InState_s = 5.0}, State::Settled},
        TableRow{State::Settled, {.Reading_bits = 60000, .InState_s = 99.0}, State::Settled},
        TableRow{State::Off, {.Demand_bits = 655}, State::Off}));

class AirChannelControlTest : public ::testing::Test {
  protected:
    AirChannelControl& On(const std::string& bench) {
        m_Bench = std::make_unique<TestBench>(bench);
        AIB& board = m_Bench->Detect();
        m_Bench->TheStation.Calibration().ReadEPROMValues();
        board.IsDigitalSetup(false); // the DACs then show what was sent
        m_Air = std::make_unique<AirChannelControl>(m_Bench->TheStation);
        return *m_Air;
    }
    std::int32_t DAC(std::int32_t channel) { return m_Bench->Bench.Board(0).DAC(channel); }
    double Line() {
        const Clock& time = m_Bench->Time;
        return m_Bench->Bench.Board(0).LineFlow_ml_m(static_cast<double>(time.Counter()) /
                                                     static_cast<double>(time.Frequency()));
    }
    /// Polls for a while, as a wait loop does.
    void Poll(double seconds) {
        for (double passed = 0.0; passed < seconds; passed += 0.01) {
            m_Bench->Time.Advance(0.01);
            m_Air->CurrentAir_mms(true);
        }
    }

    std::unique_ptr<TestBench> m_Bench;
    std::unique_ptr<AirChannelControl> m_Air;
};

TEST_F(AirChannelControlTest, AirNeverStopsWhileTheSmallChannelTakesOver) {
    AirChannelControl& air = On("acu");
    air.SetAirVelocityInternal_ml_m(2500.0F);
    Poll(6.0);
    EXPECT_FALSE(air.ChangeOverBusy());
    const std::int32_t large = DAC(0);
    const AirSetting small = air.SetAirVelocityInternal_ml_m(20.0F);
    EXPECT_EQ(DAC(1), PreChargeOutput_bits);
    EXPECT_EQ(DAC(0), large) << "goes on flowing";
    Poll(1.0);
    EXPECT_EQ(DAC(1), small.DemandBits) << "its air has come";
    EXPECT_EQ(DAC(0), large);
    Poll(3.5);
    EXPECT_EQ(DAC(0), large) << "both flow for 5 s";
    EXPECT_TRUE(air.ChangeOverBusy());
    Poll(1.0);
    EXPECT_EQ(DAC(0), 0);
    EXPECT_FALSE(air.ChangeOverBusy());
    Poll(2.0);
    EXPECT_NEAR(Line(), 20.0, 0.2) << "the valve lets the small channel through";
    EXPECT_NEAR(air.CurrentAir_mms(true), FlowToVelocity(20.0F), 0.005F);
}

TEST_F(AirChannelControlTest, TheFlowChoosesTheChannel) {
    AirChannelControl& air = On("acu");
    air.SetAirVelocityInternal_ml_m(200.0F);
    Poll(7.0);
    EXPECT_EQ(DAC(0), 0);
    EXPECT_GT(DAC(1), 60000);
    air.SetAirVelocityInternal_ml_m(200.1F);
    Poll(7.0);
    EXPECT_NEAR(air.CurrentChannelAir_ml_m(0).value(), 200.1F, 1.0F);
    EXPECT_EQ(DAC(1), 0);
}

TEST_F(AirChannelControlTest, ZeroSwitchesEverythingOff) {
    AirChannelControl& air = On("acu");
    air.SetChannelDAC(2, 70000);
    EXPECT_EQ(DAC(2), 65535);
    air.SetChannelDAC(3, -5);
    EXPECT_EQ(DAC(3), 0);
    air.SetAirVelocityInternal_mm_s(5.0F, 1);
    Poll(7.0);
    air.SetAirVelocityInternal_mm_s(0.0F);
    for (const std::int32_t channel : {0, 1, 2, 3})
        EXPECT_EQ(DAC(channel), 0) << channel;
    EXPECT_EQ(air.SetAirVelocityInternal_mm_s(0.0F).DemandBits, 0);
    EXPECT_EQ(m_Bench->Bench.Board(0).PinLevel(8, 0.0), true) << "valve at the large channel";
}

TEST_F(AirChannelControlTest, WithoutValvesTheOtherChannelIsClosedAtOnce) {
    AirChannelControl& air = On("plain");
    air.SetAirVelocityInternal_ml_m(1000.0F, 0);
    EXPECT_FALSE(air.ChangeOverBusy());
    Poll(3.0);
    const AirSetting small = air.SetAirVelocityInternal_ml_m(100.0F, 1);
    EXPECT_EQ(DAC(0), 0);
    EXPECT_EQ(DAC(1), small.DemandBits);
    Poll(3.0);
    EXPECT_NEAR(air.CurrentAir_mms(false), FlowToVelocity(100.0F), 0.01F);
}

TEST_F(AirChannelControlTest, LittleAirCountsAsNone) {
    AirChannelControl& air = On("plain");
    air.SetChannelDAC(0, 600);
    Poll(3.0);
    EXPECT_EQ(air.CurrentChannelAir_ml_m(0), 0.0F);
    EXPECT_EQ(air.CurrentAir_mms(true), 0.0F);
    EXPECT_GT(air.CurrentAir_mms(false), 0.0F);
}

TEST_F(AirChannelControlTest, AUnitWithoutATableIsNotDriven) {
    AirChannelControl& air = On("fresh");
    const AirSetting setting = air.SetAirVelocityInternal_ml_m(100.0F);
    EXPECT_EQ(setting.DemandBits, 0);
    EXPECT_EQ(DAC(0) + DAC(1), 0);
}

} // namespace
} // namespace ombrix
