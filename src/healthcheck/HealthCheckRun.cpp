#include "healthcheck/HealthCheckRun.h"

#include "board/procedure/DrivingProcedure.h"
#include "board/procedure/ProcedureWait.h"
#include "healthcheck/MFCSequence.h"
#include "platform/os/ProgramLog.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

/// The first paragraph of an error: the others say what to do at the bench.
std::string FirstParagraph(const std::string& text) {
    return text.substr(0, text.find("\r\n"));
}

std::string OutcomeTextOf(const Outcome& outcome) {
    switch (outcome.Ended) {
    case End::Failed: return outcome.Error;
    case End::Cancelled: return "Cancelled";
    case End::Stopped:
    case End::NotStored: return "Stopped: " + FirstParagraph(outcome.Error);
    case End::Passed: break;
    }
    return HealthCheckLayout::Overview::Completed;
}

} // namespace

HealthCheckRun::HealthCheckRun(const ReportTools& tools)
    : m_Station(tools.TheStation), m_Recorder(m_Station), m_Report(tools) {}

HealthCheckResult HealthCheckRun::Run(std::span<const HealthCheckOption> options,
                                      const HealthCheckView& view) {
    HealthCheckResult result;
    ProcedureLog log(m_Station.World, "Health check");
    DrivingProcedure running(m_Station, "health check", {m_Station.CurrentAIB});
    try {
        running.Begin();
        // It names the pressure sensor and the unit.
        m_Station.Calibration().RequireRecord();
        m_Station.Outputs.ZeroAirChannels(*m_Station.CurrentAIB);
        if (result.Error = m_Report.Open(); result.Error.empty()) {
            m_Recorder.Begin(options);
            RunAll(PlanHealthCheck(options), view, result);
            JudgeCompleteness(result);
        } else {
            result.Ended = End::NotStored;
        }
    } catch (const std::exception& error) {
        running.SwitchOffNow();
        result.Ended = End::Stopped;
        result.Error = error.what();
        TellOperator(m_Station.World, "The health check has been stopped.\r\n\r\n" + result.Error,
                     MessageIcon::Critical);
    }
    result.OutcomeText = OutcomeTextOf(result);
    if (!result.Sequences.empty()) {
        m_Recorder.Measured(result.OutcomeText);
        Save(result);
    }
    const bool isIncomplete = result.Ended == End::Failed;
    const std::string ended = isIncomplete ? "incomplete: " + result.Error : EndText(result);
    m_Recorder.End(ended, result.Files);
    log.Ended(ended);
    m_Station.Procedures.TellEnd(result, isIncomplete ? "Incomplete" : StageText(result.Ended));
    return result;
}

void HealthCheckRun::RunAll(const std::vector<SequencePlan>& plan, const HealthCheckView& view,
                            HealthCheckResult& result) {
    const double total_s = TotalTime_s(plan);
    double done_s = 0.0;
    for (const SequencePlan& sequence : plan) {
        const Answer answer = AskPrompt(sequence);
        if (answer == Answer::Cancel)
            m_Station.Procedures.Cancel();
        if (m_Station.Procedures.CancelRequested()) {
            result.Ended = End::Cancelled;
            return;
        }
        if (answer == Answer::Yes)
            RunOne(sequence, view, done_s, total_s, result);
        if (result.Ended == End::Cancelled)
            return;
        done_s += TotalTime_s({&sequence, 1});
    }
    if (result.Sequences.empty()) // every prompt was declined
        result.Ended = End::Cancelled;
}

void HealthCheckRun::JudgeCompleteness(HealthCheckResult& result) {
    int steps = 0;
    int completed = 0;
    for (const SequenceResult& sequence : result.Sequences) {
        steps += sequence.Steps;
        completed += sequence.Completed;
    }
    if (result.Ended != End::Passed || completed == steps)
        return;
    result.Ended = End::Failed;
    result.Error = fmt::format("Too few samples to evaluate {} of {} steps: the board answers too "
                               "slowly, or not always.",
                               steps - completed, steps);
    TellOperator(m_Station.World, "The health check is incomplete.\r\n\r\n" + result.Error,
                 MessageIcon::Warning);
}

Answer HealthCheckRun::AskPrompt(const SequencePlan& plan) {
    if (plan.Prompt.empty())
        return Answer::Yes;
    return m_Station.World.Messages.Ask(
        {plan.Prompt, MessageIcon::Information, MessageButtons::YesNoCancel});
}

void HealthCheckRun::RunOne(const SequencePlan& plan, const HealthCheckView& view, double done_s,
                            double total_s, HealthCheckResult& result) {
    MFCSequence sequence;
    for (const StepPlan& step : plan.Steps)
        sequence.AddStep(step.Ch1Demand, step.Ch2Demand, step.Duration_s);
    const std::string sheet = m_Report.Book().FreeName(plan.SheetName);
    SequenceView sequenceView{view.Graphs, view.Labels, view.Steps, {}, &m_Recorder};
    sequenceView.Progress = [&](double elapsed_s) {
        const double share = (done_s + elapsed_s) / total_s;
        m_Station.Procedures.Tell({sheet, share, total_s - done_s - elapsed_s});
        if (view.Progress)
            view.Progress(share);
    };
    ProcedureWait wait(m_Station);
    const auto note = [&] {
        result.Sequences.push_back({sheet, sequence.StepCount(), sequence.TotalTime_s(),
                                    sequence.SampleCount(), sequence.RecordFull(),
                                    sequence.MeasuredCount()});
    };
    m_Recorder.SequenceBegins(sheet, plan.Steps);
    try {
        if (!sequence.RunSequence(m_Station, wait, sequenceView, &m_Report.Book(), sheet,
                                  m_Report.OverviewRow()))
            result.Ended = End::Cancelled;
    } catch (const BoardError&) {
        note(); // its record is in the report up to where the board was lost
        throw;
    }
    note();
}

void HealthCheckRun::Save(HealthCheckResult& result) {
    const HealthCheckReport::Saved saved = m_Report.Save(
        m_Station.Calibration().Unit(), m_Station.World.Time.Now(), result.OutcomeText);
    if (saved.File)
        result.Files.push_back(*saved.File);
    if (saved.Error.empty()) {
        TellOperator(m_Station.World, "The file has been saved:\r\n\r\n   " + saved.Path);
        return;
    }
    // A run that was cancelled or stopped stays that: its work was not done.
    if (result.Ended == End::Passed)
        result.Ended = End::NotStored;
    result.Error += (result.Error.empty() ? "" : "\r\n\r\n") + saved.Error;
}

} // namespace ombrix
