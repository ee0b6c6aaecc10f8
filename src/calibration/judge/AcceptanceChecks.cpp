#include "calibration/judge/AcceptanceChecks.h"

#include "calibration/air/AirUnits.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ombrix {

namespace {

using namespace AcceptanceLimits;

void Log(CalibrationLog& log, std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines)
        log.LogCalibration(line);
}

bool CheckHysteresis(const ChannelMeasurement& measured, CalibrationLog& log) {
    Log(log, {"Checking Calibration Data - Hysteresis", "", "Criteria", "--------",
              "Difference (bits) is less than 0.2% of full scale"});
    bool passed = true;
    for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
        const std::int32_t rising = measured.Rising.at(point).Reading_bits;
        const std::int32_t falling = measured.Falling.at(point).Reading_bits;
        const std::int32_t difference = std::abs(falling - rising);
        const bool pointPassed = difference <= Hysteresis_bits;
        passed = passed && pointPassed;
        log.LogCalibration(fmt::format(
            "Checking Point {},{},{},{},<-- {} (0.2% Full Scale),{} is {} than {}", point + 1,
            rising, falling, difference, pointPassed ? "Pass" : "Fail", difference,
            pointPassed ? "not greater" : "greater", GeneralText(Hysteresis_bits)));
    }
    log.LogCalibration(passed ? " -> Hysteresis Check - Passed" : " -> Hysteresis Check - Failed");
    log.LogCalibration("");
    return passed;
}

/// Through the readings of both sweeps.
Line FitLine(const ChannelMeasurement& measured) {
    std::vector<std::array<std::int32_t, 2>> table;
    for (const auto* sweep : {&measured.Rising, &measured.Falling}) {
        for (std::size_t point = 0; point < measured.Demand.size(); ++point)
            table.push_back({measured.Demand.at(point).Bits, sweep->at(point).Reading_bits});
    }
    Line line;
    LinearFit(table, 0, static_cast<int>(table.size()) - 1, line);
    return line;
}

void WarnOfDeviations(const ChannelMeasurement& measured, const Line& line, CalibrationLog& log) {
    Log(log, {"Checking Calibration Data - Deviation from MC Fit Line", "", "Criteria", "--------",
              "Each point deviation from best fit line (bits) is less than 0.1% of full scale"});
    for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
        const double onLine =
            static_cast<double>(line.Slope) * measured.Demand.at(point).Bits + line.Intercept;
        const std::int32_t reading = measured.Rising.at(point).Reading_bits;
        const std::int32_t deviation = RoundHalfEven(std::abs(onLine - reading));
        const bool within = deviation <= Deviation_bits;
        log.LogCalibration(fmt::format(
            "Against MC:   {},{},,{},{},<-- {} (0.1% Full Scale),{} is {} than {}", point,
            FixedText(onLine, 2), reading, FixedText(deviation, 2), within ? "Pass" : "Warning",
            deviation, within ? "not greater" : "greater", GeneralText(Deviation_bits)));
    }
    log.LogCalibration(" -> MC Fit Test - Passed");
}

struct AuditPoint {
    float Demand_ml_m;
    float First_ml_m;
    float Second_ml_m;
    float Mean_ml_m;
    float Error_ml_m;
};

AuditPoint AuditPointOf(const ChannelMeasurement& measured, std::size_t point) {
    AuditPoint audit{};
    audit.Demand_ml_m = measured.Demand.at(point).Flow_ml_m;
    audit.First_ml_m = measured.Rising.at(point).Flow_ml_m;
    audit.Second_ml_m = measured.Falling.at(point).Flow_ml_m;
    audit.Mean_ml_m = (audit.First_ml_m + audit.Second_ml_m) / 2.0F;
    audit.Error_ml_m = std::abs(audit.Demand_ml_m - audit.Mean_ml_m);
    return audit;
}

struct Verdict {
    bool Passed;
    const char* Criterion;
    /// The figure that is judged, and its limit.
    std::string Figure;
    std::string Limit;
};

Verdict JudgeByReading(const AuditPoint& audit) {
    // Without a reading there is nothing of which the error could be a percentage.
    if (audit.Mean_ml_m == 0.0F)
        return {false, "1% of Reading", "-", GeneralText(Error_percent)};
    const float percent = audit.Error_ml_m / audit.Mean_ml_m * 100.0F;
    return {percent <= Error_percent, "1% of Reading", GeneralText(percent),
            GeneralText(Error_percent)};
}

Verdict JudgeByFullScale(const AuditPoint& audit, float capacity_ml_m) {
    const auto limit_ml_m = static_cast<float>(static_cast<double>(capacity_ml_m) * 0.001);
    return {audit.Error_ml_m <= limit_ml_m, "0.1% Full Scale", GeneralText(audit.Error_ml_m),
            GeneralText(limit_ml_m)};
}

} // namespace

bool CheckSystemCalibrationData(const ChannelMeasurement& measured, Line& bestFit,
                                CalibrationLog& log) {
    const bool passed = CheckHysteresis(measured, log);
    bestFit = FitLine(measured);
    WarnOfDeviations(measured, bestFit, log);
    log.LogCalibration(passed ? " -> Calibration Passed" : " -> Calibration Failed");
    return passed;
}

bool CheckAuditCalibrationData(const ChannelMeasurement& measured, CalibrationLog& log) {
    log.LogCalibration("Checking Audit Calibration Data");
    bool passed = true;
    for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
        const AuditPoint audit = AuditPointOf(measured, point);
        const bool isLow = CalPointPrecentage(static_cast<std::int32_t>(point),
                                              CalibrationKind::Audit) <= LowPoint_percent;
        const Verdict verdict =
            isLow ? JudgeByFullScale(audit, measured.Capacity_ml_m) : JudgeByReading(audit);
        passed = passed && verdict.Passed;
        log.LogCalibration(
            fmt::format("Checking Point {},{},{},{},{},<-- {} ({}),{} is {} than {}", point + 1,
                        GeneralText(audit.Demand_ml_m), GeneralText(audit.First_ml_m),
                        GeneralText(audit.Second_ml_m), GeneralText(audit.Mean_ml_m),
                        verdict.Passed ? "Pass" : "Fail", verdict.Criterion, verdict.Figure,
                        verdict.Passed ? "less" : "greater", verdict.Limit));
    }
    return passed;
}

bool ReadingsRiseWithDemand(const ChannelMeasurement& measured) {
    const auto rises = [](const std::vector<PointReading>& sweep) {
        return std::adjacent_find(sweep.begin(), sweep.end(),
                                  [](const PointReading& lower, const PointReading& higher) {
                                      return higher.Reading_bits <= lower.Reading_bits;
                                  }) == sweep.end();
    };
    return rises(measured.Rising) && rises(measured.Falling);
}

} // namespace ombrix
