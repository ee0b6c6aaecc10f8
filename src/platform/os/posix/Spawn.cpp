#include "platform/os/posix/Spawn.h"

#include "platform/os/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ombrix {

namespace {

class SpawnActions {
  public:
    explicit SpawnActions(const std::array<int, 3>& standard) {
        ::posix_spawn_file_actions_init(&m_Actions);
        for (int target = 0; target < static_cast<int>(standard.size()); ++target)
            ::posix_spawn_file_actions_adddup2(
                &m_Actions, standard.at(static_cast<std::size_t>(target)), target);
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

} // namespace

int Spawn(const std::vector<std::string>& arguments, const std::array<int, 3>& standard,
          pid_t& child) {
    std::vector<std::string> texts = arguments;
    std::vector<char*> pointers(texts.size() + 1, nullptr);
    std::transform(texts.begin(), texts.end(), pointers.begin(),
                   [](std::string& text) { return text.data(); });
    return ::posix_spawnp(&child, pointers.front(), SpawnActions(standard).Get(),
                          SpawnAttributes().Get(), pointers.data(), environ);
}

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

} // namespace ombrix
