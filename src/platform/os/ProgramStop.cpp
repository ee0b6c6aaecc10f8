#include "platform/os/ProgramStop.h"

#include <cstdlib>
#include <utility>

namespace ombrix {

namespace {

/// A handler of std::atexit is given nothing, so what it carries out has to be found from outside.
std::function<void()>& ArmedAction() {
    static std::function<void()> action;
    return action;
}

void CarryOut() {
    if (const auto action = std::exchange(ArmedAction(), nullptr))
        action();
}

} // namespace

AtExit::AtExit(std::function<void()> action) {
    // The action is made before the handler is registered, and so is destroyed after it has run.
    ArmedAction() = std::move(action);
    // Registered once; disarmed, it does nothing.
    [[maybe_unused]] static const int registered = std::atexit(CarryOut);
}

AtExit::~AtExit() {
    ArmedAction() = nullptr;
}

} // namespace ombrix
