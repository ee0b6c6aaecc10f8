#include "soak/Disturbance.h"

#include <stdexcept>

namespace ombrix::soak {

namespace {

/// Shares of a procedure's duration.
constexpr std::array<std::pair<double, double>, 4> PhaseShares = {
    {{0.0, 0.02}, {0.02, 0.33}, {0.33, 0.66}, {0.66, 0.99}}};
/// A system run writes some 140 words.
constexpr std::size_t MostStorings = 60;

} // namespace

const std::vector<Fault>& AllFaults() {
    using Act = Fault::Act;
    using Lasts = Fault::Lasts;
    static const std::vector<Fault> faults = {
        {"none", Act::None},
        {"status:32 for a moment", Act::Bench, "status:32", Lasts::Passing, true},
        {"status:32", Act::Bench, "status:32", Lasts::Lasting, true},
        {"status:32@GetADC", Act::Bench, "status:32@GetADC"},
        {"status:32@MFCGetFlowrate", Act::Bench, "status:32@MFCGetFlowrate"},
        {"status:32@SetDAC", Act::Bench, "status:32@SetDAC", Lasts::Lasting, true},
        {"status:32@SetDAC for a moment", Act::Bench, "status:32@SetDAC", Lasts::Passing, true},
        {"status:32@MFCSetFlowrate", Act::Bench, "status:32@MFCSetFlowrate", Lasts::Lasting, true},
        {"status:32@ReadReg", Act::Bench, "status:32@ReadReg"},
        {"status:32@WriteEEPROM", Act::Bench, "status:32@WriteEEPROM"},
        {"status:32@ReadEEPROM", Act::Bench, "status:32@ReadEEPROM"},
        {"eprom-readonly", Act::Bench, "eprom-readonly"},
        {"eprom-flip", Act::Bench, "eprom-flip"},
        {"unplug and replug", Act::Bench, "unplug@0", Lasts::Passing, true},
        {"unplug", Act::Bench, "unplug@0", Lasts::Lasting, true},
        {"no-air", Act::Bench, "no-air"},
        {"pressure-frozen", Act::Bench, "pressure-frozen"},
        {"hysteresis:0,900", Act::Bench, "hysteresis:0,900"},
        {"gain:1,4", Act::Bench, "gain:1,4"},
        {"not-ready:0", Act::Bench, "not-ready:0"},
        {"full disk", Act::DiskFull},
        {"full disk for a moment", Act::DiskFull, "", Lasts::Passing},
        {"cancel", Act::Cancel},
        {"program end", Act::ProgramEnd},
        {"exception from the board", Act::Exception},
    };
    return faults;
}

Disturbance::Disturbance(SoakProgram& program, const Procedure& procedure, const Fault& fault,
                         Phase phase, Random& random)
    : m_Program(program), m_Fault(fault), m_PassesAfter_s(random.Between(0.1, 0.9)) {
    SoakWorld& world = program.World;
    if (phase == Phase::Storing) {
        m_StoringsLeft = 1 + random.Below(MostStorings);
        world.Files.BeforeStoring = [this] { Stored(); };
    } else {
        const auto& [first, last] = PhaseShares.at(static_cast<std::size_t>(phase));
        program.Events.At(world.Now_s() + procedure.Duration_s * random.Between(first, last),
                          [this] { Begin(); });
    }
    constexpr double patience = 3.0;
    program.Events.NotAfter(world.Now_s() + procedure.Duration_s * patience, [this] {
        m_Endless = true;
        m_Program.TheStation.Procedures.Cancel();
    });
    world.Library.BeforeCall = [this](std::string_view operation) {
        if (operation == "WriteEEPROM")
            Stored();
        if (std::exchange(m_Throw, false))
            throw std::runtime_error("The board library has failed.");
    };
}

Disturbance::~Disturbance() {
    m_Program.Events.Forget();
    m_Program.World.Library.BeforeCall = nullptr;
    m_Program.World.Files.BeforeStoring = nullptr;
    End();
}

void Disturbance::Stored() {
    if (m_StoringsLeft > 0 && --m_StoringsLeft == 0)
        Begin();
}

void Disturbance::Begin() {
    m_Came = true;
    Act();
    if (m_Fault.HowLong == Fault::Lasts::Passing)
        m_Program.Events.At(m_Program.World.Now_s() + m_PassesAfter_s, [this] { End(); });
}

void Disturbance::Act() {
    switch (m_Fault.What) {
    case Fault::Act::None: break;
    case Fault::Act::Bench:
        m_Program.World.Bench.SetFaults(Faults::Parse({&m_Fault.BenchFault, 1}));
        break;
    case Fault::Act::DiskFull: m_Program.World.Files.Full = true; break;
    case Fault::Act::Cancel: m_Program.TheStation.Procedures.Cancel(); break;
    case Fault::Act::ProgramEnd: m_Program.Events.EndProgram(); break;
    case Fault::Act::Exception: m_Throw = true; break;
    }
}

void Disturbance::End() {
    m_Program.World.Bench.SetFaults({});
    m_Program.World.Files.Full = false;
}

} // namespace ombrix::soak
