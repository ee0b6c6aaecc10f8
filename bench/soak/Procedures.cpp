#include "soak/Procedures.h"

#include "benchtests/DataRecorder.h"
#include "benchtests/DigitalMFCTest.h"
#include "benchtests/OutputSweep.h"
#include "board/eprom/EpromFields.h"
#include "healthcheck/HealthCheckRun.h"

#include <array>

namespace ombrix::soak {

namespace {

namespace Map = ACUMemoryMap;

/// A calibration that has passed, and whose logs and reports do not lie where they belong, counts
/// as not stored.
Ending EndingOf(const CalibrationOutcome& outcome) {
    Ending ending{outcome, outcome.Saved};
    if (outcome.Ended == End::Passed && !outcome.AllStored)
        ending.Ended = End::NotStored;
    return ending;
}

/// The commands that prepare the unit, with views that nobody looks at.
struct SetUp {
    RecordedStages Stages;
    RecordedWait Wait;
    ACUSetUp Commands;

    explicit SetUp(SoakProgram& program) : Commands(program.Reports(Wait), Stages) {}
};

Ending VelocityInit(SoakProgram& program) {
    std::string number = "M9200999X";
    const auto outcome = SetUp(program).Commands.RunACUInitialisation(number, true, false);
    Ending ending = EndingOf(outcome);
    ending.Saved = ending.Ended == End::Passed;
    return ending;
}

template <CalibrationKind Kind>
Ending Velocity(SoakProgram& program) {
    return EndingOf(SetUp(program).Commands.RunVelocity(Kind));
}

template <CalibrationKind Kind>
Ending Pressure(SoakProgram& program) {
    return EndingOf(SetUp(program).Commands.RunPressure(Kind));
}

Ending HealthCheck(SoakProgram& program) {
    RecordedWait wait;
    constexpr std::array options = {HealthCheckOption::Short, HealthCheckOption::LowCh2};
    return {HealthCheckRun(program.Reports(wait)).Run(options, {})};
}

Ending Recording(SoakProgram& program) {
    constexpr double duration_s = 600.0;
    return {TimedRecording(program.TheStation).Run(duration_s, [](double) {})};
}

Ending Sweep(SoakProgram& program) {
    return {OutputSweep(program.TheStation).Run(SweepPlan::Stepped(5000, 4000, true), {})};
}

Ending DigitalMFCs(SoakProgram& program) {
    return {DigitalMFCTest(program.TheStation).Run({})};
}

using Range = std::pair<std::int32_t, std::int32_t>;
constexpr Range Header = {Map::DataVersion_FireWire, Map::DigitalPressureConfig};
constexpr Range VelocityTables = {Map::VelocityCal,
                                  Map::VelocityCal + 2 * Map::VelocityCalBytes - 4};
constexpr Range VelocitySystemBlock = {Map::VelocitySystemDate, Map::VelocitySystemDate + 4};
constexpr Range VelocitySystemPassed = {Map::VelocitySystemPassed, Map::VelocitySystemPassed};
constexpr Range VelocitySystemUser = {Map::VelocitySystemUser, Map::VelocityAuditUser - 4};
constexpr Range VelocityAuditBlock = {Map::VelocityAuditDate, Map::VelocityAuditDate + 4};
constexpr Range VelocityAuditPassed = {Map::VelocityAuditPassed, Map::VelocityAuditPassed};
constexpr Range VelocityAuditUser = {Map::VelocityAuditUser,
                                     Map::VelocityAuditUser + Map::UserLength - 4};
constexpr Range MFCNumber = {Map::MFCNumber, Map::MFCNumber + Map::MFCNumberLength - 4};
constexpr Range PressureBlock = {Map::PressurePresent, Map::PressureCoeff + 8};

} // namespace

const std::vector<Procedure>& Procedures() {
    static const std::vector<Range> velocity = {VelocityTables, VelocitySystemBlock,
                                                VelocitySystemPassed, VelocitySystemUser};
    static const std::vector<Range> audit = {VelocityAuditBlock, VelocityAuditPassed,
                                             VelocityAuditUser};
    static const std::vector<Procedure> procedures = {
        {"velocity-init",
         VelocityInit,
         2800.0,
         Writes::Always,
         {Header,
          VelocityTables,
          {Map::VelocitySystemDate, Map::VelocityAuditUser + 28},
          MFCNumber}},
        {"recording", Recording, 600.0},
        {"health check", HealthCheck, 234.0},
        {"velocity-system", Velocity<CalibrationKind::System>, 700.0, Writes::WhenSaved, velocity},
        {"velocity-audit", Velocity<CalibrationKind::Audit>, 700.0, Writes::WhenFinished, audit},
        {"air sweep", Sweep, 112.0},
        {"pressure-system",
         Pressure<CalibrationKind::System>,
         108.0,
         Writes::WhenSaved,
         {PressureBlock}},
        {"pressure-audit",
         Pressure<CalibrationKind::Audit>,
         108.0,
         Writes::WhenFinished,
         {PressureBlock}},
        {"digital MFCs", DigitalMFCs, 336.0},
    };
    return procedures;
}

} // namespace ombrix::soak
