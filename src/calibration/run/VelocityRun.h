#pragma once

#include "board/eprom/EpromGuard.h"
#include "board/procedure/ProcedureGate.h"
#include "calibration/judge/VelocityMeasurement.h"
#include "calibration/report/CalibrationReport.h"
#include "calibration/run/CalibrationLog.h"
#include "calibration/run/CalibrationOutcome.h"
#include "calibration/run/CalibrationServices.h"
#include "calibration/run/RunRecorder.h"

#include <string>

namespace ombrix {

/// One velocity calibration of the ACU on the current board. A system run measures both channels
/// and replaces the stored table; an audit sets flows through the stored table and verifies
/// them. Nothing is written to the EPROM before the data have been judged good.
/// One object serves one run.
class VelocityRun {
  public:
    /// @param guard of the procedure that the run belongs to
    /// @param unattended one of several runs that were started together: no prompts, and good
    ///        data are saved without asking
    VelocityRun(clsACUCalibration& record, const CalibrationServices& services, EpromGuard& guard,
                CalibrationKind kind, bool unattended);

    CalibrationOutcome CalibrateACUAirVelocity();

  private:
    bool IsAudit() const { return m_Kind == CalibrationKind::Audit; }
    bool Running() const;
    bool Confirmed();
    template <class Work>
    void Attempt(Work work);
    void Measure();
    void MeasureChannels();
    void Store();
    void TellIfNotAcceptable(std::size_t channel);
    void FinishSystem();
    void FinishAudit();
    void FileAudit(bool wanted, const ACURecord& before);
    void SaveCoefficients();
    bool WantsToSave();
    bool LeftUnanswered();
    std::string ReasonOfFailure() const;
    void FillReport();
    void SaveReport();
    void Stop(const std::string& reason);
    void AddToHistory();
    void LogStop();
    Answer AskYesNo(const std::string& text) const;

    clsACUCalibration& m_Record;
    const CalibrationServices& m_Services;
    EpromGuard& m_Guard;
    CalibrationKind m_Kind;
    bool m_Unattended;
    Platform& m_World;
    Cancellation m_Cancel;
    CalibrationLog m_Log;
    CalibrationReport m_Report;
    VelocityMeasurement m_Measured;
    RunRecorder m_Recorder;
    CalibrationOutcome m_Outcome;
};

} // namespace ombrix
