#include "soak/Checks.h"

#include "board/eprom/EpromGuard.h"
#include "platform/text/Paths.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <fstream>
#include <malloc.h>
#include <unistd.h>

namespace ombrix::soak {

namespace {

std::vector<std::int32_t> ChangedAddresses(const std::string& before, const std::string& after) {
    const EpromImage former = EpromImage::FromBytes(before);
    const EpromImage present = EpromImage::FromBytes(after);
    std::vector<std::int32_t> changed;
    for (std::int32_t address = 0; address < EpromBytes; address += EpromWordBytes)
        if (former.Word(address) != present.Word(address))
            changed.push_back(address);
    return changed;
}

bool MayChange(const Procedure& procedure, std::int32_t address) {
    return std::any_of(procedure.Ranges.begin(), procedure.Ranges.end(), [&](const auto& range) {
        return address >= range.first && address <= range.second;
    });
}

bool SaysThatItWrote(const Procedure& procedure, const Ending& ending) {
    switch (procedure.WritesEprom) {
    case Writes::Never: return false;
    case Writes::WhenSaved: return ending.Saved;
    case Writes::WhenFinished:
        return ending.Ended == End::Passed || ending.Ended == End::Failed ||
               ending.Ended == End::NotStored;
    case Writes::Always: return true;
    }
    return false;
}

/// Whether the content is among the saved ones.
bool IsSaved(const Drive& files, const std::string& content) {
    const std::vector<std::string> names = files.FilesIn(Paths::Backups);
    return std::any_of(names.rbegin(), names.rend(), [&](const auto& name) {
        return files.ReadFile(Paths::Backups + name) == content;
    });
}

constexpr const char* AsItWas = "The EPROM is as it was.";

/// What of a record is stored in the EPROM.
auto Stored(const ACURecord& record) {
    return std::tuple(
        record.DataVersion, record.ChannelCapacity, record.CalibrationPoints,
        record.HasSolenoidValves, record.VelocityCal[0].M, record.VelocityCal[0].C,
        record.VelocityCal[1].M, record.VelocityCal[1].C, record.VelocityCal[0].Demand,
        record.VelocitySystemDate, record.VelocityAuditDate, record.VelocitySystemPassed,
        record.VelocityAuditPassed, record.MFCNumber,
        std::bit_cast<std::int32_t>(record.MaxPressure), record.PressureSystemDate,
        record.PressureAuditDate, record.PressureSystemPassed, record.PressureAuditPassed);
}

/// What was told without the sentences that every calibration tells of the EPROM.
std::string WithoutUsualSentences(std::string told) {
    for (const char* sentence : {AsItWas, "Changed in the EPROM", "This changes in the EPROM"})
        told = ReplaceAll(told, sentence, "");
    return told;
}

} // namespace

RefusedOutputs::RefusedOutputs(SoakWorld& world) : m_World(world) {
    world.Library.AfterOutput = [this](std::string_view operation, std::int32_t number,
                                       AIBStatus status) {
        const std::pair output(std::string(operation), number);
        if (status == Status::NoError) {
            m_Since_s.erase(output);
            return;
        }
        const double now_s = m_World.Now_s();
        const double since_s = m_Since_s.try_emplace(output, now_s).first->second;
        m_Longest_s = std::max(m_Longest_s, now_s - since_s);
    };
}

RefusedOutputs::~RefusedOutputs() {
    m_World.Library.AfterOutput = nullptr;
}

void RefusedOutputs::Check(const Ending& ending, Violations& violations) const {
    constexpr double patience_s = 1.5;
    if (m_Longest_s > patience_s && (ending.Ended == End::Passed || ending.Saved))
        violations.push_back(fmt::format(
            "an output was refused for {:.1f} s, and it has passed or stored", m_Longest_s));
}

bool OutputsAreSafe(SoakWorld& world) {
    constexpr double settled_s = 5.0;
    constexpr std::int32_t noFlow_bits = 40;
    world.Time.Advance(settled_s);
    SimulatedBoard& board = world.Board();
    for (std::int32_t channel = 0; channel < SimulatedBoard::AnalogChannels; ++channel)
        if (board.DAC(channel) != 0)
            return false;
    if (board.FlowSetPoint(0) != 0 || board.FlowSetPoint(1) != 0)
        return false;
    return board.FlowReading(0, world.Now_s()) + board.FlowReading(1, world.Now_s()) < noFlow_bits;
}

bool CheckEprom(SoakProgram& program, const Procedure& procedure, const Ending& ending,
                const std::string& before, const std::string& told, Violations& violations) {
    const std::string after = program.World.Board().Eprom().Image();
    const std::vector<std::int32_t> changed = ChangedAddresses(before, after);
    const bool toldOfEprom = WithoutUsualSentences(told).find("EPROM") != std::string::npos ||
                             ending.Error.find("EPROM") != std::string::npos;
    if (!changed.empty() && told.find(AsItWas) != std::string::npos)
        violations.push_back(fmt::format(
            "EPROM word {} has changed, and it is said to be as it was", changed.front()));
    for (const std::int32_t address : changed)
        if (!MayChange(procedure, address))
            violations.push_back(fmt::format("EPROM word {} is none of its business", address));
    if (!changed.empty() && !IsSaved(program.World.Folder, before))
        violations.emplace_back("the EPROM has changed without having been saved first");
    const bool says = SaysThatItWrote(procedure, ending);
    if (!changed.empty() && !says && !toldOfEprom)
        violations.push_back(fmt::format("{} EPROM words have changed, the first at {}, and "
                                         "nobody has been told",
                                         changed.size(), changed.front()));
    if (toldOfEprom || (changed.empty() && !says))
        return !toldOfEprom;
    const ACURecord& record = program.TheStation.Calibration().Record();
    if (!record.ACUInitialised)
        return true; // a unit that has never been calibrated
    // Whoever reads the unit now finds what the program takes for its record.
    ACUCalibration fresh(program.Ports, program.TheStation.Claims, program.Board());
    fresh.ReadEPROMValues();
    if (!fresh.Record().ACUInitialised)
        violations.emplace_back("the record in the EPROM cannot be read");
    else if (Stored(fresh.Record()) != Stored(record))
        violations.emplace_back("the EPROM does not hold the program's record");
    return true;
}

long Memory_KiB() {
    ::malloc_trim(0); // what the allocator only keeps is no growth
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

} // namespace ombrix::soak
