#include "soak/Soak.h"

#include "soak/FileWatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>

namespace ombrix::soak {

namespace {

constexpr double Hour_s = 3600.0;
constexpr std::array<const char*, 3> Benches = {"acu", "fresh", "plain"};

bool ToldOfAir(const std::string& messages) {
    return messages.find("AIR MAY STILL BE FLOWING") != std::string::npos;
}

/// A third of a soak: one bench from its first detection on.
class BenchSoak {
  public:
    BenchSoak(const SoakPlan& plan, std::size_t bench, SoakResult& result, SoakTable& table)
        : m_Plan(plan), m_Bench(Benches.at(bench)), m_Result(result), m_Table(table),
          m_Random(plan.Seed * Benches.size() + bench),
          m_World(m_Bench, plan.Seed, m_Folder.Path()), m_Files(m_Folder.Path()) {
        Restart();
    }

    void Run(double duration_s) {
        RunUntil(m_World.Now_s() + duration_s / 4.0);
        const long warm_KiB = Memory_KiB();
        RunUntil(m_World.Now_s() + duration_s * 3.0 / 4.0);
        m_Result.Memory_KiB = Memory_KiB();
        const long grown_KiB = m_Result.Memory_KiB - warm_KiB;
        m_Result.MemoryGrown_KiB = std::max(m_Result.MemoryGrown_KiB, grown_KiB);
        if (grown_KiB > MemoryGrowthLimit_KiB)
            m_Result.Found.push_back(fmt::format("seed {}, bench {}: memory has grown by {} KiB",
                                                 m_Plan.Seed, m_Bench, grown_KiB));
        m_Result.Simulated_h += m_World.Now_s() / Hour_s;
        m_Result.Files += m_Files.Looked();
    }

  private:
    void Restart() {
        m_Program.reset(); // one program at a time has the board
        m_Program = std::make_unique<SoakProgram>(m_World);
        m_Program->Detect();
    }
    void RunUntil(double end_s) {
        while (m_World.Now_s() < end_s)
            RunOne(Procedures().at(m_Turn++ % Procedures().size()));
    }
    std::size_t ChooseFault() {
        return m_Plan.OnlyFault ? *m_Plan.OnlyFault : m_Random.Below(AllFaults().size());
    }

    /// What a procedure lets out is told by whoever has started it.
    Ending Attempt(const Procedure& procedure) {
        try {
            return procedure.Run(*m_Program);
        } catch (const std::exception& error) {
            return {{End::Stopped, error.what(), {}}, false};
        }
    }

    void RunOne(const Procedure& procedure) {
        const std::size_t faultIndex = ChooseFault();
        const Fault& fault = AllFaults().at(faultIndex);
        const auto phase = static_cast<Phase>(m_Random.Below(PhaseNames.size()));
        const std::string before = m_World.Board().Eprom().Image();
        m_Program->Answers.TakeMessages();
        Tally tally;
        Ending ending;
        Violations violations;
        bool safe = false;
        {
            Disturbance disturbance(*m_Program, procedure, fault, phase, m_Random);
            const RefusedOutputs refused(m_World);
            ending = Attempt(procedure);
            refused.Check(ending, violations);
            safe = OutputsAreSafe(m_World);
            tally.TooLate = disturbance.Came() ? 0 : 1;
            if (disturbance.Endless())
                violations.emplace_back("it does not come to an end");
        }
        const std::string told = m_Program->Answers.TakeMessages();
        m_Program->Documents.Opened.clear();
        if (!safe && !ToldOfAir(told))
            violations.emplace_back("air has been left flowing, and nobody has been told");
        if (HasMark() != ToldOfAir(told))
            violations.emplace_back(HasMark() ? "a mark is left, and nobody has been told"
                                              : "no mark is left for the next start");
        const bool written = CheckEprom(*m_Program, procedure, ending, before, told, violations);
        m_Files.Check(fault.What == Fault::Act::DiskFull, violations);
        if (m_Program->TheStation.Procedures.Running())
            violations.emplace_back("the commands have not been given back");
        GoOn(fault, safe, tally, violations);
        if (!written || !violations.empty())
            Restore(before, tally);
        tally.Tried = 1;
        tally.Endings.at(static_cast<std::size_t>(ending.Ended)) = 1;
        Note(procedure, faultIndex, phase, tally, ending, violations);
    }

