#include "calibration/run/ACUSetUp.h"

#include "board/eprom/EpromWriter.h"
#include "calibration/judge/RunKind.h"
#include "calibration/report/ACUInformation.h"
#include "calibration/run/GuardedOutcome.h"
#include "calibration/unit/ACUCalibration.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

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
constexpr std::array<const char*, 4> PressureStages = {
    "Pressure System Calibration (1 of 2)", "Pressure System Calibration (2 of 2)",
    "Pressure Audit Calibration (1 of 2)", "Pressure Audit Calibration (2 of 2)"};

std::string EndText(bool passed, bool aborted, const std::string& error) {
    if (!error.empty())
        return "stopped: " + error;
    if (aborted)
        return "cancelled";
    return passed ? "passed" : "not passed";
}

/// Lets the runs switch the air off, as long as the procedure that drives it lasts.
class LentAirOff {
  public:
    LentAirOff(CalibrationServices& services, DrivingProcedure& running) : m_Services(services) {
        m_Services.AirOff = [&running] { running.SwitchOffNow(); };
    }
    ~LentAirOff() {
        m_Services.AirOff = [] {};
    }
    LentAirOff(const LentAirOff&) = delete;
    LentAirOff& operator=(const LentAirOff&) = delete;

  private:
    CalibrationServices& m_Services;
};

} // namespace

clsACUCalibration& ACUSetUp::Record() const {
    return m_Services.TheStation.g_CurrentAIB->Calibration();
}

RunningProcedure ACUSetUp::Begin() const {
    return {m_Services.TheStation.Procedures, [] {}};
}

DrivenBoards ACUSetUp::CurrentBoard() const {
    // The board is held: whatever happens to the selection meanwhile, its air is switched off.
    return {{m_Services.TheStation.g_CurrentAIB}, [this] { m_Services.Sliders.ShowAllOff(); }};
}

bool ACUSetUp::SetAIBSerialNumber(std::int32_t& serial, bool digital, bool analog) {
    const RunningProcedure running = Begin();
    Operator& messages = m_Services.TheStation.World.Messages;
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
    ProcedureLog log(m_Services.TheStation.World, "Writing of the board's identity");
    WriteIdentity(m_Services.TheStation, serial, MFCSetupOf(digital, analog));
    log.Ended("serial number " + std::to_string(serial));
    return true;
}

void ACUSetUp::AskMFCNumber(std::string& mfcNumber) {
    Operator& messages = m_Services.TheStation.World.Messages;
    // A record without a number shows as the letters of "NOT SET".
    while (mfcNumber == MFCNumberPlaceholder || mfcNumber == "NOTSET") {
        mfcNumber =
            messages.AskText("Please enter the MFC Number", MFCNumberPlaceholder, "").value_or("");
        // An unattended station has no other number to give.
        if (messages.Unattended())
            break;
    }
}

ACUSetUp::Initialisation ACUSetUp::RunACUInitialisation(std::string& mfcNumber, bool velocity,
                                                        bool pressure) {
    ProcedureLog log(m_Services.TheStation.World, "Initialisation of the ACU");
    EpromGuard guard(m_Services.TheStation, velocity ? "Velocity Initialisation" : "MFC Number");
    DrivingProcedure running(m_Services.TheStation, "initial calibrations", CurrentBoard());
    running.Begin();
    const LentAirOff airOff(m_Services, running);
    AskMFCNumber(mfcNumber);
    Initialisation result;
    // A prompt that the end of the program has closed was not answered.
    result.Aborted = m_Services.TheStation.World.Events.ProgramEnding();
    if (!result.Aborted && Stores(result, [&] { Record().SaveMFCNumber(guard, mfcNumber); }))
        ListAndRunStages(guard, velocity, pressure, result);
    log.Ended(EndText(result.Passed, result.Aborted, result.Error) +
              (result.AllStored ? "" : ", not all stored"));
    return result;
}

/// What goes wrong with the EPROM ends the sequence.
bool ACUSetUp::Stores(Initialisation& result, const std::function<void()>& save) {
    const bool stored = Stored(result, save);
    if (!stored)
        TellOperator(m_Services.TheStation.World, result.Error, MessageIcon::Critical);
    return stored;
}

void ACUSetUp::ListAndRunStages(EpromGuard& guard, bool velocity, bool pressure,
                                Initialisation& result) {
    std::string question = "Are you sure you want to run:\r\n";
    if (velocity) {
        question += "\r\n  2 x Velocity System Calibrations"
                    "\r\n  2 x Velocity Audit Calibrations (PV16)";
        for (const Stage& stage : VelocityStages)
            m_Services.Stages.Stage_Add(stage.Name);
    }
    if (pressure) {
        question += "\r\n  2 x Pressure System Calibrations";
        for (const char* stage : PressureStages)
            m_Services.Stages.Stage_Add(stage);
    }
    if (m_Services.TheStation.World.Messages.Ask(
            {question, MessageIcon::Question, MessageButtons::YesNo}) == Answer::Yes)
        RunStages(guard, velocity, pressure, result);
    else
        result.Aborted = true;
    m_Services.Stages.Close();
}

