#include "benchtests/OutputSweep.h"

#include "benchtests/BenchTest.h"
#include "board/AIB.h"
#include "board/Outputs.h"
#include "board/procedure/DrivingProcedure.h"
#include "board/procedure/HiResTimer.h"
#include "platform/text/Paths.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

constexpr const char* ColumnTitles = "Input,Output1,Output2,Output3,Output4";

constexpr std::int32_t Inputs = 4;
/// How often a board is asked for a sign of life while the air settles.
constexpr double LookSpacing_s = 0.05;

} // namespace

SweepPlan SweepPlan::UpperHalf() {
    constexpr std::int32_t first_bits = 32000;
    SweepPlan plan{"", {{}}, UsualDelay_ms / 1000.0};
    for (std::int32_t level = first_bits; level <= Top_bits; level += UsualStep_bits)
        plan.Sweeps.front().push_back(level);
    return plan;
}

SweepPlan SweepPlan::Stepped(std::int32_t step_bits, std::int32_t delay_ms, bool bothWays) {
    SweepPlan plan{fmt::format("_D{}_S{}", delay_ms, step_bits), {{}}, delay_ms / 1000.0};
    for (std::int32_t level = 0; level <= Top_bits; level += step_bits)
        plan.Sweeps.front().push_back(level);
    if (bothWays) {
        plan.Sweeps.emplace_back();
        for (std::int32_t level = Top_bits; level >= 0; level -= step_bits)
            plan.Sweeps.back().push_back(level);
    }
    return plan;
}

SweepResult OutputSweep::Run(const SweepPlan& plan, const BenchTestView& view) {
    SweepResult result;
    RunBenchProcedure(m_Station, "air test", {m_Station.CurrentAIB}, result, [&] {
        LineFile log =
            LineFile::Begin(m_Station.World, "file of the air test",
                            Paths::AirSweep + FileStamp(m_Station) + plan.NameEnding + ".csv");
        return RunLogged(log, result, [&] { return Sweep(log, plan, view, result); });
    });
    return result;
}

bool OutputSweep::Sweep(LineFile& log, const SweepPlan& plan, const BenchTestView& view,
                        SweepResult& result) {
    const auto levels = static_cast<double>(plan.Sweeps.front().size() * plan.Sweeps.size());
    HiResTimer timer(m_Station.World.Time);
    for (const auto& sweep : plan.Sweeps) {
        if (result.Lines == 0) {
            log.WriteHeading(ColumnTitles);
        } else {
            log.WriteLine("");
            log.WriteLine(ColumnTitles);
        }
        for (const std::int32_t level : sweep) {
            view.Caption(fmt::format("{} bits", level));
            SetOutputs(level);
            if (!Settle(timer, plan.Delay_s))
                return false;
            std::optional<std::string> line = MeasuredLine(level, timer);
            for (; !line || !m_Station.Outputs.AllTaken(); line = MeasuredLine(level, timer)) {
                if (!Settle(timer, LookSpacing_s))
                    return false;
            }
            log.WriteLine(*line);
            view.Progress(++result.Lines / levels);
        }
    }
    return true;
}

// What is refused is told again while the air settles.
void OutputSweep::SetOutputs(std::int32_t level_bits) {
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
        m_Station.Outputs.Set(*m_Station.CurrentAIB, channel, SliderScale::DemandNear(level_bits));
}

bool OutputSweep::Settle(HiResTimer& timer, double delay_s) {
    const double end_s = timer.ElapsedTime() + delay_s;
    double lookDue_s = end_s - delay_s;
    do {
        if (const double now_s = timer.ElapsedTime(); now_s >= lookDue_s) {
            Reading(ACUWiring::PressureInput, timer);
            lookDue_s = now_s + LookSpacing_s;
        }
        if (!m_Wait.Pass(timer, std::min(end_s, lookDue_s)))
            return false;
    } while (timer.ElapsedTime() < end_s);
    return true;
}

std::optional<std::int32_t> OutputSweep::Reading(std::int32_t channel, HiResTimer& timer) {
    BoardAnswer answer;
    const auto reading = m_Station.CurrentAIB->Reading(channel, &answer);
    m_Watches.at(static_cast<std::size_t>(channel)).Note(answer, timer.ElapsedTime());
    return reading;
}

std::optional<std::string> OutputSweep::MeasuredLine(std::int32_t level_bits, HiResTimer& timer) {
    std::string line = fmt::format("{}", level_bits);
    for (std::int32_t channel = 0; channel < Inputs; ++channel) {
        const auto reading = Reading(channel, timer);
        if (!reading)
            return std::nullopt;
        line += fmt::format(",{}", *reading);
    }
    return line;
}

} // namespace ombrix
