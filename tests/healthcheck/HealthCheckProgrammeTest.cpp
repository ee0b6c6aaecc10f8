#include "healthcheck/HealthCheckProgramme.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

using Option = HealthCheckOption;

struct ProgrammeCase {
    Option Chosen;
    std::vector<std::string> Sheets;
    std::size_t StepsEach;
    double Total_s;
};
class ProgrammeTest : public ::testing::TestWithParam<ProgrammeCase> {};

TEST_P(ProgrammeTest, HasItsSequences) {
    const std::vector<SequencePlan> plan = PlanHealthCheck({&GetParam().Chosen, 1});
    std::vector<std::string> sheets;
    for (const SequencePlan& sequence : plan) {
        sheets.push_back(sequence.SheetName);
        EXPECT_EQ(sequence.Steps.size(), GetParam().StepsEach);
        EXPECT_EQ(sequence.Steps.front().Ch1Demand, 0.0F);
        EXPECT_EQ(sequence.Steps.back().Ch2Demand, 0.0F);
    }
    EXPECT_EQ(sheets, GetParam().Sheets);
    EXPECT_DOUBLE_EQ(TotalTime_s(plan), GetParam().Total_s);
}

INSTANTIATE_TEST_SUITE_P(
    Options, ProgrammeTest,
    ::testing::Values(ProgrammeCase{Option::Short,
                                    {"Zero - Ch1", "Zero - Ch2", "Zero - Ch3", "Zero - Ch4"},
                                    3,
                                    24.0},
                      ProgrammeCase{Option::PressureCheck, {"Zero - Ch1", "Zero - Ch1"}, 9, 36.0},
                      ProgrammeCase{Option::LongCh1, {"Zero - Ch1"}, 36, 380.0},
                      ProgrammeCase{Option::LongCh2, {"Zero - Ch2"}, 36, 380.0},
                      ProgrammeCase{Option::LowCh1, {"Low - Ch1"}, 24, 200.0},
                      ProgrammeCase{Option::LowCh2, {"Low - Ch2"}, 24, 200.0}));

TEST(Programme, RunsInItsOwnOrderWhateverTheOrderOfTheTicks) {
    const std::vector<Option> ticked = {Option::LowCh2, Option::PressureCheck, Option::Short};
    const std::vector<SequencePlan> plan = PlanHealthCheck(ticked);
    ASSERT_EQ(plan.size(), 7U);
    EXPECT_EQ(plan[0].SheetName, "Zero - Ch1");
    EXPECT_EQ(plan[4].Prompt, "Place the Small Pressure Guage in the front of the ACU");
    EXPECT_EQ(plan[5].Prompt, "Place the Large Pressure Guage in the front of the ACU");
    EXPECT_EQ(plan[6].SheetName, "Low - Ch2");
}

TEST(Programme, LongAndLowTestsStepThroughTheirLevels) {
    const auto demands = [](Option option) {
        std::vector<std::pair<float, float>> steps;
        const std::vector<SequencePlan> plan = PlanHealthCheck({&option, 1});
        for (const StepPlan& step : plan.front().Steps)
            steps.emplace_back(step.Ch1Demand + step.Ch2Demand, step.Duration_s);
        return steps;
    };
    const auto longTest = demands(Option::LongCh2);
    EXPECT_EQ(longTest[0], std::pair(0.0F, 12.0F));
    EXPECT_EQ(longTest[11], std::pair(0.9F, 12.0F));
    EXPECT_EQ(longTest[12], std::pair(0.0F, 8.0F));
    EXPECT_EQ(longTest[13], std::pair(0.02F, 12.0F)) << "the staircase begins";
    EXPECT_EQ(longTest[22], std::pair(0.03F, 12.0F));
    EXPECT_EQ(longTest[23], std::pair(0.0F, 8.0F));
    EXPECT_EQ(longTest[34], std::pair(0.9F, 12.0F));
    const auto lowTest = demands(Option::LowCh1);
    EXPECT_EQ(lowTest[15], std::pair(0.02F, 10.0F));
    EXPECT_EQ(lowTest[16], std::pair(0.0F, 6.0F));
    EXPECT_EQ(lowTest[17], std::pair(0.3F, 6.0F));
    EXPECT_EQ(lowTest[22], std::pair(0.06F, 10.0F));
}

} // namespace
} // namespace ombrix
