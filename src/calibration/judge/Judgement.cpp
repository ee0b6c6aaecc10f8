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

PointVerdict JudgeHysteresis(const ChannelMeasurement& measured, std::size_t point) {
    const std::int32_t signedDifference =
        measured.Falling.at(point).Reading_bits - measured.Rising.at(point).Reading_bits;
    const std::int32_t difference = std::abs(signedDifference);
    PointVerdict verdict{difference <= Hysteresis_bits, "0.2% Full Scale",
                         std::to_string(difference), GeneralText(Hysteresis_bits), "bits"};
    verdict.OfLimit = signedDifference / Hysteresis_bits;
    if (!verdict.Passed)
        verdict.Why = fmt::format("The falling reading is {} bits off the rising one; {} bits "
                                  "(0.2 % of full scale) are allowed.",
                                  verdict.Figure, verdict.Limit);
    return verdict;
}

bool CheckHysteresis(const ChannelMeasurement& measured, LogLines& log) {
    Log(log, {"Checking Calibration Data - Hysteresis", "", "Criteria", "--------",
              "Difference (bits) is less than 0.2% of full scale"});
    bool passed = true;
    for (std::size_t point = 0; point < measured.Demand.size(); ++point) {
        const PointVerdict verdict = JudgeHysteresis(measured, point);
        passed = passed && verdict.Passed;
        log.push_back(fmt::format(
            "Checking Point {},{},{},{},<-- {} ({}),{} is {} than {}", point + 1,
            measured.Rising.at(point).Reading_bits, measured.Falling.at(point).Reading_bits,
            verdict.Figure, verdict.Passed ? "Pass" : "Fail", verdict.Criterion, verdict.Figure,
            verdict.Passed ? "not greater" : "greater", verdict.Limit));
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

PointVerdict JudgeByReading(float error_ml_m, float mean_ml_m) {
    // Without a reading there is nothing of which the error could be a percentage.
    if (mean_ml_m == 0.0F)
        return {false,          "1% of Reading",         "-", GeneralText(Error_percent),
                "% of reading", "No air has been read.", {}};
    const float percent = std::abs(error_ml_m) / mean_ml_m * 100.0F;
    PointVerdict verdict{percent <= Error_percent, "1% of Reading", GeneralText(percent),
                         GeneralText(Error_percent), "% of reading"};
    verdict.OfLimit = std::copysign(static_cast<double>(percent / Error_percent),
                                    static_cast<double>(error_ml_m));
    if (!verdict.Passed)
        verdict.Why = fmt::format("The mean flow is {} % of the reading off its demand; {} % is "
                                  "allowed.",
                                  verdict.Figure, verdict.Limit);
    return verdict;
}

PointVerdict JudgeByFullScale(float error_ml_m, float capacity_ml_m) {
    const auto limit_ml_m = static_cast<float>(static_cast<double>(capacity_ml_m) * LowError_share);
    PointVerdict verdict{std::abs(error_ml_m) <= limit_ml_m, "0.1% Full Scale",
                         GeneralText(std::abs(error_ml_m)), GeneralText(limit_ml_m), "ml/min"};
    verdict.OfLimit = static_cast<double>(error_ml_m / limit_ml_m);
    if (!verdict.Passed)
        verdict.Why = fmt::format("The mean flow is {} ml/min off its demand; {} ml/min (0.1 % of "
                                  "full scale) are allowed.",
                                  verdict.Figure, verdict.Limit);
    return verdict;
}

PointVerdict JudgeAudit(const ChannelMeasurement& measured, std::size_t point) {
    const float mean_ml_m = MeanFlow_ml_m(measured, point);
    const float error_ml_m = mean_ml_m - measured.Demand.at(point).Flow_ml_m;
    const bool isLow = CalPointPrecentage(static_cast<std::int32_t>(point),
                                          CalibrationKind::Audit) <= LowPoint_percent;
    return isLow ? JudgeByFullScale(error_ml_m, measured.Capacity_ml_m)
                 : JudgeByReading(error_ml_m, mean_ml_m);
}

} // namespace

float MeanFlow_ml_m(const ChannelMeasurement& measured, std::size_t point) {
    return (measured.Rising.at(point).Flow_ml_m + measured.Falling.at(point).Flow_ml_m) / 2.0F;
}

PointVerdict JudgePoint(const ChannelMeasurement& measured, CalibrationKind kind,
                        std::size_t point) {
    return kind == CalibrationKind::Audit ? JudgeAudit(measured, point)
                                          : JudgeHysteresis(measured, point);
}

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
        const PointVerdict verdict = JudgeAudit(measured, point);
        passed = passed && verdict.Passed;
        log.push_back(fmt::format(
            "Checking Point {},{},{},{},{},<-- {} ({}),{} is {} than {}", point + 1,
            GeneralText(measured.Demand.at(point).Flow_ml_m),
            GeneralText(measured.Rising.at(point).Flow_ml_m),
            GeneralText(measured.Falling.at(point).Flow_ml_m),
            GeneralText(MeanFlow_ml_m(measured, point)), verdict.Passed ? "Pass" : "Fail",
            verdict.Criterion, verdict.Figure, verdict.Passed ? "less" : "greater", verdict.Limit));
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

PointVerdict JudgePressure(const PressureReading& point) {
    PointVerdict verdict{std::abs(point.Reading) <= Pressure_mBar, "0.5 mBar",
                         Fixed2(point.Reading), FixedText(static_cast<double>(Pressure_mBar), 1),
                         "mBar"};
    verdict.OfLimit = static_cast<double>(point.Reading / Pressure_mBar);
    if (!verdict.Passed)
        verdict.Why = fmt::format("The pressure reads {} mBar; up to {} mBar are allowed.",
                                  verdict.Figure, verdict.Limit);
    return verdict;
}

PressureVerdict CheckPressure(std::span<const PressureReading> points, float base_mm) {
    PressureVerdict verdict;
    verdict.Passed = true;
    verdict.Log = {"", "Check Audit Data", Rule(16)};
    for (std::size_t i = 0; i < points.size(); ++i) {
        const PointVerdict point = JudgePressure(points[i]);
        verdict.Passed = verdict.Passed && point.Passed;
        verdict.Log.push_back(fmt::format("Calibration Point {}: {}:  {}:  {}:    ({})",
                                          point.Passed ? "Passed" : "Failed", i,
                                          Fixed2(points[i].Flow_ml_m), point.Figure, point.Limit));
    }
    verdict.Log.push_back(Rule(16));
    verdict.Log.push_back(fmt::format("Audit Calibration {}:  Base Index: 0  ({} mm)",
                                      verdict.Passed ? "Passed" : "Failed", GeneralText(base_mm)));
    return verdict;
}

} // namespace ombrix
