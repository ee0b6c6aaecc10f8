#include "calibration/judge/Judgement.h"

#include "calibration/judge/CurveFit.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ombrix {

namespace {

using namespace AcceptanceLimits;

void Log(LogLines& log, std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines)
        log.emplace_back(line);
}

bool CheckHysteresis(const ChannelMeasurement& measured, LogLines& log) {
    Log(log, {"Checking Calibration Data - Hysteresis", "", "Criteria", "--------",
              "Difference (bits) is less than 0.2% of full scale"});
    bool passed = true;
    for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
        const std::int32_t rising = measured.Rising.at(point).Reading_bits;
        const std::int32_t falling = measured.Falling.at(point).Reading_bits;
        const std::int32_t difference = std::abs(falling - rising);
        const bool pointPassed = difference <= Hysteresis_bits;
        passed = passed && pointPassed;
        log.push_back(fmt::format(
            "Checking Point {},{},{},{},<-- {} (0.2% Full Scale),{} is {} than {}", point + 1,
            rising, falling, difference, pointPassed ? "Pass" : "Fail", difference,
            pointPassed ? "not greater" : "greater", GeneralText(Hysteresis_bits)));
    }
    log.push_back(passed ? " -> Hysteresis Check - Passed" : " -> Hysteresis Check - Failed");
    log.push_back("");
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

void WarnOfDeviations(const ChannelMeasurement& measured, const Line& line, LogLines& log) {
    Log(log, {"Checking Calibration Data - Deviation from MC Fit Line", "", "Criteria", "--------",
              "Each point deviation from best fit line (bits) is less than 0.1% of full scale"});
    for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
        const double onLine =
            static_cast<double>(line.Slope) * measured.Demand.at(point).Bits + line.Intercept;
        const std::int32_t reading = measured.Rising.at(point).Reading_bits;
        const std::int32_t deviation = RoundHalfEven(std::abs(onLine - reading));
        const bool within = deviation <= Deviation_bits;
        log.push_back(fmt::format(
            "Against MC:   {},{},,{},{},<-- {} (0.1% Full Scale),{} is {} than {}", point,
            FixedText(onLine, 2), reading, FixedText(deviation, 2), within ? "Pass" : "Warning",
            deviation, within ? "not greater" : "greater", GeneralText(Deviation_bits)));
    }
    log.push_back(" -> MC Fit Test - Passed");
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

struct PointVerdict {
    bool Passed;
    const char* Criterion;
    /// The figure that is judged, and its limit.
    std::string Figure;
    std::string Limit;
};

PointVerdict JudgeByReading(const AuditPoint& audit) {
    // Without a reading there is nothing of which the error could be a percentage.
    if (audit.Mean_ml_m == 0.0F)
        return {false, "1% of Reading", "-", GeneralText(Error_percent)};
    const float percent = audit.Error_ml_m / audit.Mean_ml_m * 100.0F;
    return {percent <= Error_percent, "1% of Reading", GeneralText(percent),
            GeneralText(Error_percent)};
}

PointVerdict JudgeByFullScale(const AuditPoint& audit, float capacity_ml_m) {
    const auto limit_ml_m = static_cast<float>(static_cast<double>(capacity_ml_m) * LowError_share);
    return {audit.Error_ml_m <= limit_ml_m, "0.1% Full Scale", GeneralText(audit.Error_ml_m),
            GeneralText(limit_ml_m)};
}

} // namespace

bool CheckSystemCalibrationData(const ChannelMeasurement& measured, Line& bestFit, LogLines& log) {
    const bool passed = CheckHysteresis(measured, log);
    bestFit = FitLine(measured);
    WarnOfDeviations(measured, bestFit, log);
    log.push_back(passed ? " -> Calibration Passed" : " -> Calibration Failed");
    return passed;
}

