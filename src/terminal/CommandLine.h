#pragma once

#include "terminal/Command.h"

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace ombrix {

/// The command that the command line names, ready to run.
struct ChosenCommand {
    std::string Name;
    std::function<CommandResult(CommandContext& context)> Run;
};

/// Adds the commands and their arguments to a command line; parsing it fills the choice.
void AddCommands(CLI::App& app, ChosenCommand& chosen);

} // namespace ombrix
