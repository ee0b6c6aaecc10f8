#include "benchtests/AirFlowTest.h"

#include "benchtests/BenchTest.h"
#include "board/AIB.h"
#include "board/procedure/DrivingProcedure.h"
#include "platform/text/Paths.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ombrix {

namespace {

constexpr std::int32_t MeasureBoard = 347;
constexpr std::array<std::int32_t, 7> FlowBoards = {161, 306, 400, 417, 422, 424, 427};

constexpr const char* Header = "Timer,Switch,DemandCh0,DemandCh1,FlowCh0,FlowCh1,MeasureCh0,,"
                               "Timer,Switch,FlowCh0,FlowCh1,MeasureCh0";

/// Share of full scale on each channel, and the valve's position.
struct ScheduleEntry {
    double Channel0;
    double Channel1;
    std::int32_t Valve;
};
constexpr std::array<ScheduleEntry, 14> Schedule = {{{0.0, 0.30, 0},
                                                     {0.0, 0.30, 0},
                                                     {0.0, 0.60, 0},
                                                     {0.0, 0.90, 0},
                                                     {0.048, 0.0, 1},
                                                     {0.048, 0.0, 1},
                                                     {0.06, 0.0, 1},
                                                     {0.072, 0.0, 1},
                                                     {0.084, 0.0, 1},
                                                     {0.096, 0.0, 1},
                                                     {0.108, 0.0, 1},
                                                     {0.12, 0.0, 1},
                                                     {0.132, 0.0, 1},
                                                     {0.144, 0.0, 1}}};
constexpr auto Steps = static_cast<std::int32_t>(Schedule.size());

constexpr double FullDemand_bits = 65534.0;
constexpr std::int32_t ReferenceSupply_bits = 65534;

constexpr double SwitchTime_s = 8.0;
constexpr double MeasureTime_s = 30.0;
constexpr double EndTime_s = 5.0;
constexpr double WholeTime_s = 2 * SwitchTime_s + 12 * MeasureTime_s + EndTime_s;
constexpr double TicksPerSecond = 64.0;

/// The valve's position as a curve beside those of the flows.
constexpr std::int32_t ValveCurve_bits = 35000;
constexpr std::int32_t ValveCurve_percent = 100;

/// What a bit of each input stands for: about 2500, 100 and 500 ml/min at 32767.
constexpr double FlowScale0 = 0.07629627734422684;
constexpr double FlowScale1 = 0.0030518509447574615;
constexpr double MeasureScale = 0.015259254723787308;

std::int64_t Tick(double time_s) {
    return static_cast<std::int64_t>(std::floor(time_s * TicksPerSecond));
}

std::string TimeText(double time_s) {
    return GeneralText(static_cast<float>(time_s));
}

} // namespace

AirFlowResult AirFlowTest::TestAirFlow(const BenchTestView& view) {
    AirFlowResult result;
    FindBoards();
    result.MissingBoards = MissingBoards();
    Boards driven;
    if (result.MissingBoards.empty())
        driven = {m_Flow, m_Measure};
    RunBenchProcedure(m_Station, "air flow test", std::move(driven), result,
                      [&] { return Measure(view, result); });
    if (!result.MissingBoards.empty()) {
        result.Ended = End::Stopped;
        result.Error = result.MissingBoards;
    }
    return result;
}

AirFlowTest::FlowDemand AirFlowTest::AirFlowSchedule(std::int32_t step) {
    const ScheduleEntry& entry = Schedule.at(static_cast<std::size_t>(step));
    return {{RoundHalfEven(entry.Channel0 * FullDemand_bits),
             RoundHalfEven(entry.Channel1 * FullDemand_bits)},
            entry.Valve};
}

void AirFlowTest::FindBoards() {
    AIBList& boards = m_Station.AIBList;
    for (std::int32_t index = 0; index < boards.AIBCount(); ++index) {
        const std::shared_ptr<AIB> board = boards.AIB(index);
        const std::int32_t serial = board->SerialNumber();
        if (serial == MeasureBoard)
            m_Measure = board;
        if (std::find(FlowBoards.begin(), FlowBoards.end(), serial) != FlowBoards.end())
            m_Flow = board;
    }
}

std::string AirFlowTest::MissingBoards() const {
    if (!m_Flow && !m_Measure)
        return "tAIB_Flow AND tAIB_Measure are Nothing!";
    if (!m_Flow)
        return "tAIB_Flow is Nothing!";
    return m_Measure ? "" : "tAIB_Measure is Nothing!";
}