void ACUSetUp::RunStages(EpromGuard& guard, bool velocity, bool pressure, Initialisation& result) {
    if (velocity && Stores(result, [&] { Record().SaveFreshHeader(guard); }))
        RunVelocityStages(guard, result);
    if (!result.Error.empty())
        return; // told already
    if (result.Aborted) {
        TellOperator(m_Services.TheStation.World, "ACU Calibration Aborted");
        return;
    }
    // The window with the results goes now: a failure must not go with it unseen.
    if (!result.FailedStages.empty())
        TellOperator(m_Services.TheStation.World,
                     "ACU Calibration Failed\r\n" + result.FailedStages);
    if (pressure)
        TellOperator(m_Services.TheStation.World, "Pressure Not Implemented");
}

void ACUSetUp::RunVelocityStages(EpromGuard& guard, Initialisation& result) {
    result.Passed = true;
    for (const Stage& stage : VelocityStages) {
        CalibrationOutcome outcome =
            Record().CalibrateACUAirVelocity(m_Services, guard, stage.Kind, true);
        result.Passed = result.Passed && outcome.Passed;
        if (!outcome.Passed)
            result.FailedStages += std::string("\r\n  ") + stage.Name;
        result.Aborted = outcome.Aborted || outcome.NoFurtherRun;
        result.AllStored = result.AllStored && outcome.AllStored;
        result.NotInEprom = outcome.NotInEprom;
        result.Error = outcome.Error;
        result.Files.insert(result.Files.end(), outcome.Files.begin(), outcome.Files.end());
        // A board that is gone is gone for the other runs as well.
        if (result.Aborted || !result.Error.empty())
            break;
    }
    result.Passed = result.Passed && !result.Aborted && result.Error.empty();
}

CalibrationOutcome ACUSetUp::RunVelocity(CalibrationKind kind) {
    return RunAlone(TitleOf(VelocityRunKind(kind)), [&](EpromGuard& guard) {
        return Record().CalibrateACUAirVelocity(m_Services, guard, kind, false);
    });
}

CalibrationOutcome ACUSetUp::RunPressure(CalibrationKind kind) {
    return RunAlone(TitleOf(PressureRunKind(kind)), [&](EpromGuard& guard) {
        return Record().CalibrateACUPressure(m_Services, guard, kind, false);
    });
}

CalibrationOutcome ACUSetUp::RunAlone(const char* stage,
                                      const std::function<CalibrationOutcome(EpromGuard&)>& run) {
    ProcedureLog log(m_Services.TheStation.World, stage);
    EpromGuard guard(m_Services.TheStation, stage);
    DrivingProcedure running(m_Services.TheStation, stage, CurrentBoard());
    running.Begin();
    const LentAirOff airOff(m_Services, running);
    m_Services.Stages.Stage_Add(stage);
    CalibrationOutcome outcome = run(guard);
    // What the operator drives by hand goes on when the opening prompt is declined.
    if (outcome.NothingDriven)
        running.LeaveOutputs();
    m_Services.Stages.Close();
    log.Ended(EndText(outcome.Passed, outcome.Aborted, outcome.Error) +
              (outcome.Saved ? ", saved" : "") + (outcome.AllStored ? "" : ", not all stored"));
    return outcome;
}

bool ACUSetUp::ClearPressure(const std::function<void(std::int32_t address)>& progress) {
    const RunningProcedure running = Begin();
    Platform& world = m_Services.TheStation.World;
    if (world.Messages.Ask({"Are you sure you want to Clear the Pressure Calibration?",
                            MessageIcon::Question, MessageButtons::YesNo}) != Answer::Yes)
        return false;
    ProcedureLog log(world, "Clearing of the pressure calibration");
    EpromGuard(m_Services.TheStation, "Clear Pressure").Write([&] {
        for (std::int32_t address = FirstPressureAddress; address <= LastPressureAddress;
             address += 4) {
            m_Services.TheStation.g_CurrentAIB->WriteEPROM(address, 0);
            progress(address);
            world.Events.ProcessPendingEvents();
        }
    });
    log.Ended("done");
    TellOperator(m_Services.TheStation.World, "Pressure Calibration Cleared");
    return true;
}

WorkbookOutcome ACUSetUp::CreateACUInfoDoc() {
    const RunningProcedure running = Begin();
    ProcedureLog log(m_Services.TheStation.World, "ACU information workbook");
    const WorkbookOutcome workbook = OutputACUData(m_Services, *m_Services.TheStation.g_CurrentAIB);
    log.Ended(workbook.WhereItBelongs ? "stored" : "not stored where it belongs");
    return workbook;
}

} // namespace ombrix
