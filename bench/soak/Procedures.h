#pragma once

#include "board/procedure/Outcome.h"
#include "soak/SoakStation.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace ombrix::soak {

/// What a procedure said that it came to.
struct Ending : Outcome {
    /// The unit's EPROM is said to hold new values.
    bool Saved = false;
};
inline constexpr std::array<const char*, 5> EndingNames = {"passed", "failed", "cancelled",
                                                           "stopped", "not stored"};

/// When a procedure may change the EPROM.
enum class Writes { Never, WhenSaved, WhenFinished, Always };

struct Procedure {
    const char* Name;
    Ending (*Run)(SoakProgram& program);
    /// Undisturbed.
    double Duration_s;
    Writes WritesEprom = Writes::Never;
    /// Byte addresses that it may change: first and last of each range.
    std::vector<std::pair<std::int32_t, std::int32_t>> Ranges = {};
};

/// The procedures that the soak runs in turn.
const std::vector<Procedure>& Procedures();

} // namespace ombrix::soak
