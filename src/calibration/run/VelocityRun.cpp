#include "calibration/run/VelocityRun.h"

#include "calibration/report/AuditSheets.h"
#include "calibration/run/ChannelVelocityRun.h"
#include "calibration/run/GuardedOutcome.h"
#include "calibration/unit/ACUCalibration.h"
#include "platform/os/ProgramLog.h"

#include <fmt/format.h>

namespace ombrix {

VelocityRun::VelocityRun(clsACUCalibration& record, const CalibrationServices& services,
                         EpromGuard& guard, CalibrationKind kind, bool unattended)
    : m_Record(record), m_Services(services), m_Guard(guard), m_Kind(kind),
      m_Unattended(unattended), m_World(services.TheStation.World), m_Log(m_World),
      m_Report(services, record), m_Recorder(services.TheStation, record, VelocityRunKind(kind)) {
    m_Measured.Kind = kind;
}

CalibrationOutcome VelocityRun::CalibrateACUAirVelocity() {
    m_Services.Stages.Stage_RunNext();
    m_Log.OpenCalibrationLog("ACUCal_AirVel", m_Record.SerialNumberStr());
    m_Log.LogCalibration(std::string("Calibration Type,") + (IsAudit() ? "Audit" : "System"));
    if (!m_Unattended && !Confirmed()) {
        m_Outcome.Aborted = true;
    } else if (Admits(m_Guard, m_Outcome)) {
        const clsACUCalibration::RunningCalibration running(m_Record, m_Cancel);
        Attempt([this] { Measure(); });
        m_Outcome.Aborted = !Running();
        m_Recorder.Measured(m_Outcome.Passed, !m_Outcome.Aborted && m_Outcome.Error.empty());
        Attempt([this] { Store(); });
        m_Outcome.NoFurtherRun = !Running();
    } else {
        LogStop();
    }
    if (m_Outcome.Aborted)
        m_Log.LogCalibration("Calibration cancelled by the operator");
    m_Log.CloseCalibrationLog();
    m_Outcome.Files.insert(m_Outcome.Files.begin(), m_Log.Files().begin(), m_Log.Files().end());
    m_Outcome.AllStored = m_Outcome.AllStored && m_Log.AllStored();
    if (m_Recorder.Begun())
        AddToHistory();
    m_Services.Stages.Stage_Complete(m_Outcome.Aborted, m_Outcome.Passed);
    if (!m_Outcome.Error.empty())
        TellOperator(m_World, "The calibration has been stopped.\r\n\r\n" + m_Outcome.Error,
                     MessageIcon::Critical);
    return m_Outcome;
}

bool VelocityRun::Running() const {
    return !m_Cancel.Requested() && !m_World.Events.ProgramEnding();
}

bool VelocityRun::Confirmed() {
    const std::string text = fmt::format(
        "{}\r\n\r\n{}\r\n  - The air supply is connected and turned on\r\n"
        "  - The power supply is connected and turned on\r\n\r\n"
        "Click OK to Start or Cancel to exit.",
        IsAudit() ? "Note - this procedure will verify the calibration parameters"
                  : "Caution - this procedure will reset the calibration parameters",
        IsAudit() ? "To continue, please ensure:" : "If you wish to continue, please ensure:");
    const Message prompt{
        text, IsAudit() ? MessageIcon::Question : MessageIcon::Warning, MessageButtons::OkCancel,
        IsAudit() ? "Air Velocity Audit Calibration" : "Air Velocity System Calibration"};
    return m_World.Messages.Ask(prompt) == Answer::Ok;
}

/// Whatever goes wrong ends the run in order: air off, log closed, stage marked.
template <class Work>
void VelocityRun::Attempt(Work work) {
    try {
        work();
    } catch (const std::exception& error) {
        Stop(error.what());
    }
}

void VelocityRun::Measure() {
    if (!m_Record.ACUInitialised())
        m_Record.ReadEPROMValues(*m_Services.TheStation.g_CurrentAIB);
    m_Recorder.Begin(m_Unattended);
    m_Report.Open(m_Kind);
    MeasureChannels();
    m_Outcome.Passed = Running() && ReasonOfFailure().empty();
}

void VelocityRun::Store() {
    FillReport();
    if (!m_Outcome.Error.empty())
        SaveReport(); // what was measured before the error is kept
    else if (!IsAudit())
        FinishSystem();
    else if (!m_Outcome.Aborted)
        FinishAudit();
}

void VelocityRun::MeasureChannels() {
    AirChannelControl air = m_Record.Air(m_Services.Sliders);
    ProcedureWait wait(m_World.Time, m_World.Events, m_Cancel);
    const ACURecord& record = m_Record.Record();
    MeasuringLoop loop(*m_Services.TheStation.g_CurrentAIB, air, wait, m_World.Time,
                       record.m_VelocitySystemDate == OleDate());
    const ChannelRunServices services{record, air,          loop, m_Services.Stages,
                                      m_Log,  m_World.Time, wait, m_Recorder};
    loop.AwaitAnswer();
    const auto measure = [&](std::size_t channel) {
        ChannelVelocityRun(services, m_Kind, static_cast<std::int32_t>(channel))
            .CalibrateChannelVelocity(m_Measured.Channels.at(channel));
        TellIfNotAcceptable(channel);
    };
    if (IsAudit() || m_Record.ACUInitialised() || (m_Unattended && Running()))
        measure(0);
    if (Running() && (IsAudit() || m_Measured.Channels[0].DataAcceptable))
        measure(1);
}

void VelocityRun::TellIfNotAcceptable(std::size_t channel) {
    const ChannelMeasurement& measured = m_Measured.Channels.at(channel);
    if (!IsAudit() && !measured.DataAcceptable && measured.Capacity_ml_m > 0.0F && Running() &&
        !m_Unattended)
        TellOperator(m_World,
                     fmt::format("The values recieved during calibration on Channel {} were not "
                                 "acceptable.",
                                 channel + 1),
                     MessageIcon::Information);
}

std::string VelocityRun::ReasonOfFailure() const {
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        if (!m_Measured.Channels.at(channel).DataAcceptable)
            return fmt::format("The data collected from channel {} was not acceptable",
                               channel + 1);
    }
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        if (IsAudit() && !m_Measured.Channels.at(channel).AuditPassed)
            return fmt::format("Channel {} failed the audit calibration", channel + 1);
    }
    return {};
}