    bool HasMark() const {
        const std::vector<std::string> files = m_World.Folder.FilesIn(R"(C:\Claims)");
        return std::any_of(files.begin(), files.end(),
                           [](const std::string& name) { return name.ends_with(".running"); });
    }

    /// As the operator would: a program that has ended is started again, lost boards are
    /// detected again.
    void GoOn(const Fault& fault, bool safe, Tally& tally, Violations& violations) {
        if (m_Program->Events.ProgramEnding())
            Restart();
        else if (fault.LosesBoard || !safe)
            m_Program->Detect();
        if (!OutputsAreSafe(m_World)) {
            violations.emplace_back("air flows on after the boards have been detected again");
            SwitchOffByHand(); // the next procedure is not to be blamed for it
        } else if (!safe)
            tally.AirRecovered = 1;
    }

    /// An EPROM that was written in part is put back.
    void Restore(const std::string& before, Tally& tally) {
        SimulatedEPROM& eprom = m_World.Board().Eprom();
        tally.EpromInPart = eprom.Image() != before ? 1 : 0;
        eprom.Load(before);
        m_Program->Detect();
    }

    void SwitchOffByHand() {
        for (std::int32_t channel = 0; channel < SimulatedBoard::AnalogChannels; ++channel)
            m_World.Board().SetDAC(channel, 0, m_World.Now_s());
        for (std::int32_t channel = 0; channel < SimulatedBoard::AirChannels; ++channel)
            m_World.Board().SetFlowSetPoint(channel, 0, m_World.Now_s());
    }

    void Note(const Procedure& procedure, std::size_t fault, Phase phase, const Tally& tally,
              const Ending& ending, const Violations& violations) {
        ++m_Result.Procedures;
        ++m_Table.FaultPhases[{fault, phase}];
        const auto index = static_cast<std::size_t>(&procedure - Procedures().data());
        for (Tally* sum : {&m_Table.FaultTallies[fault], &m_Table.ProcedureTallies[index]}) {
            sum->Tried += tally.Tried;
            sum->TooLate += tally.TooLate;
            sum->AirRecovered += tally.AirRecovered;
            sum->EpromInPart += tally.EpromInPart;
            for (std::size_t i = 0; i < tally.Endings.size(); ++i)
                sum->Endings.at(i) += tally.Endings.at(i);
        }
        const std::string where = fmt::format(
            "seed {}, hour {:.2f} of bench {}, {}, fault \"{}\", phase {}: ", m_Plan.Seed,
            m_World.Now_s() / Hour_s, m_Bench, procedure.Name, AllFaults().at(fault).Name,
            PhaseNames.at(static_cast<std::size_t>(phase)));
        for (const std::string& violation : violations)
            m_Result.Found.push_back(where + violation);
        if (m_Plan.Verbose)
            fmt::print(stderr, "{}{}, {}\n", where,
                       EndingNames.at(static_cast<std::size_t>(ending.Ended)), ending.Error);
    }

    const SoakPlan& m_Plan;
    std::string m_Bench;
    SoakResult& m_Result;
    SoakTable& m_Table;
    Random m_Random;
    TemporaryFolder m_Folder;
    SoakWorld m_World;
    FileWatch m_Files;
    std::unique_ptr<SoakProgram> m_Program;
    std::size_t m_Turn = 0;
};

} // namespace

SoakResult RunSoak(const SoakPlan& plan, SoakTable& table) {
    SoakResult result;
    const double share_s = plan.Hours * Hour_s / static_cast<double>(Benches.size());
    for (std::size_t bench = 0; bench < Benches.size(); ++bench)
        BenchSoak(plan, bench, result, table).Run(share_s);
    return result;
}

} // namespace ombrix::soak
