#pragma once

#include <ctime>

namespace ombrix::SystemTime {

/// Date and time of day where this computer stands.
std::tm Local(std::time_t time);

/// @param seconds above 0
void SleepFor(double seconds);

/// How much too late the system may wake a sleeper, in seconds.
extern const double WakeMargin_s;

} // namespace ombrix::SystemTime
