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

/// For log and journal.
std::string EndTextOf(const HealthCheckResult& result) {
    if (result.Ended == End::Failed && !IsComplete(result.Check))
        return "incomplete: " + result.Error;
    if (result.Ended == End::Passed || result.Ended == End::Failed)
        return fmt::format("completed: {}, {}", VerdictOf(result.Check), CountsText(result.Check));
    return EndText(result);
}

} // namespace

HealthCheckRun::HealthCheckRun(const ReportTools& tools)
    : m_Station(tools.TheStation), m_Recorder(m_Station), m_Report(tools) {}

HealthCheckResult HealthCheckRun::Run(std::span<const HealthCheckOption> options,
                                      const HealthCheckView& view) {
    HealthCheckResult result = Conduct(options, view);
    if (view.Ended)
        view.Ended(result);
    TellHowItEnded(result);
    return result;
}

HealthCheckResult HealthCheckRun::Conduct(std::span<const HealthCheckOption> options,
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
            result.Limits = m_Report.Limits();
            m_Recorder.Begin(options, result.Limits);
            RunAll(PlanHealthCheck(options), view, result);
            JudgeCompleteness(result);
        } else {
            result.Ended = End::NotStored;
        }
    } catch (const std::exception& error) {
        running.SwitchOffNow();
        result.Ended = End::Stopped;
        result.Error = error.what();
    }
    result.Check.Outcome = OutcomeTextOf(result);
    JudgeLimits(result);
    if (!result.Sequences.empty()) {
        m_Recorder.Measured(result.Check.Outcome);
        Save(result);
    }
    const std::string ended = EndTextOf(result);
    result.AllStored = m_Recorder.Finish(ended, result, result.Check);
    log.Ended(ended);
    const bool hasVerdict = result.Ended == End::Passed || result.Ended == End::Failed;
    m_Station.Procedures.TellEnd(result,
                                 hasVerdict ? VerdictOf(result.Check) : StageText(result.Ended));
    return result;
}

void HealthCheckRun::RunAll(const std::vector<SequencePlan>& plan, const HealthCheckView& view,
                            HealthCheckResult& result) {
    const double total_s = TotalTime_s(plan);
    double done_s = 0.0;
    std::size_t number = 0;
    for (const SequencePlan& sequence : plan) {
        if (view.Sequence)
            view.Sequence({sequence.SheetName, ++number, plan.size()});
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
}

void HealthCheckRun::JudgeLimits(HealthCheckResult& result) {
    if (result.Ended != End::Passed || result.Check.Failed == 0)
        return;
    result.Ended = End::Failed;
    result.Error =
        fmt::format("{} of {} steps are out of limits.", result.Check.Failed, result.Check.Steps);
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
    SequenceView sequenceView{
        view.Graphs, view.Labels, view.Steps, {}, Judging(sequence, sheet, view, result),
        &m_Recorder};
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
        AddSequence(result.Check, sequence, sheet, result.Limits);
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

std::function<void(std::int32_t)> HealthCheckRun::Judging(const MFCSequence& sequence,
                                                          const std::string& sheet,
                                                          const HealthCheckView& view,
                                                          const HealthCheckResult& result) const {
    return [&, sheet](std::int32_t index) {
        if (view.Steps != nullptr)
            view.Steps->ShowEnd(index, JudgeStep(sequence.Step(index), result.Limits));
        if (!view.Judged)
            return;
        HealthCheckFigures check = result.Check;
        AddSequence(check, sequence, sheet, result.Limits);
        view.Judged(check);
    };
}

void HealthCheckRun::Save(HealthCheckResult& result) {
    const HealthCheckReport::Saved saved = m_Report.Save(
        m_Station.Calibration().Unit(), m_Station.World.Time.Now(), result.Check.Outcome);
    if (saved.File)
        result.Files.push_back(*saved.File);
    m_SavedAs = saved.Path;
    if (saved.Error.empty())
        return;
    // A run that was cancelled or stopped stays that: its work was not done.
    if (result.Ended == End::Passed)
        result.Ended = End::NotStored;
    result.Error += (result.Error.empty() ? "" : "\r\n\r\n") + saved.Error;
}

void HealthCheckRun::TellHowItEnded(const HealthCheckResult& result) {
    Message message;
    const auto add = [&message](const std::string& paragraph) {
        message.Text += (message.Text.empty() ? "" : "\r\n\r\n") + paragraph;
    };
    if (result.Ended == End::Stopped) {
        message.Icon = MessageIcon::Critical;
        add("The health check has been stopped.\r\n\r\n" + result.Error);
    } else if (result.Ended == End::Failed) {
        message.Icon = MessageIcon::Warning;
        if (!IsComplete(result.Check))
            add("The health check is incomplete.\r\n\r\n" + result.Error);
    }
    if (!m_SavedAs.empty()) {
        add("The file has been saved:\r\n\r\n   " + m_SavedAs);
        add(fmt::format("{}: {}", VerdictOf(result.Check), CountsText(result.Check)));
    }
    if (!message.Text.empty())
        TellOfFile(m_Station.World, std::move(message),
                   m_SavedAs.empty() ? std::filesystem::path() : result.Files.front());
}

} // namespace ombrix
