#include "calibration/judge/ChannelJudgement.h"

#include "calibration/judge/AcceptanceChecks.h"
#include "calibration/judge/CurveFit.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

void JudgeSystem(ChannelMeasurement& measured, std::size_t channel, CalibrationLog& log) {
    if (!ReadingsRiseWithDemand(measured))
        log.LogCalibration(fmt::format(
            "Warning: The readings of channel {} do not rise with the demand.", channel + 1));
    if (!CheckSystemCalibrationData(measured, measured.BestFit, log))
        measured.DataAcceptable = false;
    if (!measured.DataAcceptable) {
        log.LogCalibration(fmt::format("The values recieved during calibration on Channel {} were "
                                       "not acceptable.",
                                       channel + 1));
        return;
    }
    measured.NewVelocityCal = FitSegments(measured);
    for (std::size_t segment = 0; segment + 1 < measured.Demand.size(); ++segment)
        log.LogCalibration(fmt::format("Segment {},{},{}", segment,
                                       GeneralText(measured.NewVelocityCal.M.at(segment)),
                                       GeneralText(measured.NewVelocityCal.C.at(segment))));
}

} // namespace

void JudgeChannel(ChannelMeasurement& measured, CalibrationKind kind, std::size_t channel,
                  CalibrationLog& log) {
    const auto isValid = [](const PointReading& reading) { return reading.Valid; };
    measured.DataAcceptable =
        std::all_of(measured.Rising.begin(), measured.Rising.end(), isValid) &&
        std::all_of(measured.Falling.begin(), measured.Falling.end(), isValid);
    if (kind == CalibrationKind::Audit)
        measured.AuditPassed = CheckAuditCalibrationData(measured, log);
    else
        JudgeSystem(measured, channel, log);
}

} // namespace ombrix
