#include "terminal/Interrupts.h"

#include <array>
#include <csignal>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace ombrix {

namespace {

FileDescriptor OpenSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return FileDescriptor(::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
}

} // namespace

Interrupts::Interrupts() : m_Signals(OpenSignals()) {}

bool Interrupts::Poll() {
    signalfd_siginfo info{};
    if (::read(m_Signals.Get(), &info, sizeof info) == sizeof info)
        m_Interrupted = true;
    return m_Interrupted;
}

std::optional<std::string> Interrupts::ReadLine() {
    std::string line;
    while (!Poll()) {
        std::array<pollfd, 2> sources = {{{STDIN_FILENO, POLLIN, 0}, {m_Signals.Get(), POLLIN, 0}}};
        if (::poll(sources.data(), sources.size(), -1) < 0 || (sources[0].revents == 0))
            continue;
        char character = '\0';
        const ssize_t count = ::read(STDIN_FILENO, &character, 1);
        if (count <= 0)
            return line.empty() ? std::nullopt : std::optional(line);
        if (character == '\n')
            return line;
        if (character != '\r')
            line += character;
    }
    return std::nullopt;
}

} // namespace ombrix
