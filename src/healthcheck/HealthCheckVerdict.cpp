#include "healthcheck/HealthCheckVerdict.h"

#include "healthcheck/MFCSequence.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ombrix {

namespace {

namespace Overview = HealthCheckLayout::Overview;

std::string WhyNotEvaluated(const MFCStep& step) {
    if (step.RecordFull())
        return "Not evaluated: its record was full before it ended.";
    if (!step.Ended())
        return "Not evaluated: it has not run to its end.";
    if (!step.IsMeasured())
        return "Not evaluated: too few samples.";
    return fmt::format("Not evaluated: steps of up to {} s are not.", Overview::EndWindow_s);
}

StepJudgement::Channel JudgeChannel(const MFCStep& step, std::int32_t channel,
                                    const HealthCheckLimits& limits) {
    const double off_bits = AsInSheet(step.EndValue(channel)) -
                            AsInSheet(step.DemandValue_Percent(channel)) * limits.FullScale_bits;
    const bool passes = std::abs(off_bits) <= limits.Limit_share * limits.FullScale_bits;
    return {passes ? StepVerdict::Pass : StepVerdict::Fail, off_bits / limits.FullScale_bits};
}

} // namespace

double AsInSheet(float value) {
    return std::strtod(fmt::format("{}", value).c_str(), nullptr);
}

StepVerdict StepJudgement::Whole() const {
    const auto any = [this](StepVerdict verdict) {
        return std::any_of(Channels.begin(), Channels.end(), [verdict](const Channel& channel) {
            return channel.Verdict == verdict;
        });
    };
    return any(StepVerdict::Fail)   ? StepVerdict::Fail
           : any(StepVerdict::Pass) ? StepVerdict::Pass
                                    : StepVerdict::NotEvaluated;
}

StepJudgement JudgeStep(const MFCStep& step, const HealthCheckLimits& limits) {
    constexpr double percent = 100.0;
    StepJudgement judgement;
    if (!step.IsMeasured() || step.Duration_s() <= Overview::EndWindow_s) {
        judgement.Why = WhyNotEvaluated(step);
        return judgement;
    }
    for (std::size_t index = 0; index < judgement.Channels.size(); ++index) {
        StepJudgement::Channel& channel = judgement.Channels.at(index);
        channel = JudgeChannel(step, static_cast<std::int32_t>(index), limits);
        if (channel.Verdict == StepVerdict::Fail)
            judgement.Why += fmt::format("{}Channel {}: the end value is {} % of full scale off "
                                         "its demand; {} % is allowed.",
                                         judgement.Why.empty() ? "" : "\n", index + 1,
                                         FixedText(std::abs(channel.Deviation_share) * percent, 3),
                                         GeneralText(limits.Limit_share * percent));
    }
    return judgement;
}

void AddSequence(HealthCheckFigures& check, const MFCSequence& sequence, const std::string& sheet,
                 const HealthCheckLimits& limits) {
    constexpr double percent = 100.0;
    for (std::int32_t index = 0; index < sequence.StepCount(); ++index) {
        const StepJudgement step = JudgeStep(sequence.Step(index), limits);
        ++check.Steps;
        check.Passed += step.Whole() == StepVerdict::Pass ? 1 : 0;
        check.Failed += step.Whole() == StepVerdict::Fail ? 1 : 0;
        for (std::size_t channel = 0; channel < step.Channels.size(); ++channel) {
            const auto& judged = step.Channels.at(channel);
            const auto deviation = static_cast<float>(judged.Deviation_share * percent);
            if (judged.Verdict != StepVerdict::NotEvaluated &&
                (!check.Worst || std::abs(check.Worst->Percent_ofFullScale) < std::abs(deviation)))
                check.Worst = {sheet, index + 1, static_cast<int>(channel) + 1, deviation};
        }
    }
}

bool IsComplete(const HealthCheckFigures& check) {
    return check.Outcome == Overview::Completed;
}

const char* VerdictOf(const HealthCheckFigures& check) {
    return !IsComplete(check) ? "INCOMPLETE"
           : check.Failed > 0 ? "FAIL"
           : check.Passed > 0 ? "PASS"
                              : "NO RESULT";
}

} // namespace ombrix
