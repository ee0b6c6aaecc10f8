#pragma once

#include "soak/Procedures.h"
#include "soak/Random.h"

#include <array>
#include <string>
#include <vector>

namespace ombrix::soak {

/// When in a procedure something goes wrong. Storing: with an EPROM word or a whole file.
enum class Phase { Start, Early, Middle, Late, Storing };
inline constexpr std::array<const char*, 5> PhaseNames = {"start", "early", "middle", "late",
                                                          "storing"};

/// One thing that goes wrong.
struct Fault {
    enum class Act { None, Bench, DiskFull, Cancel, ProgramEnd, Exception };
    /// Passing: over in less than a second. Lasting: until the procedure has ended.
    enum class Lasts { Passing, Lasting };

    const char* Name;
    Act What = Act::Bench;
    /// Of the simulated bench.
    std::string BenchFault = {};
    Lasts HowLong = Lasts::Lasting;
    /// The board may be unable to switch off its air, or to tell what it holds.
    bool LosesBoard = false;
};

const std::vector<Fault>& AllFaults();

/// A fault that comes at a moment of a procedure. Lives as long as the procedure runs; then all
/// is mended.
class Disturbance {
  public:
    Disturbance(SoakProgram& program, const Procedure& procedure, const Fault& fault, Phase phase,
                Random& random);
    Disturbance(const Disturbance&) = delete;
    Disturbance& operator=(const Disturbance&) = delete;
    ~Disturbance();

    /// The procedure went on until then.
    bool Came() const { return m_Came; }
    /// The procedure did not come to its end and had to be cancelled.
    bool Endless() const { return m_Endless; }

  private:
    void Begin();
    void End();
    void Act();
    /// Counts what is stored down to the moment of the fault.
    void Stored();

    SoakProgram& m_Program;
    const Fault& m_Fault;
    double m_PassesAfter_s;
    std::size_t m_StoringsLeft = 0;
    bool m_Came = false;
    bool m_Endless = false;
    bool m_Throw = false;
};

} // namespace ombrix::soak
