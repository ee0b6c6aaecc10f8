#include "benchtests/DataRecorder.h"

#include "benchtests/BenchTest.h"
#include "board/procedure/DrivingProcedure.h"
#include "board/procedure/HiResTimer.h"
#include "board/procedure/ProcedureWait.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

/// The first multiple of the spacing after a line's due time that is not past.
double NextDue_s(double due_s, HiResTimer& timer) {
    const double spacing_s = TimedRecording::LineSpacing_s;
    const double lineAfter = std::round(due_s / spacing_s) + 1.0;
    return std::max(lineAfter, std::floor(timer.ElapsedTime() / spacing_s)) * spacing_s;
}

} // namespace

void DataRecorder::Start() {
    const Platform& world = m_Station.World;
    m_Lines = 0;
    m_FailedReadings = 0;
    m_Board = m_Station.CurrentAIB;
    // The day stands before the month: scripts that collect these files count on it.
    m_File.emplace(
        LineFile::Begin(m_Station.World, "recording",
                        Paths::Recording + DateText(world.Time.Now(), "yyyyddmm_hhnnss") + ".csv"));
    m_StartOfDay_s = world.Time.SecondsSinceMidnight();
    m_Start_s = MonotonicSeconds(world.Time);
    try {
        m_File->WriteHeading("Timer,CH1 Flow,Ch2 Flow,3v3,Floating");
    } catch (const DriveError&) {
        Stop();
        throw;
    }
}

std::string DataRecorder::Elapsed() const {
    return GeneralText(
        static_cast<float>(m_Station.World.Time.SecondsSinceMidnight() - m_StartOfDay_s));
}

double DataRecorder::Duration_s() const {
    const bool goesOn = m_File && m_File->IsOpen();
    return (goesOn ? MonotonicSeconds(m_Station.World.Time) : m_Stop_s) - m_Start_s;
}

void DataRecorder::Stop() {
    if (!Recording())
        return;
    m_Stop_s = MonotonicSeconds(m_Station.World.Time);
    m_File->Close();
}

void DataRecorder::Append(const std::string& line) {
    try {
        m_File->WriteLine(line);
    } catch (const DriveError&) {
        Stop();
        throw;
    }
}

void DataRecorder::RecordLine() {
    std::string line = Elapsed(); // before the readings, which take their time
    const auto add = [&](std::optional<std::int32_t> reading) {
        line += "," + OptionalText(reading);
        m_FailedReadings += reading ? 0 : 1;
    };
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
        add(m_Board->Reading(channel));
    std::int32_t pressure = 0;
    const AIBStatus status = m_Board->ReadReg(AIB::PressureRegister, pressure);
    add(status == Status::NoError ? std::optional(pressure) : std::nullopt);
    Append(line);
    ++m_Lines;
}

void DataRecorder::Mark(const std::string& text) {
    Append(Elapsed() + std::string(Readings + 1, ',') + text);
}

RecordingResult TimedRecording::Run(double duration_s,
                                    const std::function<void(double share)>& progress) {
    RecordingResult outcome;
    RunBenchProcedure(m_Station, "recording", {}, outcome, [&] {
        m_Recorder.Start();
        return RunLogged(m_Recorder.File(), outcome, [&] { return Record(duration_s, progress); });
    });
    m_Recorder.Stop();
    outcome.Lines = m_Recorder.Lines();
    outcome.FailedReadings = m_Recorder.FailedReadings();
    if (outcome.Ended == End::Passed && m_Recorder.NothingAnswered()) {
        outcome.Ended = End::Failed;
        outcome.Error = "The board has answered none of the readings.";
    }
    return outcome;
}

bool TimedRecording::Record(double duration_s, const std::function<void(double share)>& progress) {
    constexpr double progressSpacing_s = 0.25;
    ProcedureWait wait(m_Station);
    HiResTimer timer(m_Station.World.Time);
    double progressDue_s = 0.0;
    // Due times are multiples of the spacing, so that they do not drift over the hours; a
    // bench that is slower than that skips some, as the window's timer does.
    for (double due_s = 0.0; due_s < duration_s; due_s = NextDue_s(due_s, timer)) {
        do {
            if (!wait.Pass(timer, due_s))
                return false;
        } while (timer.ElapsedTime() < due_s);
        m_Recorder.RecordLine();
        if (due_s >= progressDue_s) {
            progressDue_s = due_s + progressSpacing_s;
            progress(due_s / duration_s);
        }
    }
    return !wait.Ended();
}

} // namespace ombrix
