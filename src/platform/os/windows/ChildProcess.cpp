#include "platform/os/ChildProcess.h"

#include "platform/os/windows/Spawn.h"

#include <fmt/format.h>

namespace ombrix {

ChildOutcome RunChild(const std::vector<std::string>& arguments, std::chrono::milliseconds timeout,
                      const std::function<void()>& whileWaiting) {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const FileDescriptor nowhere = Owned(::CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE,
                                                       FILE_SHARE_READ | FILE_SHARE_WRITE,
                                                       &inherited, OPEN_EXISTING, 0, nullptr));
    Child child;
    const HANDLE handle = HandleOf(nowhere);
    if (const int error = Spawn(arguments, {handle, handle, handle}, child); error != 0)
        return {ChildOutcome::NotStarted, error};
    const bool inTime = AwaitEnd(child, timeout, whileWaiting);
    if (!inTime)
        child.Kill();
    const ChildOutcome outcome = Collect(child);
    return inTime ? outcome : ChildOutcome{ChildOutcome::TimedOut, 0};
}

std::string TextOfKilled(int code) {
    return fmt::format("exception 0x{:08X}", static_cast<unsigned>(code));
}

} // namespace ombrix
