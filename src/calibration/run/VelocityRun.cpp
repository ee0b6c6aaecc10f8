#include "calibration/run/VelocityRun.h"

#include "calibration/report/AuditSheets.h"
#include "calibration/run/ChannelVelocityRun.h"
#include "platform/os/ProgramLog.h"
#include "reports/layout/AuditSheetLayout.h"

#include <fmt/format.h>

#include <array>
#include <exception>
#include <stdexcept>
#include <utility>

namespace ombrix {

VelocityRun::VelocityRun(const RunContext& context, CalibrationKind kind)
    : CalibrationRun(context, VelocityRunKind(kind)), m_Report(context.Reports) {
    m_Result.Measured.Kind = kind;
}

void VelocityRun::Announce() {
    m_Log.OpenCalibrationLog("ACUCal_AirVel", m_Unit.Unit().SerialNumberStr());
    m_Log.LogCalibration(std::string("Calibration Type,") + (IsAudit() ? "Audit" : "System"));
}

bool VelocityRun::AskToBegin() {
    if (m_Context.Unattended)
        return true;
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

void VelocityRun::Measure() {
    if (!m_Unit.Record().ACUInitialised)
        m_Unit.ReadEPROMValues();
    m_Recorder.Begin(m_Context.Unattended, m_Context.Found);
    m_Report.Open(Kind(), m_Unit.Unit(), m_World.Time.Now());
    if (IsAudit())
        TellIfUnusable(m_Context.Reports, AuditSheetLayout::PV16::Template);
    MeasureChannels();
    m_Outcome.Passed = GoesOn() && ReasonOfFailure(m_Result).empty();
}

void VelocityRun::MeasureChannels() {
    MeasuringLoop loop(m_Station, m_Air, m_Wait);
    loop.AwaitAnswer();
    // The verdict on an audit of nothing would stand in the EPROM.
    if (IsAudit() && m_Unit.Record().VelocitySystemDate == OleDate())
        throw std::runtime_error("This ACU has no velocity calibration to audit.\r\n\r\nPlease run "
                                 "\"Initalise Velocity\" first.");
    if (IsAudit() || m_Unit.Record().ACUInitialised || (m_Context.Unattended && GoesOn()))
        MeasureChannel(0, loop);
    if (GoesOn() && (IsAudit() || IsAcceptable(0)))
        MeasureChannel(1, loop);
}

void VelocityRun::MeasureChannel(std::size_t channel, MeasuringLoop& loop) {
    ChannelMeasurement& measured = m_Result.Measured.Channels.at(channel);
    double after_s = m_Context.After_s;
    for (std::size_t next = channel + 1; next < AirChannels; ++next)
        after_s += ChannelTime_s(m_Unit.Record(), next);
    const double whole_s = std::max(m_Context.Whole_s, VelocityRunTime_s(m_Unit.Record()));
    ChannelVelocityRun run({m_Unit.Record(), m_Air, loop, m_Wait, m_Stages, m_Log, m_Recorder,
                            m_Station.Procedures, after_s, whole_s},
                           Kind(), static_cast<std::int32_t>(channel));
    if (run.CalibrateChannelVelocity(measured)) {
        ChannelVerdict verdict = JudgeChannel(measured, Kind(), channel);
        if (!IsAudit() && !ReadingsRiseWithDemand(measured))
            m_Stages.ShowWarning(fmt::format(
                "Channel {} does not follow the demand. Check the air supply.", channel + 1));
        Log(verdict.Log);
        m_Recorder.ChannelJudged();
        m_Result.Verdicts.at(channel) = std::move(verdict);
    }
    if (!IsAudit() && !IsAcceptable(channel) && measured.Capacity_ml_m > 0.0F && GoesOn() &&
        !m_Context.Unattended)
        TellOperator(m_World, fmt::format("The values recieved during calibration on Channel {} "
                                          "were not acceptable.",
                                          channel + 1));
}

bool VelocityRun::IsAcceptable(std::size_t channel) const {
    const auto& verdict = m_Result.Verdicts.at(channel);
    return verdict && verdict->DataAcceptable;
}

void VelocityRun::Store() {
    FillReport();
    if (WasStopped())
        SaveReport(); // what was measured before the error is kept
    else if (!IsAudit())
        FinishSystem();
    else if (!WasCancelled())
        FinishAudit();
}

void VelocityRun::FinishSystem() {
    const bool canBeStored = m_Outcome.Passed || (GoesOn() && HasTable(m_Result));
    if (!canBeStored || (!m_Outcome.Passed && m_Context.Unattended)) {
        if (GoesOn() && !m_Context.Unattended)
            TellOperator(m_World,
                         "The System Calibration Failed\r\n\r\n" + ReasonOfFailure(m_Result));
    } else if (m_Context.Unattended || AskToSave()) {
        SaveCoefficients();
    } else {
        TellOperator(m_World, "Calibration Coefficients NOT Saved");
    }
    SaveReport();
}

bool VelocityRun::AskToSave() {
    const std::string question = "Would you like to save the calibration?";
    // Data that do not follow the demand are kept by nobody's mistake.
    const bool wanted =
        m_Outcome.Passed
            ? AskYesNo(question) == Answer::Yes ||
                  AskYesNo("Are you sure you want to lose the calibration data?") != Answer::Yes
            : AskAgainstReason(ReasonOfFailure(m_Result), question);
    return !NoteIfUnanswered() && wanted;
}

void VelocityRun::SaveCoefficients() {
    std::array<ACUChannelCal, ACUChannels> table;
    for (std::size_t channel = 0; channel < AirChannels; ++channel)
        table.at(channel) = m_Result.Verdicts.at(channel)->NewVelocityCal;
    m_Outcome.Saved = TryToStore(
        m_Outcome, [&] { m_Unit.SaveVelocitySystemCalibration(m_Context.Guard, table); });
    if (m_Outcome.Saved)
        m_Recorder.NoteStored();
    if (m_Outcome.Saved && !m_Context.Unattended)
        TellOperator(m_World, "Calibration Coefficients Saved");
}

void VelocityRun::FinishAudit() {
    const std::string offer = "Would you like to save the data as a report?";
    const std::string text =
        m_Outcome.Passed
            ? "The Audit Calibration has passed.\r\n\r\n" + offer
            : "The Audit Calibration has failed for the following reason:\r\n\r\n" +
                  ReasonOfFailure(m_Result) +
                  "\r\n\r\nIf a failure has occurred more than once, please contact Quillon."
                  "\r\n\r\n" +
                  offer;
    const bool wanted = m_Context.Unattended || AskYesNo(text) == Answer::Yes;
    if (m_Context.Unattended || !NoteIfUnanswered())
        FileAudit(wanted);
    SaveReport();
}

void VelocityRun::FileAudit(bool wanted) {
    m_Recorder.AuditSheet(wanted);
    if (!wanted)
        return;
    AddReport(m_Outcome, CreateAuditSheet_PV16(m_Context.Reports, m_Unit.Unit(), m_World.Time.Now(),
                                               m_Result.Measured, m_Context.Unattended));
    if (TryToStore(m_Outcome, [&] { m_Unit.SaveVelocityAudit(m_Context.Guard, m_Outcome.Passed); }))
        m_Recorder.NoteStored();
}

void VelocityRun::FillReport() {
    if (!m_Report.IsOpen())
        return;
    try {
        m_Report.Fill(m_Result, m_Outcome.Passed);
    } catch (const std::exception& error) {
        m_Outcome.AllStored = false;
        TellOperator(m_World,
                     std::string("The calibration report could not be filled:\r\n\r\n") +
                         error.what(),
                     MessageIcon::Critical);
    }
}

void VelocityRun::SaveReport() {
    if (!m_Report.IsOpen()) {
        m_Outcome.AllStored = false;
        return;
    }
    if (const std::string lack = NotStored(); !lack.empty())
        m_Report.SayNotStored(lack);
    AddReport(m_Outcome, m_Report.Save(Kind()));
}

void VelocityRun::NoteCancelled() {
    m_Log.LogCalibration("Calibration cancelled by the operator");
}

HistoryEntry VelocityRun::Measured() const {
    HistoryEntry entry;
    entry.Velocity = m_Result.Measured;
    if (const std::string reason = ReasonOfFailure(m_Result);
        !reason.empty() && !WasCancelled() && !WasStopped())
        entry.Reasons.push_back(reason);
    return entry;
}

} // namespace ombrix
