#include "benchtests/DigitalMFCTest.h"

#include "benchtests/BenchTest.h"
#include "board/AIB.h"
#include "board/procedure/DrivingProcedure.h"
#include "board/unit/ACUCalibration.h"
#include "platform/text/Paths.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>

namespace ombrix {

namespace {

/// Each level is compared with itself on the other side of the profile.
constexpr std::int32_t Levels = DigitalMFCTable::Steps / 2;
/// Where the comparison of channel 1 stands beside the samples; channel 0 has its header in the
/// file's.
constexpr std::int32_t SecondHeaderRow = 6;

std::string SampleText(const DigitalMFCTable::Sample& sample) {
    return fmt::format("{},{},{},{}", GeneralText(sample.Time_s), sample.Demand_bits,
                       OptionalText(sample.Value_bits), OptionalText(sample.Pressure_bits));
}

std::string RowText(const std::vector<DigitalMFCTable::Sample>& samples, std::int32_t row) {
    return Index(row) < samples.size() ? SampleText(samples[Index(row)]) : "0,0,0,0";
}

std::string LevelText(const std::array<std::optional<float>, DigitalMFCTable::Steps>& means,
                      std::int32_t level) {
    const float up = means.at(Index(level)).value_or(0.0F);
    const float down = means.at(Index(DigitalMFCTable::Steps - 1 - level)).value_or(0.0F);
    return fmt::format(",,{},{},{},{}", GeneralText(DigitalMFCTable::ProfileDemand(level)),
                       GeneralText(up), GeneralText(down), GeneralText(up - down));
}

} // namespace

const char* DigitalMFCTable::Header() {
    return "Timer0,Demand0,Value0,Pressure0,,Timer1,Demand1,Value1,Pressure1,,"
           "Data0,EndPointUp,EndPointDn";
}

float DigitalMFCTable::ProfileDemand(std::int32_t step) {
    constexpr float lowest = 2.0F;
    static constexpr std::array<float, Steps> profile = {lowest, lowest, 20.0F, 50.0F,  80.0F,
                                                         80.0F,  50.0F,  20.0F, lowest, lowest};
    return step >= 0 && step < Steps ? profile.at(Index(step)) : lowest;
}

void DigitalMFCTable::Add(std::int32_t channel, const Sample& sample) {
    if (SampleCount(channel) < Rows)
        m_Samples.at(Index(channel)).push_back(sample);
}

void DigitalMFCTable::SetMean(std::int32_t channel, std::int32_t step,
                              std::optional<float> mean_bits) {
    m_Means.at(Index(channel)).at(Index(step)) = mean_bits;
}

std::int32_t DigitalMFCTable::SampleCount(std::int32_t channel) const {
    return static_cast<std::int32_t>(m_Samples.at(Index(channel)).size());
}

std::string DigitalMFCTable::Line(std::int32_t row) const {
    return RowText(m_Samples[0], row) + ",," + RowText(m_Samples[1], row) + EndPointBlock(row);
}

std::string DigitalMFCTable::EndPointBlock(std::int32_t row) const {
    if (row < Levels)
        return LevelText(m_Means[0], row);
    if (row == SecondHeaderRow)
        return ",,Data1,EndPointUp,EndPointDn,Diff";
    const std::int32_t level = row - SecondHeaderRow - 1;
    return level >= 0 && level < Levels ? LevelText(m_Means[1], level) : "";
}

namespace {

constexpr double FirstRest_s = 2.0;
constexpr double RestTime_s = 6.0;
constexpr double DemandTime_s = 10.0;
constexpr double MeanTime_s = 2.0;
constexpr double SampleTime_s = 0.05;
constexpr double WholeProfile_s =
    DigitalMFCTable::Channels *
    (FirstRest_s + DigitalMFCTable::Steps * (RestTime_s + DemandTime_s) + RestTime_s);

} // namespace

class DigitalMFCTest::EndMean {
  public:
    void Add(std::int32_t value) {
        m_Sum += value;
        ++m_Count;
    }
    std::optional<float> Value() const {
        return m_Count > 0 ? std::optional(static_cast<float>(m_Sum / m_Count)) : std::nullopt;
    }

