#include "platform/os/CrashSystem.h"

#include "platform/os/CrashReport.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <ctime>
#include <execinfo.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ombrix {

namespace {

constexpr std::array<int, 5> FatalSignals = {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL};
constexpr int DeepestCall = 64;

const char* SignalName(int signal) {
    switch (signal) {
    case SIGSEGV: return "SIGSEGV (invalid memory access)";
    case SIGABRT: return "SIGABRT (abort)";
    case SIGBUS: return "SIGBUS (bus error)";
    case SIGFPE: return "SIGFPE (arithmetic error)";
    case SIGILL: return "SIGILL (illegal instruction)";
    default: return "signal";
    }
}

/// A signal handler is given no object of ours: this is the one way to who is told.
std::atomic<void (*)(std::string_view)> Listener = nullptr;

void OnFatalSignal(int signal) {
    if (const auto tell = Listener.load())
        tell(SignalName(signal));
    // The default action is back in place: it comes when the handler returns.
    ::raise(signal);
}

} // namespace

/// The program's signal handlers, with a stack of their own: the program's may be exhausted.
struct CrashSystem::Handlers {
    static constexpr std::size_t StackBytes = std::size_t{128} << 10U;

    std::unique_ptr<std::byte[]> Stack = std::make_unique<std::byte[]>(StackBytes);
    stack_t FormerStack{};
    std::array<struct sigaction, FatalSignals.size()> FormerActions{};
};

CrashSystem::CrashSystem(void (*onFatalError)(std::string_view reason))
    : m_Handlers(std::make_unique<Handlers>()) {
    Listener = onFatalError;
    // The first look at the stack loads a library, which must not happen in a crash.
    std::array<void*, 1> frame{};
    ::backtrace(frame.data(), 1);
    stack_t stack{};
    stack.ss_sp = m_Handlers->Stack.get();
    stack.ss_size = Handlers::StackBytes;
    ::sigaltstack(&stack, &m_Handlers->FormerStack);
    struct sigaction action {};
    action.sa_handler = OnFatalSignal;
    action.sa_flags = static_cast<int>(SA_ONSTACK | SA_RESETHAND);
    for (std::size_t i = 0; i < FatalSignals.size(); ++i)
        ::sigaction(FatalSignals.at(i), &action, &m_Handlers->FormerActions.at(i));
}

CrashSystem::~CrashSystem() {
    for (std::size_t i = 0; i < FatalSignals.size(); ++i)
        ::sigaction(FatalSignals.at(i), &m_Handlers->FormerActions.at(i), nullptr);
    ::sigaltstack(&m_Handlers->FormerStack, nullptr);
    Listener = nullptr;
}

std::int64_t CrashSystem::OffsetFromUtc_s() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    return local.tm_gmtoff;
}

bool CrashSystem::WriteReport(const char* folder, const char* path, std::string_view text) {
    ::mkdir(folder, 0755);
    const int file = ::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, mode_t{0644});
    if (file < 0)
        return false;
    [[maybe_unused]] const ssize_t written = ::write(file, text.data(), text.size());
    std::array<void*, DeepestCall> frames{};
    ::backtrace_symbols_fd(frames.data(), ::backtrace(frames.data(), DeepestCall), file);
    ::fsync(file);
    ::close(file);
    return true;
}

void CrashNow() {
    ::raise(SIGSEGV);
}

} // namespace ombrix