bool CheckAuditCalibrationData(const ChannelMeasurement& measured, LogLines& log) {
    log.push_back("Checking Audit Calibration Data");
    bool passed = true;
    for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
        const AuditPoint audit = AuditPointOf(measured, point);
        const bool isLow = CalPointPrecentage(static_cast<std::int32_t>(point),
                                              CalibrationKind::Audit) <= LowPoint_percent;
        const PointVerdict verdict =
            isLow ? JudgeByFullScale(audit, measured.Capacity_ml_m) : JudgeByReading(audit);
        passed = passed && verdict.Passed;
        log.push_back(fmt::format("Checking Point {},{},{},{},{},<-- {} ({}),{} is {} than {}",
                                  point + 1, GeneralText(audit.Demand_ml_m),
                                  GeneralText(audit.First_ml_m), GeneralText(audit.Second_ml_m),
                                  GeneralText(audit.Mean_ml_m), verdict.Passed ? "Pass" : "Fail",
                                  verdict.Criterion, verdict.Figure,
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

namespace {

std::string NotFollowing(const ChannelMeasurement& measured, const Line& bestFit) {
    if (!ReadingsRiseWithDemand(measured))
        return "the readings do not rise with the demand";
    if (!(bestFit.Slope >= SmallestSlope && bestFit.Slope <= LargestSlope))
        return fmt::format("the slope of the best fit is {}, and not within {} and {}",
                           GeneralText(bestFit.Slope), GeneralText(SmallestSlope),
                           GeneralText(LargestSlope));
    return {};
}

void JudgeSystem(const ChannelMeasurement& measured, std::size_t channel, ChannelVerdict& verdict) {
    LogLines& log = verdict.Log;
    if (!ReadingsRiseWithDemand(measured))
        log.push_back(fmt::format(
            "Warning: The readings of channel {} do not rise with the demand.", channel + 1));
    if (!CheckSystemCalibrationData(measured, verdict.BestFit, log))
        verdict.DataAcceptable = false;
    if (!verdict.DataAcceptable) {
        log.push_back(fmt::format("The values recieved during calibration on Channel {} were not "
                                  "acceptable.",
                                  channel + 1));
        return;
    }
    verdict.NotFollowing = NotFollowing(measured, verdict.BestFit);
    verdict.NewVelocityCal = FitSegments(measured);
    for (std::size_t segment = 0; segment + 1 < measured.Demand.size(); ++segment)
        log.push_back(fmt::format("Segment {},{},{}", segment,
                                  GeneralText(verdict.NewVelocityCal.M.at(segment)),
                                  GeneralText(verdict.NewVelocityCal.C.at(segment))));
}

std::string Fixed2(float value) {
    return FixedText(static_cast<double>(value), 2);
}

LogLines FitLines(std::span<const PressureReading> points, const std::vector<float>& coefficients) {
    LogLines log = {"Data Point,Air Velocity,Bits", Rule(53)};
    for (std::size_t i = 0; i < points.size(); ++i)
        log.push_back(
            fmt::format("{},{},{}", i, Fixed2(points[i].Flow_ml_m), Fixed2(points[i].Reading)));
    Log(log, {Rule(53), "", "Coeffs Number,Coeff Value", Rule(53)});
    for (std::size_t k = 0; k < coefficients.size(); ++k)
        log.push_back(fmt::format("{},{}", k, GeneralText(coefficients[k])));
    Log(log, {Rule(53), ""});
    return log;
}

} // namespace

std::string Rule(std::size_t length) {
    return std::string(length, '-');
}

ChannelVerdict JudgeChannel(const ChannelMeasurement& measured, CalibrationKind kind,
                            std::size_t channel) {
    ChannelVerdict verdict;
    const auto isValid = [](const PointReading& reading) { return reading.Valid; };
    verdict.DataAcceptable = std::all_of(measured.Rising.begin(), measured.Rising.end(), isValid) &&
                             std::all_of(measured.Falling.begin(), measured.Falling.end(), isValid);
    if (kind == CalibrationKind::Audit)
        verdict.AuditPassed = CheckAuditCalibrationData(measured, verdict.Log);
    else
        JudgeSystem(measured, channel, verdict);
    return verdict;
}

bool HasTable(const VelocityResult& result) {
    return result.Measured.Kind == CalibrationKind::System &&
           std::all_of(result.Verdicts.begin(), result.Verdicts.end(),
                       [](const auto& verdict) { return verdict && verdict->DataAcceptable; });
}

bool HasPartOfTable(const VelocityResult& result) {
    return result.Measured.Kind == CalibrationKind::System &&
           std::any_of(result.Verdicts.begin(), result.Verdicts.end(),
                       [](const auto& verdict) { return verdict && verdict->DataAcceptable; });
}

std::string ReasonOfFailure(const VelocityResult& result) {
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const auto& verdict = result.Verdicts.at(channel);
        if (!verdict || !verdict->DataAcceptable)
            return fmt::format("The data collected from channel {} was not acceptable",
                               channel + 1);
    }
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        const std::string& reason = result.Verdicts.at(channel)->NotFollowing;
        if (!reason.empty())
            return fmt::format("Channel {} does not follow the demand: {}", channel + 1, reason);
    }
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        if (result.Measured.Kind == CalibrationKind::Audit &&
            !result.Verdicts.at(channel)->AuditPassed)
            return fmt::format("Channel {} failed the audit calibration", channel + 1);
    }
    return {};
}

PressureVerdict FitPressure(std::span<const PressureReading> points) {
    constexpr std::int32_t order = 3;
    std::vector<std::array<float, 2>> data;
    for (const PressureReading& point : points)
        data.push_back({point.Flow_ml_m, point.Reading});
    std::vector<float> coefficients;
    PressureVerdict verdict;
    verdict.Passed = CalculateMCPoly(data, coefficients, order);
    if (!verdict.Passed) {
        verdict.Log = {"Calibration Failed Audit"};
        return verdict;
    }
    std::copy(coefficients.begin(), coefficients.end(), verdict.Coefficients.begin());
    verdict.Log = FitLines(points, coefficients);
    const bool rises =
        std::adjacent_find(points.begin(), points.end(), [](const auto& lower, const auto& higher) {
            return higher.Reading <= lower.Reading;
        }) == points.end();
    if (!rises) {
        verdict.Passed = false;
        verdict.NotFollowing = "The pressure does not rise with the flow";
    }
    return verdict;
}

PressureVerdict CheckPressure(std::span<const PressureReading> points, float base_mm) {
    PressureVerdict verdict;
    verdict.Passed = true;
    verdict.Log = {"", "Check Audit Data", Rule(16)};
    for (std::size_t i = 0; i < points.size(); ++i) {
        const bool passes = std::abs(points[i].Reading) <= Pressure_mBar;
        verdict.Passed = verdict.Passed && passes;
        verdict.Log.push_back(fmt::format("Calibration Point {}: {}:  {}:  {}:    ({})",
                                          passes ? "Passed" : "Failed", i,
                                          Fixed2(points[i].Flow_ml_m), Fixed2(points[i].Reading),
                                          FixedText(static_cast<double>(Pressure_mBar), 1)));
    }
    verdict.Log.push_back(Rule(16));
    verdict.Log.push_back(fmt::format("Audit Calibration {}:  Base Index: 0  ({} mm)",
                                      verdict.Passed ? "Passed" : "Failed", GeneralText(base_mm)));
    return verdict;
}

} // namespace ombrix
