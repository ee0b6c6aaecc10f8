#pragma once

#include "platform/ports/Clock.h"
#include "platform/ports/DocumentOpener.h"
#include "platform/ports/Drive.h"
#include "platform/ports/EventPump.h"
#include "platform/ports/Operator.h"
#include "platform/ports/ProgramEnd.h"

#include <cstdint>
#include <string>

namespace ombrix {

/// Who this program is, for files that others read.
struct ProgramIdentity {
    /// "ombrix" or "ombrixctl".
    std::string Name;
    /// "major.minor.revision"
    std::string Version;
    /// Name of the computer: the bench or station.
    std::string Computer;
    std::int64_t ProcessId = 0;
};

/// Everything that the core asks of the world, chosen once by main and handed down.
struct Platform {
    Clock& Time;
    EventPump& Events;
    Operator& Messages;
    Drive& Files;
    DocumentOpener& Documents;
    ProgramEnd& End;
    ProgramIdentity Program{};
};

} // namespace ombrix
