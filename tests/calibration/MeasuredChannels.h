#pragma once

#include "calibration/air/AirUnits.h"
#include "calibration/judge/CurveFit.h"
#include "calibration/judge/Judgement.h"
#include "platform/os/FolderDrive.h"
#include "platform/text/Rounding.h"
#include "support/WorkbookProbe.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace ombrix {

/// A reading with a short trace. @param flow_ml_m the mean flow
inline PointReading Reading(std::int32_t bits, float flow_ml_m) {
    return {bits, flow_ml_m, true, {{0.0F, 0}, {0.5F, bits - 2}, {1.0F, bits}}};
}

/// A channel that delivers a bit more when the air falls. All of its points have readings.
inline ChannelMeasurement MeasuredChannel(CalibrationKind kind, float capacity_ml_m) {
    constexpr std::int32_t hysteresis_bits = 40;
    ChannelMeasurement measured;
    measured.Capacity_ml_m = capacity_ml_m;
    for (std::int32_t point = 0; point < 10; ++point) {
        PointDemand demand = DemandOfPoint(point, kind, capacity_ml_m);
        demand.Bits = RoundHalfEven(static_cast<double>(demand.Flow_ml_m) * FullScale_bits /
                                    static_cast<double>(capacity_ml_m));
        const std::int32_t fallen = demand.Bits + hysteresis_bits;
        measured.Demand.push_back(demand);
        measured.Rising.push_back(Reading(demand.Bits, demand.Flow_ml_m));
        measured.Falling.push_back(Reading(fallen, FlowOfBits(fallen, capacity_ml_m)));
    }
    for (const std::int32_t point : {1, 3}) {
        const PointDemand& demand = measured.Demand.at(static_cast<std::size_t>(point));
        measured.Steps.push_back(
            {point, demand, Reading(demand.Bits + 10, demand.Flow_ml_m + 1.0F)});
    }
    return measured;
}

/// Both channels of a run that has been judged good.
inline VelocityResult GoodRun(CalibrationKind kind) {
    VelocityResult run;
    run.Measured = {kind, {MeasuredChannel(kind, 5000.0F), MeasuredChannel(kind, 200.0F)}};
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const ChannelMeasurement& measured = run.Measured.Channels.at(channel);
        run.Verdicts.at(channel) = {
            .DataAcceptable = true,
            .AuditPassed = kind == CalibrationKind::Audit,
            .BestFit = kind == CalibrationKind::System ? Line{1.0F, 20.0F} : Line{},
            .NewVelocityCal = FitSegments(measured),
            .Log = {},
        };
    }
    return run;
}

/// The same, cancelled in the falling sweep of its first channel.
inline VelocityResult CancelledRun(CalibrationKind kind) {
    VelocityResult run;
    run.Measured = {kind, {MeasuredChannel(kind, 5000.0F), {}}};
    auto& [first, second] = run.Measured.Channels;
    first.Steps.clear();
    for (std::size_t point = 0; point < 7; ++point)
        first.Falling.at(point) = {};
    second.Capacity_ml_m = 200.0F;
    return run;
}

/// Looks into a saved workbook.
inline WorkbookProbe ProbeOf(const std::optional<std::filesystem::path>& file) {
    EXPECT_TRUE(file && std::filesystem::exists(*file));
    return WorkbookProbe(ReadWholeFile(file.value()));
}

/// What stands in some cells of a sheet.
inline std::vector<std::string> Cells(WorkbookProbe& book, const std::string& sheet,
                                      const std::vector<std::string>& addresses) {
    std::vector<std::string> texts;
    for (const std::string& address : addresses)
        texts.push_back(book.Value(sheet, address));
    return texts;
}

} // namespace ombrix
