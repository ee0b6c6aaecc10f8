#pragma once

#include "soak/Procedures.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace ombrix::soak {

/// What is not as it must be, a line each.
using Violations = std::vector<std::string>;

/// How long outputs have been refused without a break while a procedure ran.
class RefusedOutputs {
  public:
    explicit RefusedOutputs(SoakWorld& world);
    RefusedOutputs(const RefusedOutputs&) = delete;
    RefusedOutputs& operator=(const RefusedOutputs&) = delete;
    ~RefusedOutputs();

    /// Nothing may pass or be stored that was measured at outputs which the board has refused.
    void Check(const Ending& ending, Violations& violations) const;

  private:
    SoakWorld& m_World;
    std::map<std::pair<std::string, std::int32_t>, double> m_Since_s;
    double m_Longest_s = 0.0;
};

/// Looks at the bench itself: every output at zero and no flow a few seconds later.
bool OutputsAreSafe(SoakWorld& world);

/// The EPROM is as before, or holds exactly what the procedure says that it has saved; what was
/// written in part has been told.
/// @param before the 2048 bytes @param told every message to the operator
/// @return false when the operator has been told that the EPROM could not be written
bool CheckEprom(SoakProgram& program, const Procedure& procedure, const Ending& ending,
                const std::string& before, const std::string& told, Violations& violations);

/// Memory of this process that is in use, in KiB.
long Memory_KiB();

} // namespace ombrix::soak
