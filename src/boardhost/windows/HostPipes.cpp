#include "boardhost/HostPipes.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace ombrix {

namespace {

/// A copy of a standard handle that programs started by the library do not get.
int Kept(DWORD standard) {
    const HANDLE self = ::GetCurrentProcess();
    HANDLE copy = nullptr;
    ::DuplicateHandle(self, ::GetStdHandle(standard), self, &copy, 0, FALSE, DUPLICATE_SAME_ACCESS);
    return static_cast<int>(reinterpret_cast<std::intptr_t>(copy));
}

HANDLE HandleOf(int number) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(number));
}

/// Has a descriptor of the C library, and the system's standard handle, be another one.
void Redirect(int from, int to, DWORD standard) {
    const HANDLE former = ::GetStdHandle(standard);
    ::_dup2(from, to);
    ::SetStdHandle(standard, reinterpret_cast<HANDLE>(::_get_osfhandle(to)));
    if (former != ::GetStdHandle(standard))
        ::CloseHandle(former);
}

} // namespace

HostPipes::HostPipes() : m_Requests(Kept(STD_INPUT_HANDLE)), m_Answers(Kept(STD_OUTPUT_HANDLE)) {
    ::SetConsoleCtrlHandler(nullptr, TRUE);
    // No box that waits for somebody to press a button.
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    const int nothing = ::_wopen(L"NUL", _O_RDONLY);
    Redirect(nothing, ::_fileno(stdin), STD_INPUT_HANDLE);
    ::_close(nothing);
    Redirect(::_fileno(stderr), ::_fileno(stdout), STD_OUTPUT_HANDLE);
    std::setvbuf(stdout, nullptr, _IONBF, 0);
}

bool HostPipes::Read(std::span<char> bytes) const {
    while (!bytes.empty()) {
        DWORD count = 0;
        if (::ReadFile(HandleOf(m_Requests), bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                       nullptr) == 0 ||
            count == 0)
            return false;
        bytes = bytes.subspan(count);
    }
    return true;
}

bool HostPipes::Write(std::span<const char> bytes) const {
    while (!bytes.empty()) {
        DWORD count = 0;
        if (::WriteFile(HandleOf(m_Answers), bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                        nullptr) == 0)
            return false;
        bytes = bytes.subspan(count);
    }
    return true;
}

namespace {

void CALLBACK EndHost(PTP_CALLBACK_INSTANCE /*instance*/, void* /*context*/, PTP_TIMER /*timer*/) {
    constexpr UINT status = 14;
    ::TerminateProcess(::GetCurrentProcess(), status);
}

} // namespace

struct HostPipes::TimeLimit::Timer {
    explicit Timer(std::int32_t limit_ms) {
        // A program that lives ends its host itself, and earlier.
        constexpr std::int64_t margin_ms = 2000;
        constexpr std::int64_t unitsPerMillisecond = 10'000;
        ULARGE_INTEGER due{};
        due.QuadPart = static_cast<ULONGLONG>(-(std::max(limit_ms, 0) + margin_ms) *
                                              unitsPerMillisecond); // below 0: from now on
        FILETIME time{due.LowPart, due.HighPart};
        ::SetThreadpoolTimer(System, &time, 0, 0);
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() {
        ::SetThreadpoolTimer(System, nullptr, 0, 0);
        ::CloseThreadpoolTimer(System);
    }

    PTP_TIMER System = ::CreateThreadpoolTimer(EndHost, nullptr, nullptr);
};

HostPipes::TimeLimit::TimeLimit(std::int32_t limit_ms)
    : m_Timer(std::make_unique<Timer>(limit_ms)) {}

HostPipes::TimeLimit::~TimeLimit() = default;

} // namespace ombrix
