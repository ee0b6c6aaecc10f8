#include "platform/os/CrashReport.h"

#include <climits>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <cxxabi.h>
#include <execinfo.h>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <typeinfo>
#include <unistd.h>

namespace ombrix {

namespace {

/// A text of limited length that asks for no memory, so that a signal handler can make one.
/// What does not fit is cut off.
template <std::size_t Capacity>
class TextBuffer {
  public:
    TextBuffer& Text(std::string_view text) {
        const std::size_t length = std::min(text.size(), Capacity - 1 - m_Length);
        std::copy_n(text.data(), length, m_Characters.data() + m_Length);
        m_Length += length;
        return *this;
    }
    /// @param digits at least so many, filled with zeros
    TextBuffer& Number(std::int64_t value, std::size_t digits = 1) {
        std::array<char, 24> text{};
        const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
        const auto length = static_cast<std::size_t>(result.ptr - text.data());
        for (std::size_t missing = length; missing < digits; ++missing)
            Text("0");
        return Text({text.data(), length});
    }

    std::string_view View() const { return {m_Characters.data(), m_Length}; }
    const char* CString() const { return m_Characters.data(); }

  private:
    std::array<char, Capacity> m_Characters{};
    std::size_t m_Length = 0;
};

constexpr std::array<int, 5> FatalSignals = {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL};
constexpr std::size_t LongestPath = PATH_MAX;
constexpr int DeepestCall = 64;

struct Moment {
    TextBuffer<16> Day;
    TextBuffer<16> Time;
};

/// Local time by arithmetic alone: the C library's conversion may not be called in a signal.
Moment MomentOf(std::int64_t utc_s, std::int64_t offset_s) {
    const std::chrono::sys_seconds local{std::chrono::seconds(utc_s + offset_s)};
    const auto day = std::chrono::floor<std::chrono::days>(local);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss time(local - day);
    Moment moment;
    moment.Day.Number(static_cast<int>(date.year()), 4)
        .Number(static_cast<unsigned>(date.month()), 2)
        .Number(static_cast<unsigned>(date.day()), 2);
    moment.Time.Number(time.hours().count(), 2)
        .Number(time.minutes().count(), 2)
        .Number(time.seconds().count(), 2);
    return moment;
}

std::int64_t OffsetFromUtc_s() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    return local.tm_gmtoff;
}

std::string TypeName(const std::exception& error) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(typeid(error).name(), nullptr, nullptr, &status), &std::free);
    return status == 0 ? name.get() : typeid(error).name();
}

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

/// What a report needs, laid ready: at the moment of a crash no memory can be asked for.
class Prepared {
  public:
    Prepared(const std::filesystem::path& folder, const std::string& program,
             const std::string& version)
        : m_Offset_s(OffsetFromUtc_s()) {
        m_Folder.Text(folder.string());
        m_Program.Text(program);
        m_Version.Text(version);
        // The first look at the stack loads a library, which must not happen in a crash.
        std::array<void*, 1> frame{};
        ::backtrace(frame.data(), 1);
    }

    /// Kept for the signal that ends the program of it.
    void NoteException(std::string_view text) { m_Exception.Text(text); }

