#include "calibration/air/AirUnits.h"

#include <gtest/gtest.h>

#include <limits>

namespace ombrix {
namespace {

TEST(AirUnits, TheTwoDirectionsUseTheirOwnConstants) {
    // Computed apart, in Double with the named constants, rounded to Single at the end.
    EXPECT_EQ(FlowToVelocity(5000.0F), 42.441322326660156F);
    EXPECT_EQ(VelocityToFlow(42.441322326660156F), 5000.00048828125F);
    EXPECT_EQ(FlowToVelocity(200.0F), 1.697652816772461F);
    EXPECT_EQ(VelocityToFlow(1.697652816772461F), 200.0F) << "stays with the small channel";
    EXPECT_EQ(FlowToVelocity(1000.0F, 25.0F), 33.95305633544922F);
    EXPECT_EQ(VelocityToFlow(10.0F, 25.0F), 294.5242919921875F);
    EXPECT_EQ(FlowToVelocity(200.0F, 0.0F), FlowToVelocity(200.0F, 50.0F));
}

TEST(AirUnits, DemandsOfTheCalibrationPoints) {
    EXPECT_EQ(DemandOfPoint(0, CalibrationKind::System, 5000.0F).Bits, 655);
    EXPECT_EQ(DemandOfPoint(1, CalibrationKind::System, 5000.0F).Bits, 2621);
    EXPECT_EQ(DemandOfPoint(9, CalibrationKind::System, 5000.0F).Bits, 62257);
    EXPECT_EQ(DemandOfPoint(0, CalibrationKind::Audit, 5000.0F).Flow_ml_m, 150.0F);
    EXPECT_EQ(DemandOfPoint(9, CalibrationKind::Audit, 200.0F).Flow_ml_m, 180.0F);
    for (const std::int32_t point : {-1, 10, 255})
        EXPECT_EQ(CalPointPrecentage(point, CalibrationKind::Audit), 0) << point;
}

/// Two segments: 1 : 1 up to 1000 bits, then 1 : 2.
ACUChannelCal BentTable() {
    ACUChannelCal table;
    table.Demand = {0, 1000, 3000};
    table.M = {1.0F, 2.0F};
    table.C = {0.0F, -1000.0F};
    return table;
}

TEST(DemandFromTable, SearchesTheSegmentThatReachesTheFlow) {
    struct Case {
        float Target_bits;
        float Demand;
    };
    // With a capacity of 65534 a flow is its target in bits.
    for (const Case& c : {Case{500.0F, 500.0F}, Case{1000.0F, 1000.0F}, Case{1001.0F, 1000.5F},
                          Case{9000.0F, 5000.0F}, Case{200000.0F, 65534.0F}, Case{-9.0F, 0.0F}})
        EXPECT_EQ(DemandFromTable(c.Target_bits, 65534.0F, BentTable(), 3), c.Demand)
            << c.Target_bits;
    EXPECT_EQ(DemandFromTable(2.5F, 65534.0F, BentTable(), 3), 2.0F) << "half to even";
    EXPECT_EQ(DemandFromTable(9000.0F, 65534.0F, BentTable(), 2), 9000.0F)
        << "only the first segment counts";
}

TEST(DemandFromTable, DamagedRecordsGiveNoDemand) {
    ACUChannelCal damaged = BentTable();
    damaged.C.fill(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(DemandFromTable(100.0F, 5000.0F, damaged, 3), 0.0F);
    EXPECT_EQ(DemandFromTable(100.0F, 5000.0F, ACUChannelCal(), 10), 0.0F) << "no slope";
    EXPECT_EQ(DemandFromTable(100.0F, 0.0F, BentTable(), 3), 0.0F);
    EXPECT_EQ(DemandFromTable(100.0F, 5000.0F, BentTable(), -7), 0.0F);
    EXPECT_GT(DemandFromTable(100.0F, 5000.0F, BentTable(), 1 << 30), 0.0F);
}

} // namespace
} // namespace ombrix
