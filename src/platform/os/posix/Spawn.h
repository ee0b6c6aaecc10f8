#pragma once

#include "platform/os/ChildProcess.h"

#include <array>
#include <chrono>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace ombrix {

/// Starts a program in a process group of its own; no shell has a part in it.
/// @param arguments the program first @param standard its standard input, output and error
/// @return 0 and the child's id, or an error number
int Spawn(const std::vector<std::string>& arguments, const std::array<int, 3>& standard,
          pid_t& child);

/// True when the child has ended before the time was up.
/// @param whileWaiting called every few milliseconds meanwhile, when given; must not throw
bool AwaitEnd(pid_t child, std::chrono::milliseconds timeout,
              const std::function<void()>& whileWaiting = {});

/// How a child has ended; waits for it.
ChildOutcome Collect(pid_t child);

} // namespace ombrix
