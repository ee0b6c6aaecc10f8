#include "platform/os/SystemTime.h"

#include "platform/os/windows/WindowsApi.h"

#include <cmath>

namespace ombrix::SystemTime {

const double WakeMargin_s = 0.0006;

std::tm Local(std::time_t time) {
    std::tm local{};
    ::localtime_s(&local, &time);
    return local;
}

void SleepFor(double seconds) {
    // Other sleeps of the system come in steps of up to 16 ms. Older headers lack the name.
    constexpr DWORD highResolution = 2;
    thread_local const FileDescriptor timer =
        Owned(::CreateWaitableTimerExW(nullptr, nullptr, highResolution, TIMER_ALL_ACCESS));
    constexpr double unitsPerSecond = 1e7;
    LARGE_INTEGER due{};
    due.QuadPart = -std::llround(seconds * unitsPerSecond); // below 0: from now on
    if (::SetWaitableTimer(HandleOf(timer), &due, 0, nullptr, nullptr, FALSE) != 0)
        ::WaitForSingleObject(HandleOf(timer), INFINITE);
    else
        ::Sleep(0); // systems before Windows 10 of 2018 have no such timer
}

} // namespace ombrix::SystemTime
