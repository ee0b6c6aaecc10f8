#include "platform/os/SystemTime.h"

#include <chrono>
#include <thread>

namespace ombrix::SystemTime {

const double WakeMargin_s = 0.0002;

std::tm Local(std::time_t time) {
    std::tm local{};
    ::localtime_r(&time, &local);
    return local;
}

void SleepFor(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

} // namespace ombrix::SystemTime
