#pragma once

#include <span>
#include <string>
#include <vector>

namespace ombrix {

/// The tests that the operator chooses from, in the order in which they run.
enum class HealthCheckOption { Short, PressureCheck, LongCh1, LongCh2, LowCh1, LowCh2 };

/// Its name in files and on command lines ("long-ch1").
const char* NameOf(HealthCheckOption option);

/// One step of a sequence: demands as fractions of full scale, 0 to 1, and its length.
struct StepPlan {
    float Ch1Demand = 0.0F;
    float Ch2Demand = 0.0F;
    float Duration_s = 0.0F;

    bool operator==(const StepPlan&) const = default;
};

/// One sequence of a health check: its steps run one after the other and fill one sheet.
struct SequencePlan {
    /// Name of its sheet in the report; a name taken in the workbook gets " (2)", … appended.
    std::string SheetName;
    /// What the operator must do first; empty when nothing.
    std::string Prompt;
    std::vector<StepPlan> Steps;
};

/// The sequences of the chosen options, in the order of the programme.
std::vector<SequencePlan> PlanHealthCheck(std::span<const HealthCheckOption> options);

/// Length of all sequences together, in seconds.
double TotalTime_s(std::span<const SequencePlan> sequences);

} // namespace ombrix
