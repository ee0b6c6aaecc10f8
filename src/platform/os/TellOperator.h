#pragma once

#include "platform/os/ProgramLog.h"

#include <string>

namespace ombrix {

/// Shows a message with OK, unless the program is being closed: nobody is there any more to
/// read it then, and it stands in the log alone.
inline void TellOperator(Platform& world, const std::string& text,
                         MessageIcon icon = MessageIcon::Information) {
    if (world.Events.ProgramEnding())
        WriteLog(world, "Not shown: " + text);
    else
        world.Messages.Ask({text, icon, MessageButtons::Ok});
}

} // namespace ombrix