bool AirFlowTest::Measure(const BenchTestView& view, AirFlowResult& result) {
    LineFile log = LineFile::Begin(m_Station.World, "file of the air flow test",
                                   Paths::AirFlowTest + FileStamp(m_Station) + ".csv");
    log.WriteHeading(Header);
    if (result.MissingBoards.empty())
        return RunLogged(log, result, [&] { return RunWhole(log, view, result); });
    AddFile(result, log);
    m_Station.World.Messages.Ask(
        {result.MissingBoards, MessageIcon::Information, MessageButtons::Ok});
    return true;
}

bool AirFlowTest::RunWhole(LineFile& log, const BenchTestView& view, AirFlowResult& result) {
    // What a board refuses here and below is told to it again at every pass of the waits.
    m_Station.Outputs.Set(*m_Measure, 0, ReferenceSupply_bits);
    m_Station.Outputs.PrepareValve(*m_Flow);
    m_Station.Outputs.SetPin(*m_Flow, ACUWiring::FireWireValvePin, true);
    m_Station.Outputs.SetValve(*m_Flow, true);
    HiResTimer timer(m_Station.World.Time);
    Running run{log, timer, view, result};
    if (!RunSchedule(run))
        return false;
    SetDemands({});
    return SampleFor(run, EndTime_s, "End: ");
}

bool AirFlowTest::RunSchedule(Running& run) {
    std::int32_t previousValve = -1;
    for (std::int32_t step = 0; step < Steps; ++step) {
        FlowDemand demand = AirFlowSchedule(step);
        SetDemands(demand);
        if (demand.Valve != previousValve) {
            if (!SampleFor(run, SwitchTime_s, fmt::format("Switch: {}  -  ", step)))
                return false;
            m_Station.Outputs.SetValve(*m_Flow, demand.Valve != 0);
            previousValve = demand.Valve;
            // What follows a move of the valve is measured with the next entry.
            demand = AirFlowSchedule(++step);
            SetDemands(demand);
        }
        if (!SampleFor(run, MeasureTime_s, fmt::format("Measure: {}  -  ", step)))
            return false;
    }
    return true;
}

bool AirFlowTest::SampleFor(Running& run, double duration_s, const std::string& label) {
    const double start_s = run.Timer.ElapsedTime();
    const double end_s = start_s + duration_s;
    for (double now_s = start_s; now_s < end_s; now_s = run.Timer.ElapsedTime()) {
        if (SampleAirFlow(run)) {
            run.View.Caption(label + FixedText(now_s - start_s, 2));
            run.View.Progress(now_s / WholeTime_s);
        }
        const double nextTick_s = static_cast<double>(m_LastTick + 1) / TicksPerSecond;
        if (!m_Wait.Pass(run.Timer, std::min(end_s, nextTick_s)))
            return false;
    }
    return true;
}

bool AirFlowTest::SampleAirFlow(Running& run) {
    const double first_s = run.Timer.ElapsedTime();
    if (Tick(first_s) == m_LastTick)
        return false;
    const Inputs raw = ReadInputs(run.Timer);
    const double second_s = run.Timer.ElapsedTime();
    const Inputs again = ReadInputs(run.Timer);
    const auto scaled = [&again](std::size_t input, double scale) {
        return again.at(input) ? GeneralText(*again.at(input) * scale) : "";
    };
    const auto valve = [isSet = m_Flow->ValveIsSet()](std::int32_t height) {
        return isSet ? std::to_string(*isSet ? height : 0) : "";
    };
    run.Log.WriteLine(fmt::format(
        "{},{}, {},{},{},{},{},,{},{}, {},{},{}", TimeText(first_s), valve(ValveCurve_bits),
        m_Flow->DAC(0), m_Flow->DAC(1), OptionalText(raw[0]), OptionalText(raw[1]),
        OptionalText(raw[2]), TimeText(second_s), valve(ValveCurve_percent), scaled(0, FlowScale0),
        scaled(1, FlowScale1), scaled(2, MeasureScale)));
    ++run.Result.Lines;
    m_LastTick = Tick(run.Timer.ElapsedTime());
    return true;
}

AirFlowTest::Inputs AirFlowTest::ReadInputs(HiResTimer& timer) {
    const auto read = [&timer](AIB& board, std::int32_t channel, AnswerWatch& watch) {
        BoardAnswer answer;
        const auto value = board.Reading(channel, &answer);
        watch.Note(answer, timer.ElapsedTime());
        return value;
    };
    return {read(*m_Flow, 0, m_Watches[0]), read(*m_Flow, 1, m_Watches[1]),
            read(*m_Measure, 0, m_Watches[2])};
}

void AirFlowTest::SetDemands(const FlowDemand& demand) {
    m_Station.Outputs.Set(*m_Flow, 0, demand.Bits[0]);
    m_Station.Outputs.Set(*m_Flow, 1, demand.Bits[1]);
}

} // namespace ombrix
