#include "benchtests/TestRigRun.h"

#include "benchtests/BenchTest.h"
#include "board/procedure/DrivingProcedure.h"
#include "board/procedure/HiResTimer.h"
#include "platform/text/Paths.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

namespace ombrix {

void LoopThroughCheck::BeginLevel(std::int32_t output_bits) {
    m_Output_bits = output_bits;
    m_Channels = {};
}

void LoopThroughCheck::Note(double levelTime_s,
                            const std::array<std::optional<std::int32_t>, 4>& inputs) {
    if (levelTime_s < m_Ramp.LevelDuration_s / 2.0)
        return;
    for (std::size_t number = 0; number < inputs.size(); ++number) {
        const auto input_bits = inputs.at(number);
        if (!input_bits)
            continue;
        Channel& channel = m_Channels.at(number);
        ++channel.Readings;
        if (std::abs(*input_bits - m_Output_bits) <= Tolerance_bits)
            continue;
        ++channel.Strays;
        channel.LastStray_bits = *input_bits;
    }
}

void LoopThroughCheck::EndLevel() {
    for (std::int32_t number = 0; number < static_cast<std::int32_t>(m_Channels.size()); ++number) {
        const Channel& channel = m_Channels.at(static_cast<std::size_t>(number));
        if (!Followed() || !m_Ramp.Drives(number))
            continue;
        if (channel.Readings == 0)
            m_Deviation = fmt::format("Input {} of board {} could not be read", number,
                                      m_Ramp.InputBoard + 1);
        else if (2 * channel.Strays > channel.Readings)
            m_Deviation =
                fmt::format("Input {} of board {} read {} while output {} of board {} was {}",
                            number, m_Ramp.InputBoard + 1, channel.LastStray_bits, number,
                            m_Ramp.OutputBoard + 1, m_Output_bits);
    }
}

RampLog::RampLog(LineFile& file, AIB& output, AIB& input)
    : m_File(file), m_Output{output, {}}, m_Input{input, {}} {
    m_File.WriteHeading("Timer,OutA0,OutA1,OutA2,OutA3,InA0,InA1,InA2,InA3,"
                        "OutB0,OutB1,OutB2,OutB3,InB0,InB1,InB2,InB3");
}

RampLog::Channels RampLog::Take(double now_s) {
    const Channels readBack = ReadInputs(m_Output, now_s);
    const Channels inputs = ReadInputs(m_Input, now_s);
    // Both boards' outputs come first, whatever the names in the heading say: the files that are
    // kept have this order.
    std::string line = GeneralText(static_cast<float>(now_s));
    for (const Channels& values : {OutputsOf(m_Output), OutputsOf(m_Input), readBack, inputs})
        for (const auto value : values)
            line += "," + OptionalText(value);
    m_File.WriteLine(line);
    ++m_Lines;
    return inputs;
}

RampLog::Channels RampLog::OutputsOf(const WatchedBoard& board) {
    Channels values{};
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
        values.at(static_cast<std::size_t>(channel)) = board.Board.DAC(channel);
    return values;
}

RampLog::Channels RampLog::ReadInputs(WatchedBoard& board, double now_s) {
    Channels values{};
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel) {
        const auto index = static_cast<std::size_t>(channel);
        std::int32_t value = 0;
        const AIBStatus status = board.Board.ADC(channel, value);
        board.Watches.at(index).Note({status}, now_s);
        if (status == Status::NoError)
            values.at(index) = value;
    }
    return values;
}

const TestRigStep* TestRigResult::FirstFailed() const {
    const auto failed = std::find_if(Steps.begin(), Steps.end(), [](const TestRigStep& step) {
        return step.Status == RigStatus::Failed;
    });
    return failed == Steps.end() ? nullptr : &*failed;
}

TestRigRun::TestRigRun(Station& station, TestRigView& view)
    : m_Station(station), m_View(view), m_Wait(station) {}

std::optional<std::string> TestRigRun::Missing(Station& station, std::int32_t kind) {
    std::int32_t wanted = 0;
    for (const RampStep& ramp : PlanTestRigJob(kind))
        wanted = std::max({wanted, ramp.OutputBoard + 1, ramp.InputBoard + 1});
    const std::int32_t found = wanted == 0 ? 0 : station.AIBList.AIBCount();
    if (found >= wanted)
        return std::nullopt;
    return fmt::format("{} needs {} boards, the outputs of board 2 wired to the inputs of board "
                       "1. {} missing.\r\n\r\nPlease connect what is missing and detect the "
                       "boards again.",
                       TestRigJobName(kind), wanted, found == 0 ? "Both boards are" : "Board 2 is");
}

