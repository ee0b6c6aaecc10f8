#include "calibration/ACUSetUp.h"

#include "calibration/ACUInformation.h"
#include "calibration/clsACUCalibration.h"
#include "platform/Rounding.h"
#include "platform/TellOperator.h"
#include "support/Text.h"

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

std::int32_t HardwareCode(bool digital, bool analog) {
    constexpr std::int32_t analogOnly = 0;
    constexpr std::int32_t both = 1;
    constexpr std::int32_t digitalOnly = 2;
    if (!digital)
        return analogOnly;
    return analog ? both : digitalOnly;
}

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
    m_Services.TheStation.g_CurrentAIB->WriteAIBInfo(0, HardwareCode(digital, analog), serial);
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
    // A prompt that the end of the program has closed was not answered.
    if (!m_Services.TheStation.World.Events.ProgramEnding())
        Record().WriteEPROM_MFCNumber(mfcNumber);
}

ACUSetUp::Initialisation ACUSetUp::RunACUInitialisation(std::string& mfcNumber, bool velocity,
                                                        bool pressure) {
    DrivingProcedure running(m_Services.TheStation, "initial calibrations", CurrentBoard());
    running.Begin();
    AskMFCNumber(mfcNumber);
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
    Initialisation result;
    if (m_Services.TheStation.World.Messages.Ask(
            {question, MessageIcon::Question, MessageButtons::YesNo}) == Answer::Yes)
        RunStages(velocity, pressure, result);
    else
        result.Aborted = true;
    m_Services.Stages.Close();
    return result;
}

void ACUSetUp::RunStages(bool velocity, bool pressure, Initialisation& result) {
    if (velocity) {
        Record().Init_VelocityHeader();
        RunVelocityStages(result);
    }
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

void ACUSetUp::RunVelocityStages(Initialisation& result) {
    result.Passed = true;
    for (const Stage& stage : VelocityStages) {
        CalibrationOutcome outcome = Record().CalibrateACUAirVelocity(m_Services, stage.Kind, true);
        result.Passed = result.Passed && outcome.Passed;
        if (!outcome.Passed)
            result.FailedStages += std::string("\r\n  ") + stage.Name;
        result.Aborted = outcome.Aborted || outcome.NoFurtherRun;
        result.AllStored = result.AllStored && outcome.AllStored;
        result.Error = outcome.Error;
        result.Files.insert(result.Files.end(), outcome.Files.begin(), outcome.Files.end());
        // A board that is gone is gone for the other runs as well.
        if (result.Aborted || !result.Error.empty())
            break;
    }
    result.Passed = result.Passed && !result.Aborted;
}

CalibrationOutcome ACUSetUp::RunVelocity(CalibrationKind kind) {
    return RunAlone(kind == CalibrationKind::Audit ? "Velocity Audit Calibration"
                                                   : "Velocity System Calibration",
                    [&] { return Record().CalibrateACUAirVelocity(m_Services, kind, false); });
}

CalibrationOutcome ACUSetUp::RunPressure(CalibrationKind kind) {
    return RunAlone(kind == CalibrationKind::Audit ? "Pressure Audit Calibration"
                                                   : "Pressure System Calibration",
                    [&] { return Record().CalibrateACUPressure(m_Services, kind, false); });
}

CalibrationOutcome ACUSetUp::RunAlone(const char* stage,
                                      const std::function<CalibrationOutcome()>& run) {
    DrivingProcedure running(m_Services.TheStation, stage, CurrentBoard());
    running.Begin();
    m_Services.Stages.Stage_Add(stage);
    CalibrationOutcome outcome = run();
    // What the operator drives by hand goes on when the opening prompt is declined.
    if (outcome.NothingDriven)
        running.LeaveOutputs();
    m_Services.Stages.Close();
    return outcome;
}

bool ACUSetUp::ClearPressure(const std::function<void(std::int32_t address)>& progress) {
    const RunningProcedure running = Begin();
    Platform& world = m_Services.TheStation.World;
    if (world.Messages.Ask({"Are you sure you want to Clear the Pressure Calibration?",
                            MessageIcon::Question, MessageButtons::YesNo}) != Answer::Yes)
        return false;
    for (std::int32_t address = FirstPressureAddress; address <= LastPressureAddress;
         address += 4) {
        m_Services.TheStation.g_CurrentAIB->WriteEPROM(address, 0);
        progress(address);
        world.Events.ProcessPendingEvents();
    }
    TellOperator(m_Services.TheStation.World, "Pressure Calibration Cleared");
    return true;
}

WorkbookOutcome ACUSetUp::CreateACUInfoDoc() {
    const RunningProcedure running = Begin();
    return OutputACUData(m_Services, *m_Services.TheStation.g_CurrentAIB);
}

} // namespace ombrix