void VelocityRun::FinishSystem() {
    const std::string reason = ReasonOfFailure();
    if (!m_Outcome.Passed) {
        if (Running() && !m_Unattended)
            TellOperator(m_World, "The System Calibration Failed\r\n\r\n" + reason,
                         MessageIcon::Information);
    } else {
        if (m_Unattended || WantsToSave())
            SaveCoefficients();
        else
            TellOperator(m_World, "Calibration Coefficients NOT Saved");
    }
    SaveReport();
}

bool VelocityRun::WantsToSave() {
    const bool wanted =
        AskYesNo("Would you like to save the calibration?") == Answer::Yes ||
        AskYesNo("Are you sure you want to lose the calibration data?") != Answer::Yes;
    return !LeftUnanswered() && wanted;
}

/// An interrupt and the end of the program refuse a question, and do not mean its No.
bool VelocityRun::LeftUnanswered() {
    m_World.Events.ProcessPendingEvents();
    m_Outcome.Aborted = !Running();
    return m_Outcome.Aborted;
}

void VelocityRun::SaveCoefficients() {
    std::array<ACUChannelCal, ACUChannels> table;
    for (std::size_t channel = 0; channel < AirChannels; ++channel)
        table.at(channel) = m_Measured.Channels.at(channel).NewVelocityCal;
    m_Outcome.Saved =
        Stored(m_Outcome, [&] { m_Record.SaveVelocitySystemCalibration(m_Guard, table); });
    if (m_Outcome.Saved)
        m_Recorder.Stored();
    if (m_Outcome.Saved && !m_Unattended)
        TellOperator(m_World, "Calibration Coefficients Saved");
}

void VelocityRun::FinishAudit() {
    const ACURecord before = m_Record.Record();
    m_Record.NoteVelocityAudit(m_Outcome.Passed);
    const std::string offer = "Would you like to save the data as a report?";
    const std::string text =
        m_Outcome.Passed
            ? "The Audit Calibration has passed.\r\n\r\n" + offer
            : "The Audit Calibration has failed for the following reason:\r\n\r\n" +
                  ReasonOfFailure() +
                  "\r\n\r\nIf a failure has occurred more than once, please contact Quillon."
                  "\r\n\r\n" +
                  offer;
    const bool wanted = m_Unattended || AskYesNo(text) == Answer::Yes;
    if (!m_Unattended && LeftUnanswered())
        m_Record.Replace(before);
    else
        FileAudit(wanted, before);
    SaveReport();
}

void VelocityRun::FileAudit(bool wanted, const ACURecord& before) {
    m_Recorder.AuditSheet(wanted);
    if (!wanted)
        return;
    AddWorkbook(m_Outcome, CreateAuditSheet_PV16(m_Services, m_Record, m_Measured, m_Unattended));
    if (Stored(m_Outcome, [&] { m_Record.SaveVelocityAudit(m_Guard, m_Outcome.Passed, before); }))
        m_Recorder.Stored();
}

void VelocityRun::FillReport() {
    if (!m_Report.IsOpen())
        return;
    try {
        m_Report.Fill(m_Measured, m_Outcome.Passed);
    } catch (const std::exception& error) {
        m_Outcome.AllStored = false;
        TellOperator(m_World,
                     std::string("The calibration report could not be filled:\r\n\r\n") +
                         error.what(),
                     MessageIcon::Critical);
    }
}

void VelocityRun::SaveReport() {
    if (m_Report.IsOpen())
        AddWorkbook(m_Outcome, m_Report.Save(m_Kind));
    else
        m_Outcome.AllStored = false;
}

void VelocityRun::Stop(const std::string& reason) {
    m_Services.AirOff();
    m_Outcome.Passed = false;
    m_Outcome.Error = reason;
    LogStop();
}

void VelocityRun::LogStop() {
    const std::string& reason = m_Outcome.Error;
    m_Log.LogCalibration("Calibration stopped: " + reason.substr(0, reason.find("\r\n")));
}

void VelocityRun::AddToHistory() {
    HistoryEntry entry;
    entry.Velocity = m_Measured;
    if (const std::string reason = ReasonOfFailure();
        !reason.empty() && !m_Outcome.Aborted && m_Outcome.Error.empty())
        entry.Reasons.push_back(reason);
    const bool stored = m_Recorder.End(m_Outcome, std::move(entry));
    m_Outcome.AllStored = m_Outcome.AllStored && stored;
}

Answer VelocityRun::AskYesNo(const std::string& text) const {
    return m_World.Messages.Ask({text, MessageIcon::Question, MessageButtons::YesNo});
}

} // namespace ombrix
