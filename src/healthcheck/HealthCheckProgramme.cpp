#include "healthcheck/HealthCheckProgramme.h"

#include <algorithm>
#include <array>

namespace ombrix {

namespace {

/// Demand and length of a step on one channel; the other channel stays at zero.
struct ChannelStep {
    float Demand;
    float Duration_s;
};
using ChannelSteps = std::vector<ChannelStep>;

SequencePlan OnChannel(int channel, std::string sheetName, const ChannelSteps& steps,
                       std::string prompt = {}) {
    SequencePlan plan{std::move(sheetName), std::move(prompt), {}};
    for (const ChannelStep& step : steps)
        plan.Steps.push_back({channel == 0 ? step.Demand : 0.0F, channel == 0 ? 0.0F : step.Demand,
                              step.Duration_s});
    return plan;
}

void Append(ChannelSteps& steps, std::initializer_list<float> demands, float duration_s) {
    for (const float demand : demands)
        steps.push_back({demand, duration_s});
}

ChannelSteps ShortSteps() {
    return {{0.0F, 2.0F}, {0.2F, 2.0F}, {0.0F, 2.0F}};
}

ChannelSteps PressureSteps() {
    ChannelSteps steps;
    Append(steps, {0.0F, 0.2F, 0.0F, 0.4F, 0.0F, 0.6F, 0.0F, 0.8F, 0.0F}, 2.0F);
    return steps;
}

ChannelSteps LongSteps() {
    const std::initializer_list<float> levels = {0.02F, 0.03F, 0.04F, 0.1F, 0.5F, 0.9F};
    ChannelSteps steps = {{0.0F, 12.0F}};
    for (const float level : levels) {
        steps.push_back({level, 12.0F});
        steps.push_back({0.0F, 8.0F});
    }
    Append(steps, levels, 12.0F);
    Append(steps, {0.5F, 0.1F, 0.04F, 0.03F}, 12.0F);
    for (const float level : levels) {
        steps.push_back({0.0F, 8.0F});
        steps.push_back({level, 12.0F});
    }
    steps.push_back({0.0F, 8.0F});
    return steps;
}

ChannelSteps LowSteps() {
    ChannelSteps steps = {{0.0F, 6.0F}};
    for (const float level : {0.02F, 0.03F, 0.04F, 0.06F}) {
        steps.push_back({level, 10.0F});
        steps.push_back({0.0F, 6.0F});
    }
    Append(steps, {0.02F, 0.03F, 0.04F, 0.06F, 0.04F, 0.03F, 0.02F}, 10.0F);
    steps.push_back({0.0F, 6.0F});
    for (const float level : {0.02F, 0.04F, 0.06F}) {
        steps.push_back({0.3F, 6.0F});
        steps.push_back({level, 10.0F});
    }
    steps.push_back({0.0F, 6.0F});
    return steps;
}

void AppendSequences(std::vector<SequencePlan>& plan, HealthCheckOption option) {
    switch (option) {
    case HealthCheckOption::Short:
        plan.push_back(OnChannel(0, "Zero - Ch1", ShortSteps()));
        for (const char* sheet : {"Zero - Ch2", "Zero - Ch3", "Zero - Ch4"})
            plan.push_back(OnChannel(1, sheet, ShortSteps()));
        break;
    case HealthCheckOption::PressureCheck:
        for (const char* prompt : {"Place the Small Pressure Guage in the front of the ACU",
                                   "Place the Large Pressure Guage in the front of the ACU"})
            plan.push_back(OnChannel(0, "Zero - Ch1", PressureSteps(), prompt));
        break;
    case HealthCheckOption::LongCh1: plan.push_back(OnChannel(0, "Zero - Ch1", LongSteps())); break;
    case HealthCheckOption::LongCh2: plan.push_back(OnChannel(1, "Zero - Ch2", LongSteps())); break;
    case HealthCheckOption::LowCh1: plan.push_back(OnChannel(0, "Low - Ch1", LowSteps())); break;
    case HealthCheckOption::LowCh2: plan.push_back(OnChannel(1, "Low - Ch2", LowSteps())); break;
    }
}

} // namespace

const char* NameOf(HealthCheckOption option) {
    constexpr std::array names = {"short",    "pressure", "long-ch1",
                                  "long-ch2", "low-ch1",  "low-ch2"};
    return names.at(static_cast<std::size_t>(option));
}

std::vector<SequencePlan> PlanHealthCheck(std::span<const HealthCheckOption> options) {
    const std::initializer_list<HealthCheckOption> order = {
        HealthCheckOption::Short,   HealthCheckOption::PressureCheck, HealthCheckOption::LongCh1,
        HealthCheckOption::LongCh2, HealthCheckOption::LowCh1,        HealthCheckOption::LowCh2};
    std::vector<SequencePlan> plan;
    for (const HealthCheckOption option : order) {
        if (std::find(options.begin(), options.end(), option) != options.end())
            AppendSequences(plan, option);
    }
    return plan;
}

double TotalTime_s(std::span<const SequencePlan> sequences) {
    double total_s = 0.0;
    for (const SequencePlan& sequence : sequences) {
        for (const StepPlan& step : sequence.Steps)
            total_s += step.Duration_s;
    }
    return total_s;
}

} // namespace ombrix