    /// Calls nothing but what a signal handler may call.
    /// @param path takes the path @return false when there is no file
    bool Write(std::string_view reason, TextBuffer<LongestPath>& path) const {
        const std::int64_t now_s = std::time(nullptr);
        const Moment moment = MomentOf(now_s, m_Offset_s);
        ::mkdir(m_Folder.CString(), 0755);
        path.Text(m_Folder.View()).Text("/crash_").Text(moment.Day.View());
        path.Text("_").Text(moment.Time.View()).Text("_").Text(m_Program.View());
        path.Text("_").Number(::getpid()).Text(".txt");
        const int file =
            ::open(path.CString(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, mode_t{0644});
        if (file < 0)
            return false;
        WriteText(file, moment, reason);
        std::array<void*, DeepestCall> frames{};
        ::backtrace_symbols_fd(frames.data(), ::backtrace(frames.data(), DeepestCall), file);
        ::fsync(file);
        ::close(file);
        return true;
    }

  private:
    void WriteText(int file, const Moment& moment, std::string_view reason) const {
        TextBuffer<2048> text;
        text.Text(m_Program.View()).Text(" ").Text(m_Version.View());
        text.Text("\nProcess ").Number(::getpid());
        text.Text("\nDate ").Text(moment.Day.View()).Text(", time ").Text(moment.Time.View());
        text.Text("\nReason: ").Text(reason).Text("\n");
        if (!m_Exception.View().empty())
            text.Text("Exception: ").Text(m_Exception.View()).Text("\n");
        text.Text("\nCalls:\n");
        [[maybe_unused]] const ssize_t written =
            ::write(file, text.View().data(), text.View().size());
    }

    TextBuffer<LongestPath> m_Folder;
    TextBuffer<64> m_Program;
    TextBuffer<64> m_Version;
    TextBuffer<1024> m_Exception;
    std::int64_t m_Offset_s;
};

/// A signal handler is given no object of ours: this is the one way to it. Empty as soon as a
/// report has been begun, so that there is one and not one more for each thread that dies.
std::atomic<Prepared*> Current = nullptr;

void OnFatalSignal(int signal) {
    if (const Prepared* prepared = Current.exchange(nullptr)) {
        TextBuffer<LongestPath> path;
        prepared->Write(SignalName(signal), path);
    }
    // The default action is back in place: it comes when the handler returns.
    ::raise(signal);
}

/// The text of the exception that ends the program; the abort that follows writes the report.
[[noreturn]] void OnTerminate() {
    if (Prepared* prepared = Current.load(); prepared != nullptr) {
        try {
            if (std::current_exception())
                std::rethrow_exception(std::current_exception());
        } catch (const std::exception& error) {
            prepared->NoteException(TypeName(error) + ": " + error.what());
        } catch (...) {
            prepared->NoteException("of an unknown type");
        }
    }
    std::abort();
}

} // namespace

/// The program's signal handlers, with a stack of their own: the program's may be exhausted.
class CrashReport::Handlers {
  public:
    explicit Handlers(std::unique_ptr<Prepared> prepared)
        : m_Prepared(std::move(prepared)), m_Stack(std::make_unique<std::byte[]>(StackBytes)) {
        Prepared* none = nullptr;
        if (!Current.compare_exchange_strong(none, m_Prepared.get()))
            throw std::logic_error("There is a crash report already");
        stack_t stack{};
        stack.ss_sp = m_Stack.get();
        stack.ss_size = StackBytes;
        ::sigaltstack(&stack, &m_FormerStack);
        struct sigaction action {};
        action.sa_handler = OnFatalSignal;
        action.sa_flags = static_cast<int>(SA_ONSTACK | SA_RESETHAND);
        for (std::size_t i = 0; i < FatalSignals.size(); ++i)
            ::sigaction(FatalSignals.at(i), &action, &m_FormerActions.at(i));
        m_FormerTerminate = std::set_terminate(OnTerminate);
    }
    Handlers(const Handlers&) = delete;
    Handlers& operator=(const Handlers&) = delete;
    ~Handlers() {
        std::set_terminate(m_FormerTerminate);
        for (std::size_t i = 0; i < FatalSignals.size(); ++i)
            ::sigaction(FatalSignals.at(i), &m_FormerActions.at(i), nullptr);
        ::sigaltstack(&m_FormerStack, nullptr);
        Current = nullptr;
    }

    const Prepared& Report() const { return *m_Prepared; }

  private:
    static constexpr std::size_t StackBytes = std::size_t{128} << 10U;

    std::unique_ptr<Prepared> m_Prepared;
    std::unique_ptr<std::byte[]> m_Stack;
    stack_t m_FormerStack{};
    std::array<struct sigaction, FatalSignals.size()> m_FormerActions{};
    std::terminate_handler m_FormerTerminate = nullptr;
};

CrashReport::CrashReport(const std::filesystem::path& folder, const std::string& program,
                         const std::string& version)
    : m_Handlers(std::make_unique<Handlers>(
          std::make_unique<Prepared>(std::filesystem::absolute(folder), program, version))) {}

CrashReport::~CrashReport() = default;

std::filesystem::path CrashReport::WriteException(const std::exception& error) const {
    TextBuffer<LongestPath> path;
    const std::string reason = "unexpected error, " + TypeName(error) + ": " + error.what();
    return m_Handlers->Report().Write(reason, path) ? std::filesystem::path(path.View())
                                                    : std::filesystem::path();
}

std::string UnexpectedErrorText(const std::exception& error, const std::filesystem::path& file) {
    const std::string text = std::string("Unexpected error: ") + error.what();
    if (file.empty())
        return text;
    return text + "\r\n\r\nWhat is known of it stands in:\r\n\r\n   " + file.string() +
           "\r\n\r\nPlease send the diagnostics to those who look after the program.";
}

} // namespace ombrix
