#include "platform/os/ChildProcess.h"

#include "platform/os/FileDescriptor.h"
#include "platform/os/posix/Spawn.h"

#include <csignal>
#include <fcntl.h>

namespace ombrix {

ChildOutcome RunChild(const std::vector<std::string>& arguments, std::chrono::milliseconds timeout,
                      const std::function<void()>& whileWaiting) {
    const FileDescriptor nowhere(::open("/dev/null", O_RDWR | O_CLOEXEC));
    pid_t child = 0;
    if (const int error = Spawn(arguments, {nowhere.Get(), nowhere.Get(), nowhere.Get()}, child);
        error != 0)
        return {ChildOutcome::NotStarted, error};
    const bool inTime = AwaitEnd(child, timeout, whileWaiting);
    if (!inTime)
        ::kill(-child, SIGKILL);
    const ChildOutcome outcome = Collect(child);
    return inTime ? outcome : ChildOutcome{ChildOutcome::TimedOut, 0};
}

std::string TextOfKilled(int code) {
    return "signal " + std::to_string(code);
}

} // namespace ombrix
