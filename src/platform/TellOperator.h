#pragma once

#include "platform/Platform.h"

#include <string>

namespace ombrix {

/// Shows a message with OK, unless the program is being closed: nobody is there any more to
/// read it then.
inline void TellOperator(Platform& world, const std::string& text,
                         MessageIcon icon = MessageIcon::Information) {
    if (!world.Events.ProgramEnding())
        world.Messages.Ask({text, icon, MessageButtons::Ok});
}

} // namespace ombrix
