#pragma once

#include "platform/Clock.h"
#include "platform/DocumentOpener.h"
#include "platform/Drive.h"
#include "platform/EventPump.h"
#include "platform/Operator.h"
#include "platform/ProgramEnd.h"

namespace ombrix {

/// Everything that the core asks of the world, chosen once by main and handed down.
struct Platform {
    Clock& Time;
    EventPump& Events;
    Operator& Messages;
    Drive& Files;
    DocumentOpener& Documents;
    ProgramEnd& End;
};

} // namespace ombrix
