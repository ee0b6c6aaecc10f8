#include "calibration/run/CalibrationRun.h"

#include "platform/os/ProgramLog.h"

#include <exception>
#include <utility>

namespace ombrix {

void NoteCancel(Outcome& outcome) {
    // What has been stopped by an error stays that.
    if (outcome.Error.empty())
        outcome.Ended = End::Cancelled;
}

bool TryToStore(CalibrationOutcome& outcome, const std::function<void()>& save) {
    try {
        save();
        return true;
    } catch (const EpromError& error) {
        outcome.AllStored = false;
        outcome.Ended = End::NotStored;
        outcome.Error = error.what();
    } catch (const BoardError& error) {
        outcome.Ended = End::Stopped;
        outcome.Error = error.what();
    }
    return false;
}

CalibrationRun::CalibrationRun(const RunContext& context, RunKind kind)
    : m_Context(context), m_Station(context.Reports.TheStation), m_World(m_Station.World),
      m_Unit(m_Station.Calibration()), m_Stages(context.Stages), m_Wait(m_Station),
      m_Air(m_Station), m_Log(m_World), m_Recorder(m_Station, kind), m_Kind(kind) {}

CalibrationOutcome CalibrationRun::Run() {
    m_Stages.Stage_RunNext();
    const std::string unready = Unready();
    if (!unready.empty()) {
        Refuse(unready);
        return m_Outcome;
    }
    Announce();
    if (!AskToBegin()) {
        NoteCancel(m_Outcome);
        m_Outcome.NothingDriven = true;
    } else if (TryToStore(m_Outcome, [this] { m_Context.Guard.MakeReady(); })) {
        MeasureAndStore();
    } else {
        m_Outcome.NothingDriven = true;
    }
    if (m_Outcome.Ended == End::Passed && !m_Outcome.Passed)
        m_Outcome.Ended = End::Failed;
    SettleEprom();
    if (WasCancelled())
        NoteCancelled();
    EndLog();
    if (m_Recorder.Begun())
        AddToHistory();
    m_Stages.Stage_Complete(m_Outcome.Ended);
    if (WasStopped())
        TellOperator(m_World,
                     "The calibration has been stopped.\r\n\r\n" + m_Outcome.Error + "\r\n\r\n" +
                         m_Outcome.Eprom,
                     MessageIcon::Critical);
    return m_Outcome;
}

void CalibrationRun::Refuse(const std::string& unready) {
    m_Outcome.NothingDriven = true;
    m_Outcome.Ended = End::Stopped;
    m_Outcome.Error = unready;
    m_Outcome.Eprom = m_Context.Guard.ChangesText();
    TellOperator(m_World, unready, MessageIcon::Warning);
    m_Stages.Stage_Complete(m_Outcome.Ended);
}

void CalibrationRun::MeasureAndStore() {
    Attempt([this] {
        // A pin that is an input moves no valve: both channels would be measured through one.
        if (m_Unit.Record().HasSolenoidValves != 0)
            m_Station.Outputs.PrepareValve(*m_Station.CurrentAIB);
        Measure();
    });
    if (!GoesOn())
        NoteCancel(m_Outcome);
    if (!WasStopped() || DatesWhatWasStopped())
        m_Recorder.NoteMeasured(m_Outcome.Passed, !WasCancelled() && !WasStopped());
    Attempt([this] { Store(); });
    m_Outcome.NoFurtherRun = !GoesOn();
}

/// Whatever goes wrong ends the run in order: air off, log closed, stage marked.
void CalibrationRun::Attempt(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& error) {
        m_Context.Running.SwitchOffNow();
        if (WasStopped())
            LogStop(); // the first of two reasons
        m_Outcome.Passed = false;
        m_Outcome.Ended = End::Stopped;
        m_Outcome.Error = error.what();
    }
}

bool CalibrationRun::NoteIfUnanswered() {
    m_World.Events.ProcessPendingEvents();
    if (!GoesOn())
        NoteCancel(m_Outcome);
    return !GoesOn();
}

Answer CalibrationRun::AskYesNo(const std::string& text) const {
    return m_World.Messages.Ask({text, MessageIcon::Question, MessageButtons::YesNo});
}

bool CalibrationRun::AskAgainstReason(const std::string& reason,
                                      const std::string& question) const {
    Message message{reason + ".\r\n\r\n" + question, MessageIcon::Warning, MessageButtons::YesNo};
    message.DeclinedUnattended = message.DefaultsToRefusal = true;
    return m_World.Messages.Ask(message) == Answer::Yes;
}

void CalibrationRun::Log(const LogLines& lines) {
    for (const std::string& line : lines)
        m_Log.LogCalibration(line);
}

void CalibrationRun::LogStop() {
    const std::string& reason = m_Outcome.Error;
    m_Log.LogCalibration("Calibration stopped: " + reason.substr(0, reason.find("\r\n")));
}

std::string CalibrationRun::NotStored() const {
    return IsAudit() || m_Outcome.Saved ? "" : NotStoredText();
}

void CalibrationRun::SettleEprom() {
    if (m_Context.Settle)
        m_Context.Settle(m_Outcome);
    m_Outcome.Eprom = m_Context.Guard.ChangesText();
    if (const std::string lack = NotStored(); !lack.empty())
        m_Log.LogCalibration(lack);
    if (m_Outcome.Ended != End::Passed)
        m_Log.LogCalibration(m_Outcome.Eprom);
    if (WasStopped())
        LogStop();
}

void CalibrationRun::EndLog() {
    m_Log.CloseCalibrationLog();
    m_Outcome.Files.insert(m_Outcome.Files.begin(), m_Log.Files().begin(), m_Log.Files().end());
    m_Outcome.AllStored = m_Outcome.AllStored && m_Log.AllStored();
}

void CalibrationRun::AddToHistory() {
    HistoryEntry entry = Measured();
    if (const std::string lack = NotStored(); !lack.empty())
        entry.Reasons.push_back(lack);
    entry.Eprom = m_Outcome.Eprom;
    const bool stored = m_Recorder.Finish(m_Outcome, std::move(entry));
    m_Outcome.AllStored = m_Outcome.AllStored && stored;
}

} // namespace ombrix
