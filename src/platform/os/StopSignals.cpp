#include "platform/os/StopSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

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

} // namespace ombrix