TestRigResult TestRigRun::Run(std::int32_t kind) {
    const std::vector<RampStep> ramps = PlanTestRigJob(kind);
    for (const RampStep& ramp : ramps)
        m_Result.Steps.push_back({ramp.Name, RigStatus::Queued, {}});
    m_View.ShowSteps(m_Result.Steps);
    if (ramps.empty())
        return m_Result;
    for (std::int32_t index = 0; index < m_Station.AIBList.AIBCount(); ++index)
        m_Boards.push_back(m_Station.AIBList.AIB(index));
    RunBenchProcedure(m_Station, "test rig job", m_Boards, m_Result,
                      [&] { return RunSteps(ramps); });
    for (TestRigStep& step : m_Result.Steps) {
        if (step.Status == RigStatus::Running)
            SetStatus(step, RigStatus::Unknown); // broken off: nobody knows what it would have been
    }
    const TestRigStep* failed = m_Result.FirstFailed();
    if (failed != nullptr && m_Result.Ended == End::Passed) {
        m_Result.Ended = End::Failed;
        m_Result.Error = failed->Remark;
    }
    return m_Result;
}

bool TestRigRun::RunSteps(const std::vector<RampStep>& ramps) {
    for (std::size_t index = 0; index < ramps.size(); ++index) {
        if (!RunJobStep(ramps.at(index), m_Result.Steps.at(index)))
            return false;
    }
    return true;
}

bool TestRigRun::RunJobStep(const RampStep& ramp, TestRigStep& step) {
    SetStatus(step, RigStatus::Running);
    m_Result.Files.clear();
    m_Result.Lines = 0;
    LineFile file = LineFile::Begin(m_Station.World, "file of the test rig", Paths::TestRig,
                                    LineFile::Existing::Replaced);
    LoopThroughCheck check(ramp);
    const bool ranToItsEnd = RunLogged(file, m_Result, [&] {
        RampLog log(file, Board(ramp.OutputBoard), Board(ramp.InputBoard));
        return RunRamp(ramp, log, check);
    });
    if (!ranToItsEnd)
        return false;
    step.Remark = check.Deviation();
    SetStatus(step, check.Followed() ? RigStatus::Passed : RigStatus::Failed);
    return true;
}

bool TestRigRun::RunRamp(const RampStep& ramp, RampLog& log, LoopThroughCheck& check) {
    m_View.BeginProgress(ramp);
    HiResTimer timer(m_Station.World.Time);
    double nextSample_s = SampleInterval_s;
    for (const std::int32_t value_bits : ramp.Values_bits()) {
        SetOutputs(ramp, value_bits);
        check.BeginLevel(value_bits);
        const double begin_s = timer.ElapsedTime();
        const double end_s = begin_s + ramp.LevelDuration_s;
        double now_s = begin_s;
        while (now_s < end_s) {
            if (!m_Wait.Pass(timer, std::min(nextSample_s, end_s)))
                return false;
            now_s = timer.ElapsedTime();
            m_View.ShowProgress(now_s);
            if (now_s < nextSample_s)
                continue;
            check.Note(now_s - begin_s, log.Take(now_s));
            m_Result.Lines = log.Lines();
            nextSample_s = now_s + SampleInterval_s;
        }
        check.EndLevel();
    }
    if (ramp.ZeroAllAfterwards)
        ZeroAllOutputs();
    return true;
}

// What is refused is told again at every pass of the ramp.
void TestRigRun::SetOutputs(const RampStep& ramp, std::int32_t value_bits) {
    AIB& board = Board(ramp.OutputBoard);
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
        m_Station.Outputs.Set(board, channel, ramp.Drives(channel) ? value_bits : 0);
}

void TestRigRun::ZeroAllOutputs() {
    for (const auto& board : m_Boards) {
        for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
            m_Station.Outputs.Set(*board, channel, 0);
    }
}

void TestRigRun::SetStatus(TestRigStep& step, RigStatus status) {
    step.Status = status;
    m_View.ShowSteps(m_Result.Steps);
}

} // namespace ombrix
