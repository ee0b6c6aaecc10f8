#pragma once

#include "calibration/history/CalibrationHistory.h"
#include "reports/layout/HealthCheckLayout.h"

#include <array>
#include <string>

namespace ombrix {

class MFCSequence;
class MFCStep;

/// What the end values of a health check are judged by, as the report's template has it.
struct HealthCheckLimits {
    /// By how much of full scale an end value may differ from its demand.
    double Limit_share = HealthCheckLayout::Overview::UsualLimit_share;
    double FullScale_bits = HealthCheckLayout::Overview::UsualFullScale_bits;
};

/// A Single as a spreadsheet has it: it reads the decimal text of the cell as a Double.
double AsInSheet(float value);

enum class StepVerdict { NotEvaluated, Pass, Fail };

/// A step as the overview of the report evaluates it.
struct StepJudgement {
    struct Channel {
        StepVerdict Verdict = StepVerdict::NotEvaluated;
        /// End value less demand, of full scale; of an evaluated step.
        double Deviation_share = 0.0;
    };
    std::array<Channel, 2> Channels{};
    /// Why the step has not passed; empty when it has.
    std::string Why{};

    /// Of the step, as the summary of the overview counts it.
    StepVerdict Whole() const;
};

/// Judges a step in the numbers that the sheet has, so that both come to the same also where a
/// value lies on the limit.
StepJudgement JudgeStep(const MFCStep& step, const HealthCheckLimits& limits);

/// Adds the steps of a sequence to what a check has come to. @param sheet its sheet in the report
void AddSequence(HealthCheckFigures& check, const MFCSequence& sequence, const std::string& sheet,
                 const HealthCheckLimits& limits);

/// Every step that was chosen has been measured.
bool IsComplete(const HealthCheckFigures& check);
/// The verdict of the overview: "PASS", "FAIL", "INCOMPLETE" or "NO RESULT".
const char* VerdictOf(const HealthCheckFigures& check);

} // namespace ombrix
