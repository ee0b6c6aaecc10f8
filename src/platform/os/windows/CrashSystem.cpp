#include "platform/os/CrashSystem.h"

#include "platform/os/CrashReport.h"
#include "platform/os/windows/WindowsApi.h"

#include <array>
#include <atomic>
#include <charconv>
#include <csignal>

namespace ombrix {

namespace {

constexpr DWORD DeepestCall = 64;
constexpr int LongestWidePath = 4096;

/// A function of the system's is given no object of ours: this is the one way to who is told.
std::atomic<void (*)(std::string_view)> Listener = nullptr;

void Tell(std::string_view reason) {
    if (const auto tell = Listener.load())
        tell(reason);
}

const char* ExceptionName(DWORD code) {
    switch (code) {
    case EXCEPTION_ACCESS_VIOLATION: return "access violation (invalid memory access)";
    case EXCEPTION_IN_PAGE_ERROR: return "in-page error (the program's file is gone)";
    case EXCEPTION_STACK_OVERFLOW: return "stack overflow";
    case EXCEPTION_ILLEGAL_INSTRUCTION: return "illegal instruction";
    case EXCEPTION_INT_DIVIDE_BY_ZERO: return "arithmetic error";
    default: return "exception of the operating system";
    }
}

LONG WINAPI OnException(EXCEPTION_POINTERS* exception) {
    Tell(ExceptionName(exception->ExceptionRecord->ExceptionCode));
    return EXCEPTION_CONTINUE_SEARCH; // the system ends the program, as it would have
}

void OnAbort(int /*signal*/) {
    Tell("abort");
}

/// A text for the system, made without asking for memory.
class WidePath {
  public:
    explicit WidePath(const char* path) {
        ::MultiByteToWideChar(CP_UTF8, 0, path, -1, m_Text.data(), LongestWidePath - 1);
    }
    const wchar_t* Get() const { return m_Text.data(); }

  private:
    std::array<wchar_t, LongestWidePath> m_Text{};
};

void Write(HANDLE file, std::string_view text) {
    DWORD written = 0;
    ::WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

void WriteHex(HANDLE file, std::uintptr_t value) {
    constexpr int hexadecimal = 16;
    std::array<char, 20> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value, hexadecimal);
    Write(file, "0x");
    Write(file, {text.data(), static_cast<std::size_t>(result.ptr - text.data())});
}

/// A call as its file and the place in it, which those who build the program can look up.
void WriteCall(HANDLE file, void* address) {
    HMODULE module = nullptr;
    constexpr DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    std::array<char, MAX_PATH> name{};
    if (::GetModuleHandleExW(flags, static_cast<const wchar_t*>(address), &module) != 0)
        ::GetModuleFileNameA(module, name.data(), static_cast<DWORD>(name.size() - 1));
    const std::string_view path = name.data();
    Write(file, path.substr(path.find_last_of('\\') + 1));
    Write(file, "(+");
    WriteHex(file,
             reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(module));
    Write(file, ")\n");
}

} // namespace

struct CrashSystem::Handlers {
    LPTOP_LEVEL_EXCEPTION_FILTER Filter = nullptr;
    void (*Abort)(int) = nullptr;
};

CrashSystem::CrashSystem(void (*onFatalError)(std::string_view reason))
    : m_Handlers(std::make_unique<Handlers>()) {
    Listener = onFatalError;
    // What is told after the program's stack is exhausted needs some of it.
    constexpr ULONG reserve = 128U << 10U;
    ULONG bytes = reserve;
    ::SetThreadStackGuarantee(&bytes);
    m_Handlers->Filter = ::SetUnhandledExceptionFilter(OnException);
    m_Handlers->Abort = std::signal(SIGABRT, OnAbort);
}

CrashSystem::~CrashSystem() {
    std::signal(SIGABRT, m_Handlers->Abort);
    ::SetUnhandledExceptionFilter(m_Handlers->Filter);
    Listener = nullptr;
}

std::int64_t CrashSystem::OffsetFromUtc_s() {
    constexpr std::int64_t secondsPerMinute = 60;
    TIME_ZONE_INFORMATION zone{};
    const DWORD season = ::GetTimeZoneInformation(&zone);
    const LONG minutes =
        zone.Bias + (season == TIME_ZONE_ID_DAYLIGHT ? zone.DaylightBias : zone.StandardBias);
    return -minutes * secondsPerMinute;
}

bool CrashSystem::WriteReport(const char* folder, const char* path, std::string_view text) {
    ::CreateDirectoryW(WidePath(folder).Get(), nullptr);
    const HANDLE file =
        ::CreateFileW(WidePath(path).Get(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_DELETE,
                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) // NOLINT
        return false;
    Write(file, text);
    std::array<void*, DeepestCall> frames{};
    const USHORT count = ::RtlCaptureStackBackTrace(0, DeepestCall, frames.data(), nullptr);
    for (std::size_t i = 0; i < count; ++i)
        WriteCall(file, frames.at(i));
    ::FlushFileBuffers(file);
    ::CloseHandle(file);
    return true;
}

void CrashNow() {
    ::RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
}

} // namespace ombrix
