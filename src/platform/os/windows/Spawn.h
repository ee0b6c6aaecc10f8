#pragma once

#include "platform/os/ChildProcess.h"
#include "platform/os/windows/WindowsApi.h"

#include <array>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace ombrix {

/// A program that was started.
struct Child {
    FileDescriptor Process;
    /// What it has started belongs to it too.
    FileDescriptor Job;

    /// Ends it with all that it has started.
    void Kill() const { ::TerminateJobObject(HandleOf(Job), 1); }
};

/// Starts a program without a console, so that an interrupt at this one's does not reach it.
/// @param arguments the program first @param standard its standard input, output and error, which
///        it inherits and nothing else
/// @return 0 and the child, or an error number
int Spawn(const std::vector<std::string>& arguments, const std::array<HANDLE, 3>& standard,
          Child& child);

/// True when the child has ended before the time was up.
/// @param whileWaiting called every few milliseconds meanwhile, when given; must not throw
bool AwaitEnd(const Child& child, std::chrono::milliseconds timeout,
              const std::function<void()>& whileWaiting = {});

/// How a child has ended; waits for it.
ChildOutcome Collect(const Child& child);

} // namespace ombrix