  private:
    double m_Sum = 0.0;
    std::int32_t m_Count = 0;
};

DigitalMFCResult DigitalMFCTest::Run(const BenchTestView& view) {
    DigitalMFCResult result;
    if (m_Station.World.Messages.Ask({"Click OK to start the Test", MessageIcon::Question,
                                      MessageButtons::OkCancel}) != Answer::Ok) {
        result.Ended = End::Cancelled;
        return result;
    }
    RunBenchProcedure(m_Station, "test of the digital MFCs", {m_Station.CurrentAIB}, result,
                      [&] { return MeasureAndStore(view, result); });
    view.Stage(StageText(result.Ended));
    result.Means = m_Table.Means();
    return result;
}

bool DigitalMFCTest::MeasureAndStore(const BenchTestView& view, Outcome& outcome) {
    LineFile samples =
        LineFile::Begin(m_Station.World, "file of the samples", PathNow("_samples.csv"));
    std::string lastLine;
    std::exception_ptr stopped;
    try {
        samples.WriteHeading("Channel,Timer,Demand,Value,Pressure");
        try {
            lastLine = Measure(samples, view) ? "" : CancelledLine;
        } catch (const DriveError&) {
            throw; // neither place takes the samples, nor would they take the table
        } catch (const std::exception& error) {
            lastLine = StoppedLine(error.what());
            stopped = std::current_exception();
        }
        Store(view, lastLine, outcome);
    } catch (const DriveError&) {
        AddFile(outcome, samples);
        throw;
    }
    samples.Remove(); // all of it is in the table
    if (stopped)
        std::rethrow_exception(stopped);
    return lastLine.empty();
}

bool DigitalMFCTest::Measure(LineFile& samples, const BenchTestView& view) {
    HiResTimer timer(m_Station.World.Time);
    Running run{timer, view, samples, 0.0, -SampleTime_s};
    for (std::int32_t channel = 0; channel < DigitalMFCTable::Channels; ++channel) {
        std::optional<float> unused_bits;
        if (!RunDemandPhase(run, {channel, 0.0F, FirstRest_s, Recording::Off}, unused_bits))
            return false;
    }
    return RunDemandProfile(run, 0) && RunDemandProfile(run, 1);
}

bool DigitalMFCTest::RunDemandProfile(Running& run, std::int32_t channel) {
    run.ProfileStart_s = run.Timer.ElapsedTime();
    std::optional<float> mean_bits;
    for (std::int32_t step = 0; step < DigitalMFCTable::Steps; ++step) {
        const std::string caption = fmt::format("Step {} of {}", step + 1, DigitalMFCTable::Steps);
        run.View.Caption(caption + " (Zero Demand)");
        if (!RunDemandPhase(run, {channel, 0.0F, RestTime_s}, mean_bits))
            return false;
        const float demand = DigitalMFCTable::ProfileDemand(step);
        run.View.Caption(caption + " (" + GeneralText(demand) + "% Demand)");
        if (!RunDemandPhase(run, {channel, demand, DemandTime_s}, mean_bits))
            return false;
        m_Table.SetMean(channel, step, mean_bits);
    }
    run.View.Caption("Final Zero Demand");
    return RunDemandPhase(run, {channel, 0.0F, RestTime_s}, mean_bits);
}

bool DigitalMFCTest::RunDemandPhase(Running& run, const Phase& phase,
                                    std::optional<float>& mean_bits) {
    constexpr double bitsPerPercent = 65535 / 100.0;
    const std::int32_t demand_bits =
        RoundHalfEven(bitsPerPercent * static_cast<double>(phase.Demand_percent));
    EndMean mean;
    // What is refused is told again while the phase is followed.
    m_Station.Outputs.Set(*m_Station.CurrentAIB, phase.Channel, demand_bits);
    const bool complete = FollowPhase(run, phase, demand_bits, mean);
    m_Station.Outputs.Set(*m_Station.CurrentAIB, phase.Channel, 0);
    mean_bits = mean.Value();
    return complete;
}

bool DigitalMFCTest::FollowPhase(Running& run, const Phase& phase, std::int32_t demand_bits,
                                 EndMean& mean) {
    const double start_s = run.Timer.ElapsedTime();
    const double end_s = start_s + phase.Duration_s;
    for (double now_s = start_s; now_s < end_s; now_s = run.Timer.ElapsedTime()) {
        if (now_s >= run.LastSample_s + SampleTime_s) {
            run.LastSample_s = now_s;
            TakeSample(run, phase, demand_bits, now_s - start_s, mean);
            run.View.Progress(now_s / WholeProfile_s);
        }
        if (!m_Wait.Pass(run.Timer, std::min(end_s, run.LastSample_s + SampleTime_s)))
            return false;
    }
    return true;
}

void DigitalMFCTest::TakeSample(Running& run, const Phase& phase, std::int32_t demand_bits,
                                double inPhase_s, EndMean& mean) {
    const auto value = Read(run, phase.Channel, m_ValueWatch);
    const auto pressure = Read(run, ACUWiring::PressureInput, m_PressureWatch);
    std::int32_t counter = -1;
    if (phase.Record == Recording::On) {
        const DigitalMFCTable::Sample sample{
            static_cast<float>(run.LastSample_s - run.ProfileStart_s), demand_bits, value,
            pressure};
        m_Table.Add(phase.Channel, sample);
        run.Samples.WriteLine(fmt::format("{},{}", phase.Channel, SampleText(sample)));
        counter = m_Table.SampleCount(phase.Channel);
    }
    if (value && inPhase_s >= phase.Duration_s - MeanTime_s)
        mean.Add(*value);
    run.View.Stage(fmt::format("CH{} - {} - {} - {}", phase.Channel, counter,
                               FixedText(inPhase_s, 2), ShownText(value)));
}

std::optional<std::int32_t> DigitalMFCTest::Read(Running& run, std::int32_t channel,
                                                 AnswerWatch& watch) {
    BoardAnswer answer;
    const auto reading = m_Station.CurrentAIB->Reading(channel, &answer);
    watch.Note(answer, run.Timer.ElapsedTime());
    return reading;
}

std::string DigitalMFCTest::PathNow(const char* ending) const {
    return fmt::format("{}{}_{}_{}{}", Paths::DigitalMFCTest, m_Station.CurrentAIB->SerialNumber(),
                       m_Station.Calibration().Record().NumberInNames(), FileStamp(m_Station),
                       ending);
}

void DigitalMFCTest::Store(const BenchTestView& view, const std::string& lastLine,
                           Outcome& outcome) {
    if (m_Table.Empty())
        return;
    view.Stage("Writing Data to File...");
    LineFile log = LineFile::BeginAnywhere(m_Station.World, "file of the test", PathNow(".csv"));
    // All lines are headings: a table that goes on elsewhere is whole there.
    log.WriteHeading(DigitalMFCTable::Header());
    for (std::int32_t row = 0; row < DigitalMFCTable::Rows; ++row)
        log.WriteHeading(m_Table.Line(row));
    if (!lastLine.empty())
        log.WriteLine(lastLine);
    AddFile(outcome, log);
}

} // namespace ombrix
