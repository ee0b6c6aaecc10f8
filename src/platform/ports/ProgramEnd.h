#pragma once

namespace ombrix {

/// Exit statuses of the programs, as scripts rely on them.
enum class ExitStatus {
    Done = 0,
    NotPassed = 1,
    WrongUsage = 2,
    NoBoard = 3,
    NotStored = 4,
};

/// Ends the program at once, when going on would be unsafe.
class ProgramEnd {
  public:
    virtual ~ProgramEnd() = default;

    /// Does not return; no window is shown and no clean-up done beyond what ending does.
    [[noreturn]] virtual void EndProgram(ExitStatus status) = 0;
};

} // namespace ombrix
