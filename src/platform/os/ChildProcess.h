#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace ombrix {

/// How a program that was run has ended; that it did not start is an outcome too, no exception.
struct ChildOutcome {
    enum Kind { Exited, Killed, TimedOut, NotStarted };
    Kind Kind = NotStarted;
    /// Exit status, signal or, when not started, the system's error number.
    int Code = 0;
};

/// What has killed a program, for people ("signal 11").
std::string TextOfKilled(int code);

/// Runs a program and waits for it; no shell has a part in it. Its output goes nowhere. One
/// that takes too long is ended together with the programs it has started.
/// @param arguments the program first
/// @param whileWaiting called every few milliseconds meanwhile, when given; must not throw
ChildOutcome RunChild(const std::vector<std::string>& arguments, std::chrono::milliseconds timeout,
                      const std::function<void()>& whileWaiting = {});

} // namespace ombrix
