#pragma once

#include "board/eprom/EpromGuard.h"
#include "board/procedure/DrivingProcedure.h"
#include "board/procedure/Outcome.h"
#include "board/procedure/ProcedureWait.h"
#include "calibration/air/AirChannelControl.h"
#include "calibration/history/RunRecorder.h"
#include "calibration/judge/Judgement.h"
#include "calibration/run/CalibrationLog.h"
#include "calibration/run/CalibrationView.h"
#include "reports/ReportFile.h"

#include <functional>
#include <string>

namespace ombrix {

/// What a calibration came to.
struct CalibrationOutcome : Outcome {
    /// What was measured is good, whether it could be stored or not.
    bool Passed = false;
    /// New coefficients are in the EPROM.
    bool Saved = false;
    /// Nothing was driven: what the operator drives by hand goes on.
    bool NothingDriven = false;
    /// The operator has cancelled while the finished run was being stored: it stands, but no
    /// further one is wanted.
    bool NoFurtherRun = false;
    /// How the procedure has left the EPROM so far: EpromGuard::ChangesText.
    std::string Eprom{};
};

/// Takes down that an operator has cancelled, or the end of the program.
void NoteCancel(Outcome& outcome);

/// Has something stored in the EPROM. False, and noted in the outcome, when the EPROM does not
/// hold it.
bool TryToStore(CalibrationOutcome& outcome, const std::function<void()>& save);

/// What a run belongs to: the procedure that drives and stores, and where it shows.
struct RunContext {
    const ReportTools& Reports;
    CalibrationView& Stages;
    DrivingProcedure& Running;
    EpromGuard& Guard;
    /// One of several runs that were started together: no prompts, and good data are saved without
    /// asking.
    bool Unattended = false;
    /// What follows this run in the procedure, and the whole of it, in seconds; a run that stands
    /// alone is the whole.
    double After_s = 0.0;
    double Whole_s = 0.0;
    /// The run has ended, and is about to say how it leaves the EPROM: the last moment to put
    /// something back.
    std::function<void(const CalibrationOutcome& run)> Settle{};
    /// The unit as the procedure has found it, where that has set it up for the run.
    const ACURecord* Found = nullptr;
};

/// The frame that velocity and pressure runs have in common. It asks, makes the EPROM ready, has
/// the run measure and store, and whatever way that ends closes the log, adds the run to the
/// history, marks the stage and tells what went wrong. One object serves one run.
class CalibrationRun {
  public:
    virtual ~CalibrationRun() = default;
    CalibrationRun(const CalibrationRun&) = delete;
    CalibrationRun& operator=(const CalibrationRun&) = delete;

    CalibrationOutcome Run();

  protected:
    CalibrationRun(const RunContext& context, RunKind kind);

    bool IsAudit() const { return CalibrationKindOf(m_Kind) == CalibrationKind::Audit; }
    /// Neither cancelled nor is the program being closed.
    bool GoesOn() const { return !m_Wait.Ended(); }
    bool WasStopped() const { return !m_Outcome.Error.empty(); }
    bool WasCancelled() const { return m_Outcome.Ended == End::Cancelled; }
    /// An interrupt and the end of the program refuse a question, and do not mean its No.
    bool NoteIfUnanswered();
    Answer AskYesNo(const std::string& text) const;
    /// Whether the operator wants what a reason speaks against; No is the default, and what an
    /// unattended station answers.
    bool AskAgainstReason(const std::string& reason, const std::string& question) const;
    void Log(const LogLines& lines);
    /// NotStoredText of a system run that has not stored anything; else empty.
    std::string NotStored() const;

    const RunContext& m_Context;
    Station& m_Station;
    Platform& m_World;
    ACUCalibration& m_Unit;
    CalibrationView& m_Stages;
    ProcedureWait m_Wait;
    AirChannelControl m_Air;
    CalibrationLog m_Log;
    RunRecorder m_Recorder;
    CalibrationOutcome m_Outcome;

  private:
    /// Why the unit cannot be calibrated so; empty when it can.
    virtual std::string Unready() const { return {}; }
    /// The run is about to ask whether to begin.
    virtual void Announce() {}
    /// Whether the operator wants it to begin.
    virtual bool AskToBegin() = 0;
    /// Measures, judges, and notes in the outcome whether it has passed.
    virtual void Measure() = 0;
    /// Whether a run that an error has stopped says in its journal when that was.
    virtual bool DatesWhatWasStopped() const = 0;
    /// Stores what was measured, also of a run that has ended early.
    virtual void Store() = 0;
    /// The operator has declined or cancelled.
    virtual void NoteCancelled() {}
    /// What was measured, and why it has not passed.
    virtual HistoryEntry Measured() const = 0;
    /// What to say when the unit does not get what a system run has measured; empty where that is
    /// nothing.
    virtual const char* NotStoredText() const = 0;

    void MeasureAndStore();
    void Attempt(const std::function<void()>& work);
    void Refuse(const std::string& unready);
    void LogStop();
    void SettleEprom();
    void EndLog();
    void AddToHistory();

    RunKind m_Kind;
};

} // namespace ombrix
