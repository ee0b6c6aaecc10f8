#include "platform/os/PipedProcess.h"

#include "platform/os/posix/Spawn.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace ombrix {

namespace {

/// Most answers are there sooner than a sleeper is awake again.
constexpr std::chrono::microseconds StaysAwake(100);

struct Pipe {
    FileDescriptor Reading;
    FileDescriptor Writing;

    Pipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::system_error(errno, std::generic_category(), "A pipe cannot be made");
        Reading = FileDescriptor(ends[0]);
        Writing = FileDescriptor(ends[1]);
    }
};

void NeverWait(const FileDescriptor& descriptor) {
    ::fcntl(descriptor.Get(), F_SETFL, O_NONBLOCK);
}

/// While it lives, a program that is gone while it is told something is an error and no signal.
class WithoutPipeSignal {
  public:
    WithoutPipeSignal() {
        struct sigaction ignored {};
        ignored.sa_handler = SIG_IGN;
        ::sigaction(SIGPIPE, &ignored, &m_Before);
    }
    WithoutPipeSignal(const WithoutPipeSignal&) = delete;
    WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;
    ~WithoutPipeSignal() { ::sigaction(SIGPIPE, &m_Before, nullptr); }

  private:
    struct sigaction m_Before {};
};

} // namespace

PipedProcess::PipedProcess(const std::vector<std::string>& arguments) {
    Pipe input;
    Pipe output;
    Pipe errors;
    if (const int error = Spawn(
            arguments, {input.Reading.Get(), output.Writing.Get(), errors.Writing.Get()}, m_Child);
        error != 0)
        throw std::system_error(error, std::generic_category(), arguments.front());
    m_Input = std::move(input.Writing);
    m_Output = std::move(output.Reading);
    m_Errors = std::move(errors.Reading);
    NeverWait(m_Output);
    NeverWait(m_Errors);
}

PipedProcess::~PipedProcess() {
    Kill();
}

bool PipedProcess::Send(std::span<const char> bytes) {
    const WithoutPipeSignal asAnError;
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_Input.Get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

PipedProcess::Received PipedProcess::Receive(std::span<char> bytes, TimePoint deadline) {
    using std::chrono::milliseconds;
    const auto sleepAt = std::min(deadline, std::chrono::steady_clock::now() + StaysAwake);
    while (true) {
        const ssize_t count = ::read(m_Output.Get(), bytes.data(), bytes.size());
        if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
            return Received::Ended;
        if (count > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
            if (bytes.empty())
                return Received::All;
            continue;
        }
        const auto now = std::chrono::steady_clock::now();
        if (now < sleepAt) {
            ::sched_yield();
            continue;
        }
        const auto left = std::chrono::ceil<milliseconds>(deadline - now);
        if (left <= milliseconds::zero())
            return Received::TimedOut;
        std::array<pollfd, 2> entries{pollfd{m_Output.Get(), POLLIN, 0},
                                      pollfd{m_Errors.Get(), POLLIN, 0}};
        // Who prints much must not have to wait until somebody reads it.
        const nfds_t watched = m_Errors.IsOpen() ? entries.size() : 1;
        ::poll(entries.data(), watched, static_cast<int>(left.count()));
        if (entries[1].revents != 0)
            ReadErrorOutput();
    }
}

void PipedProcess::ReadErrorOutput() {
    std::array<char, 4096> buffer{};
    while (m_Errors.IsOpen()) {
        const ssize_t count = ::read(m_Errors.Get(), buffer.data(), buffer.size());
        if (count > 0)
            m_ErrorOutput.append(buffer.data(), static_cast<std::size_t>(count));
        else if (count == 0)
            m_Errors = FileDescriptor();
        else if (errno != EINTR)
            return;
    }
}

std::string PipedProcess::TakeErrorOutput() {
    ReadErrorOutput();
    return std::exchange(m_ErrorOutput, {});
}

ChildOutcome PipedProcess::AwaitEnd(std::chrono::milliseconds timeout) {
    const pid_t child = std::exchange(m_Child, 0);
    const bool inTime = ombrix::AwaitEnd(child, timeout);
    ::kill(-child, SIGKILL); // with what it has started
    // One that a driver holds cannot be killed before the driver lets it go.
    constexpr std::chrono::milliseconds forDying(1000);
    if (!inTime && !ombrix::AwaitEnd(child, forDying))
        return {ChildOutcome::TimedOut, 0};
    const ChildOutcome outcome = Collect(child);
    return inTime ? outcome : ChildOutcome{ChildOutcome::TimedOut, 0};
}

void PipedProcess::Kill() noexcept {
    if (m_Child != 0)
        AwaitEnd(std::chrono::milliseconds(0));
}

} // namespace ombrix
