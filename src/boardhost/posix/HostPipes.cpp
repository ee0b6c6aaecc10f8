#include "boardhost/HostPipes.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <unistd.h>

namespace ombrix {

namespace {

/// A copy of a descriptor that programs started by the library do not get.
int Kept(int descriptor) {
    constexpr int first = 3;
    return ::fcntl(descriptor, F_DUPFD_CLOEXEC, first);
}

/// Calls come in bursts, and waking up takes longer than most calls.
constexpr std::chrono::microseconds StaysAwake(100);

} // namespace

HostPipes::HostPipes() : m_Requests(Kept(STDIN_FILENO)), m_Answers(Kept(STDOUT_FILENO)) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
        ::signal(signal, SIG_IGN);
    for (const int crash : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        ::signal(crash, SIG_DFL);
    ::fcntl(m_Requests, F_SETFL, O_NONBLOCK);
    const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::dup2(nothing, STDIN_FILENO);
    ::close(nothing);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
}

bool HostPipes::Read(std::span<char> bytes) const {
    const auto sleepAt = std::chrono::steady_clock::now() + StaysAwake;
    while (!bytes.empty()) {
        const ssize_t count = ::read(m_Requests, bytes.data(), bytes.size());
        if (count < 0 && errno == EAGAIN) {
            if (std::chrono::steady_clock::now() < sleepAt) {
                ::sched_yield();
            } else {
                pollfd entry{m_Requests, POLLIN, 0};
                ::poll(&entry, 1, -1);
            }
            continue;
        }
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

bool HostPipes::Write(std::span<const char> bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_Answers, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

struct HostPipes::TimeLimit::Timer {
    explicit Timer(std::int32_t limit_ms) {
        // A program that lives ends its host itself, and earlier.
        constexpr std::int32_t margin_s = 2;
        ::alarm(static_cast<unsigned>(std::max(limit_ms, 0) / 1000 + margin_s));
    }
    ~Timer() { ::alarm(0); }
};

HostPipes::TimeLimit::TimeLimit(std::int32_t limit_ms)
    : m_Timer(std::make_unique<Timer>(limit_ms)) {}

HostPipes::TimeLimit::~TimeLimit() = default;

} // namespace ombrix
