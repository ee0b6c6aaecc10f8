#include "platform/os/ProgramStop.h"

#include <array>
#include <csignal>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace ombrix {

struct StopSignals::Before {
    sigset_t Mask{};
    struct sigaction Pipe {};
};

StopSignals::StopSignals() : m_Before(std::make_unique<Before>()) {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals, &m_Before->Mask);
    struct sigaction ignored {};
    ignored.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &ignored, &m_Before->Pipe);
    m_Signals = FileDescriptor(::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
}

StopSignals::~StopSignals() {
    ::sigaction(SIGPIPE, &m_Before->Pipe, nullptr);
    ::pthread_sigmask(SIG_SETMASK, &m_Before->Mask, nullptr);
}

bool StopSignals::Take() {
    signalfd_siginfo info{};
    return ::read(m_Signals.Get(), &info, sizeof info) == sizeof info;
}

StopSignals::Input StopSignals::AwaitInput(char& character) {
    std::array<pollfd, 2> sources = {{{STDIN_FILENO, POLLIN, 0}, {m_Signals.Get(), POLLIN, 0}}};
    if (::poll(sources.data(), sources.size(), -1) < 0 || sources[0].revents == 0)
        return Input::Signal;
    return ::read(STDIN_FILENO, &character, 1) > 0 ? Input::Character : Input::Ended;
}

} // namespace ombrix
