#include "board/procedure/ProcedureGate.h"

#include "board/procedure/ProcedureWait.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

TEST(ProcedureGate, MakesSafeAndGivesTheCommandsBackWhateverHappens) {
    ProcedureGate gate;
    std::vector<std::string> story;
    const auto listener =
        gate.Listen([&](bool running) { story.emplace_back(running ? "running" : "free"); });
    try {
        const RunningProcedure procedure(gate, "test", [&] { story.emplace_back("safe"); });
        gate.Cancel();
        EXPECT_THROW(RunningProcedure(gate, "second"), std::logic_error);
        throw std::runtime_error("the board is gone");
    } catch (const std::runtime_error&) {
        story.emplace_back("told");
    }
    EXPECT_EQ(story, (std::vector<std::string>{"running", "safe", "free", "told"}));
    const RunningProcedure next(gate, "test");
    EXPECT_FALSE(gate.CancelRequested()) << "the cancel was for the one before";
}

TEST(ProcedureGate, AListenerThatIsGoneIsNotTold) {
    ProcedureGate gate;
    int told = 0;
    {
        const auto listener = gate.Listen([&told](bool) { ++told; });
    }
    const RunningProcedure procedure(gate, "test");
    EXPECT_EQ(told, 0);
}

TEST(ProcedureWait, SeesACancelAndTheEndOfTheProgramWithinAPass) {
    TestBench bench;
    ProcedureGate& gate = bench.TheStation.Procedures;
    gate.Cancel();
    EXPECT_FALSE(gate.CancelRequested()) << "nothing runs";
    const RunningProcedure procedure(gate, "test");
    ProcedureWait wait(bench.TheStation);
    HiResTimer timer(bench.Time);
    bench.Events.At(0.0105, [&gate] { gate.Cancel(); });
    int passes = 0;
    while (wait.Pass(timer, 10.0))
        ++passes;
    EXPECT_EQ(passes, 11);
    EXPECT_LT(timer.ElapsedTime(), 0.012);

    TestBench closing;
    closing.Events.EndProgram();
    EXPECT_FALSE(ProcedureWait(closing.TheStation).Pass(timer, 10.0));
}

} // namespace
} // namespace ombrix
