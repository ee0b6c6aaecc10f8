#include "platform/os/ProgramStop.h"

#include <cstdlib>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>

namespace ombrix {

StopSignals::StopSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals, &m_MaskBefore);
    struct sigaction ignored {};
    ignored.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &ignored, &m_PipeBefore);
    m_Signals = FileDescriptor(::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
}

StopSignals::~StopSignals() {
    ::sigaction(SIGPIPE, &m_PipeBefore, nullptr);
    ::pthread_sigmask(SIG_SETMASK, &m_MaskBefore, nullptr);
}

bool StopSignals::Take() {
    signalfd_siginfo info{};
    return ::read(m_Signals.Get(), &info, sizeof info) == sizeof info;
}

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
