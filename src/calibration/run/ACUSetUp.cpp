#include "calibration/run/ACUSetUp.h"

#include "board/eprom/EpromWriter.h"
#include "calibration/judge/Measurement.h"
#include "calibration/report/ACUInformation.h"
#include "calibration/run/ChannelVelocityRun.h"
#include "calibration/run/PressureRun.h"
#include "calibration/run/VelocityRun.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <array>

namespace ombrix {

namespace {

constexpr std::int32_t ProposedSerial = 301;
constexpr std::int32_t SmallestSuspectSerial = 1000;

struct Stage {
    const char* Name;
    CalibrationKind Kind;
};

constexpr std::array<Stage, 4> VelocityStages = {{
    {"Velocity System Calibration (1 of 2)", CalibrationKind::System},
    {"Velocity System Calibration (2 of 2)", CalibrationKind::System},
    {"Velocity Audit Calibration (1 of 2)", CalibrationKind::Audit},
    {"Velocity Audit Calibration (2 of 2)", CalibrationKind::Audit},
}};
constexpr const Stage* LastSystemRun = &VelocityStages[1];
constexpr std::array<const char*, 4> PressureStages = {
    "Pressure System Calibration (1 of 2)", "Pressure System Calibration (2 of 2)",
    "Pressure Audit Calibration (1 of 2)", "Pressure Audit Calibration (2 of 2)"};

/// What the board is, and what it is to become.
std::string IdentityQuestion(const AIB& board, std::int32_t serial, MFCSetup setup) {
    return fmt::format(
        "Write the identity of this board?\r\n\r\n   Serial number: {} → {}\r\n   HW "
        "version: {} → {}",
        board.DevSerialNum(), serial, board.HWVersion(), static_cast<std::int32_t>(setup));
}

} // namespace

bool ACUSetUp::SetAIBSerialNumber(std::int32_t& serial, bool digital, bool analog) {
    const RunningProcedure running(m_Station.Procedures, "writing of the board's identity");
    Operator& messages = m_Station.World.Messages;
    const auto askAgain = [&messages](const char* what) {
        const std::string text = std::string("Suspect Serial Number.\r\n\r\n") + what;
        return messages.Ask({text, MessageIcon::Warning, MessageButtons::OkCancel}) == Answer::Ok;
    };
    while (true) {
        const auto text = messages.AskText("Please enter the Serial Number of the ACU:\r\n\r\n",
                                           std::to_string(serial > 0 ? serial : ProposedSerial),
                                           "ACU Serial Number");
        const auto number = ParseNumber(text.value_or(""));
        if (!number) {
            if (!askAgain("Please enter a number!"))
                return false;
            continue;
        }
        serial = RoundHalfEven(*number);
        if (serial >= SmallestSuspectSerial && !askAgain("Please enter a number below 1000!"))
            return false;
        if (serial >= 1 && serial < SmallestSuspectSerial)
            break;
    }
    const MFCSetup setup = MFCSetupOf(digital, analog);
    Message question{IdentityQuestion(*m_Station.CurrentAIB, serial, setup), MessageIcon::Question,
                     MessageButtons::YesNo};
    question.DefaultsToRefusal = true;
    if (messages.Ask(question) != Answer::Yes)
        return false;
    ProcedureLog log(m_Station.World, "Writing of the board's identity");
    const AIBStatus status = WriteIdentity(m_Station, serial, setup);
    if (status != Status::NoError)
        throw BoardError("The identity could not be written: " + AIB::AIBErrorStr(status));
    log.Ended("serial number " + std::to_string(serial));
    return true;
}

bool ACUSetUp::AskMFCNumber(std::string& mfcNumber) {
    Operator& messages = m_Station.World.Messages;
    // A record without a number shows as the letters of "NOT SET".
    while (mfcNumber == MFCNumberPlaceholder || mfcNumber == "NOTSET" ||
           !ACURecord::IsMFCNumber(mfcNumber)) {
        if (!ACURecord::IsMFCNumber(mfcNumber))
            messages.Ask(
                {ACURecord::NumberRefusal(mfcNumber), MessageIcon::Warning, MessageButtons::Ok});
        const auto entered =
            messages.AskText("Please enter the MFC Number", MFCNumberPlaceholder, "");
        // An unattended station has no number to give.
        if (!entered || messages.Unattended())
            return false;
        mfcNumber = *entered;
    }
    return true;
}

ACUSetUp::Initialisation ACUSetUp::RunACUInitialisation(std::string& mfcNumber, bool velocity,
                                                        bool pressure) {
    ProcedureLog log(m_Station.World, "Initialisation of the ACU");
    Sequence sequence{EpromGuard(m_Station, velocity ? "Velocity Initialisation" : "MFC Number"),
                      DrivingProcedure(m_Station, "initial calibrations", {m_Station.CurrentAIB}),
                      m_Station.Calibration().Record()};
    sequence.Running.Begin();
    const bool hasNumber = AskMFCNumber(mfcNumber);
    Initialisation result;
    result.NothingDriven = true;
    // A prompt that the end of the program has closed was not answered.
    if (!hasNumber || m_Station.World.Events.ProgramEnding())
        NoteCancel(result);
    else if (StoreOrTell(sequence, result,
                         [&] { m_Station.Calibration().SaveMFCNumber(sequence.Guard, mfcNumber); }))
        ListAndRunStages(sequence, velocity, pressure, result);
    if (result.Ended == End::Passed && !result.Passed)
        result.Ended = End::Failed;
    // What the operator drives by hand goes on when the sequence is declined, or has no run.
    if (result.NothingDriven)
        sequence.Running.LeaveOutputs();
    result.Eprom = sequence.Guard.ChangesText();
    log.Ended(VerdictText(result) + (result.AllStored ? "" : ", not all stored") + ". " +
              result.Eprom);
    m_Station.Procedures.TellEnd(result, VerdictOf(result.Ended));
    return result;
}

/// What goes wrong with the EPROM ends the sequence.
bool ACUSetUp::StoreOrTell(Sequence& sequence, Initialisation& result,
                           const std::function<void()>& save) {
    const bool stored = TryToStore(result, save);
    if (!stored) {
        PutBack(sequence);
        TellOperator(m_Station.World, result.Error + "\r\n\r\n" + sequence.Guard.ChangesText(),
                     MessageIcon::Critical);
    }
    return stored;
}

void ACUSetUp::PutBack(Sequence& sequence) {
    sequence.NotPutBack = !m_Station.Calibration().PutBack(sequence.Guard, sequence.Found);
}

/// A set-up that has come to no table is put back.
void ACUSetUp::SettleSystemRun(Sequence& sequence, const CalibrationOutcome& run, bool isLast) {
    if (run.Saved && !sequence.TableStored)
        sequence.Guard.Settle();
    sequence.TableStored = sequence.TableStored || run.Saved;
    const bool goesOn =
        (run.Ended == End::Passed || run.Ended == End::Failed) && !run.NoFurtherRun && !isLast;
    if (!sequence.TableStored && !goesOn)
        PutBack(sequence);
}

void ACUSetUp::ListAndRunStages(Sequence& sequence, bool velocity, bool pressure,
                                Initialisation& result) {
    std::string question = "Are you sure you want to run:\r\n";
    if (velocity) {
        question += "\r\n  2 x Velocity System Calibrations"
                    "\r\n  2 x Velocity Audit Calibrations (PV16)";
        for (const Stage& stage : VelocityStages)
            m_Stages.Stage_Add(stage.Name);
    }
    if (pressure) {
        question += "\r\n  2 x Pressure System Calibrations";
        for (const char* stage : PressureStages)
            m_Stages.Stage_Add(stage);
    }
    if (velocity)
        question += m_Station.Calibration().FreshHeaderChanges();
    if (m_Station.World.Messages.Ask({question, MessageIcon::Question, MessageButtons::YesNo}) ==
        Answer::Yes)
        RunStages(sequence, velocity, pressure, result);
    else
        NoteCancel(result);
    m_Stages.Close();
}

void ACUSetUp::RunStages(Sequence& sequence, bool velocity, bool pressure, Initialisation& result) {
    if (velocity && StoreOrTell(sequence, result, [&] {
            // A header without the table that is to follow is a mixture.
            sequence.Guard.KeepOpen();
            m_Station.Calibration().SaveFreshHeader(sequence.Guard);
        }))
        RunVelocityStages(sequence, result);
    if (!result.Error.empty())
        return; // told already
    const MessageIcon icon = sequence.NotPutBack ? MessageIcon::Critical : MessageIcon::Information;
    const std::string eprom = "\r\n\r\n" + sequence.Guard.ChangesText();
    if (result.Ended == End::Cancelled) {
        TellOperator(m_Station.World, "ACU Calibration Aborted" + eprom, icon);
        return;
    }
    // The window with the results goes now: a failure must not go with it unseen.
    if (!result.FailedStages.empty())
        TellOperator(m_Station.World, "ACU Calibration Failed\r\n" + result.FailedStages + eprom,
                     icon);
    if (pressure)
        TellOperator(m_Station.World, "Pressure Not Implemented");
}

void ACUSetUp::RunVelocityStages(Sequence& sequence, Initialisation& result) {
    const double run_s = VelocityRunTime_s(m_Station.Calibration().Record());
    const double whole_s = run_s * VelocityStages.size();
    double after_s = whole_s;
    result.Passed = true;
    for (const Stage& stage : VelocityStages) {
        const bool isSystem = stage.Kind == CalibrationKind::System;
        // A table from before is not this initialisation's to audit.
        if (!isSystem && !sequence.TableStored)
            break;
        after_s -= run_s;
        RunContext context{m_Reports, m_Stages, sequence.Running, sequence.Guard,
                           true,      after_s,  whole_s};
        if (!sequence.TableStored)
            context.Found = &sequence.Found;
        if (isSystem)
            context.Settle = [&](const CalibrationOutcome& run) {
                SettleSystemRun(sequence, run, &stage == LastSystemRun);
            };
        const CalibrationOutcome outcome = VelocityRun(context, stage.Kind).Run();
        result.Passed = result.Passed && outcome.Passed;
        result.NothingDriven = result.NothingDriven && outcome.NothingDriven;
        if (!outcome.Passed)
            result.FailedStages += std::string("\r\n  ") + stage.Name;
        result.AllStored = result.AllStored && outcome.AllStored;
        result.Error = outcome.Error;
        result.Files.insert(result.Files.end(), outcome.Files.begin(), outcome.Files.end());
        // A board that is gone is gone for the other runs as well.
        if (outcome.Ended == End::Stopped || outcome.Ended == End::NotStored)
            result.Ended = outcome.Ended;
        else if (outcome.Ended == End::Cancelled || outcome.NoFurtherRun)
            NoteCancel(result);
        if (sequence.NotPutBack && result.Ended == End::Passed)
            result.Ended = End::NotStored;
        if (result.Ended != End::Passed)
            break;
    }
    result.Passed = result.Passed && result.Ended == End::Passed;
}

CalibrationOutcome ACUSetUp::RunVelocity(CalibrationKind kind) {
    return RunAlone(TitleOf(VelocityRunKind(kind)),
                    [kind](const RunContext& context) { return VelocityRun(context, kind).Run(); });
}

CalibrationOutcome ACUSetUp::RunPressure(CalibrationKind kind) {
    return RunAlone(TitleOf(PressureRunKind(kind)),
                    [kind](const RunContext& context) { return PressureRun(context, kind).Run(); });
}

CalibrationOutcome
ACUSetUp::RunAlone(const char* stage,
                   const std::function<CalibrationOutcome(const RunContext&)>& run) {
    ProcedureLog log(m_Station.World, stage);
    EpromGuard guard(m_Station, stage);
    DrivingProcedure running(m_Station, stage, {m_Station.CurrentAIB});
    running.Begin();
    m_Stages.Stage_Add(stage);
    const CalibrationOutcome outcome = run({m_Reports, m_Stages, running, guard});
    // What the operator drives by hand goes on when the opening prompt is declined.
    if (outcome.NothingDriven)
        running.LeaveOutputs();
    m_Stages.Close();
    m_Station.Procedures.TellEnd(outcome, VerdictOf(outcome.Ended));
    log.Ended(VerdictText(outcome) + (outcome.Saved ? ", saved" : "") +
              (outcome.AllStored ? "" : ", not all stored") + ". " + outcome.Eprom);
    return outcome;
}

void ACUSetUp::DeclarePressureSensor(std::int32_t fullScale_mBar) {
    const RunningProcedure running(m_Station.Procedures, "declaration of the pressure sensor");
    ProcedureLog log(m_Station.World, "Declaration of the pressure sensor");
    ACUCalibration& unit = m_Station.Calibration();
    const bool isCalibrated = unit.Record().PressureSystemDate != OleDate();
    const bool isAnother = fullScale_mBar != unit.Record().PressureSensor();
    EpromGuard guard(m_Station, "Pressure Sensor");
    unit.SavePressureSensor(guard, fullScale_mBar);
    log.Ended(SensorText(fullScale_mBar));
    if (isCalibrated && isAnother && fullScale_mBar != 0)
        TellOperator(m_Station.World,
                     "The pressure calibration in the EPROM was made with another sensor.\r\n\r\n"
                     "Please run the pressure system calibration.",
                     MessageIcon::Warning);
}

bool ACUSetUp::ClearPressure(const std::function<void(std::int32_t address)>& progress) {
    const RunningProcedure running(m_Station.Procedures, "clearing of the pressure calibration");
    Platform& world = m_Station.World;
    m_Station.Calibration().RequireRecord();
    Message question{"Are you sure you want to Clear the Pressure Calibration?\r\n\r\nUnit: " +
                         m_Station.Calibration().Unit().SerialNumberStr(),
                     MessageIcon::Question, MessageButtons::YesNo};
    question.DefaultsToRefusal = true;
    if (world.Messages.Ask(question) != Answer::Yes)
        return false;
    ProcedureLog log(world, "Clearing of the pressure calibration");
    EpromWords words;
    for (std::int32_t address = FirstPressureAddress; address <= LastPressureAddress;
         address += EpromWordBytes)
        words.WriteEPROM(address, 0);
    EpromGuard(m_Station, "Clear Pressure").Write(words, [&](std::int32_t address) {
        progress(address);
        world.Events.ProcessPendingEvents();
        return true;
    });
    log.Ended("done");
    TellOperator(m_Station.World, "Pressure Calibration Cleared");
    return true;
}

InformationReport ACUSetUp::CreateACUInfoDoc() {
    const RunningProcedure running(m_Station.Procedures, "ACU information workbook");
    ProcedureLog log(m_Station.World, "ACU information workbook");
    const InformationReport workbook = OutputACUData(m_Reports);
    log.Ended(workbook.WhereItBelongs ? "stored" : "not stored where it belongs");
    return workbook;
}

} // namespace ombrix
