#include "platform/os/ChildProcess.h"

#include "platform/os/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ombrix {

namespace {

class SpawnActions {
  public:
    SpawnActions() {
        ::posix_spawn_file_actions_init(&m_Actions);
        ::posix_spawn_file_actions_addopen(&m_Actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&m_Actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&m_Actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { ::posix_spawn_file_actions_destroy(&m_Actions); }

    const posix_spawn_file_actions_t* Get() const { return &m_Actions; }

  private:
    posix_spawn_file_actions_t m_Actions = {};
};

class SpawnAttributes {
  public:
    SpawnAttributes() {
        ::posix_spawnattr_init(&m_Attributes);
        // A process group of its own can be ended as a whole.
        ::posix_spawnattr_setpgroup(&m_Attributes, 0);
        // Signals that this program takes as events are the child's own business.
        sigset_t none;
        sigemptyset(&none);
        ::posix_spawnattr_setsigmask(&m_Attributes, &none);
        ::posix_spawnattr_setflags(&m_Attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
    }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes() { ::posix_spawnattr_destroy(&m_Attributes); }

    const posix_spawnattr_t* Get() const { return &m_Attributes; }

  private:
    posix_spawnattr_t m_Attributes = {};
};

/// 0 and the child's id, or an error number.
int Spawn(const std::vector<std::string>& arguments, pid_t& child) {
    std::vector<std::string> texts = arguments;
    std::vector<char*> pointers(texts.size() + 1, nullptr);
    std::transform(texts.begin(), texts.end(), pointers.begin(),
                   [](std::string& text) { return text.data(); });
    return ::posix_spawnp(&child, pointers.front(), SpawnActions().Get(), SpawnAttributes().Get(),
                          pointers.data(), environ);
}

/// True when the child has ended before the time was up.
bool AwaitEnd(pid_t child, std::chrono::milliseconds timeout,
              const std::function<void()>& whileWaiting) {
    const FileDescriptor ended(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
    if (!ended.IsOpen())
        return true; // waiting for the child then takes as long as it takes
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    constexpr std::chrono::milliseconds betweenCalls(10);
    while (true) {
        const auto left = std::max(std::chrono::ceil<std::chrono::milliseconds>(
                                       deadline - std::chrono::steady_clock::now()),
                                   std::chrono::milliseconds::zero());
        const auto slice = whileWaiting ? std::min(left, betweenCalls) : left;
        pollfd entry{ended.Get(), POLLIN, 0};
        const int count = ::poll(&entry, 1, static_cast<int>(slice.count()));
        if (count > 0 || (count < 0 && errno != EINTR) || left.count() == 0)
            return count > 0;
        if (whileWaiting)
            whileWaiting();
    }
}

ChildOutcome Collect(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status))
        return {ChildOutcome::Exited, WEXITSTATUS(status)};
    return {ChildOutcome::Killed, WTERMSIG(status)};
}

} // namespace

ChildOutcome RunChild(const std::vector<std::string>& arguments, std::chrono::milliseconds timeout,
                      const std::function<void()>& whileWaiting) {
    pid_t child = 0;
    if (const int error = Spawn(arguments, child); error != 0)
        return {ChildOutcome::NotStarted, error};
    const bool inTime = AwaitEnd(child, timeout, whileWaiting);
    if (!inTime)
        ::kill(-child, SIGKILL);
    const ChildOutcome outcome = Collect(child);
    return inTime ? outcome : ChildOutcome{ChildOutcome::TimedOut, 0};
}

} // namespace ombrix
