#pragma once

#include "platform/os/FileDescriptor.h"

#include <functional>
#include <memory>

namespace ombrix {

/// The signals by which a program is told to stop, taken as events instead of at any moment:
/// interrupt (Ctrl-C), terminate, and hang-up (the terminal or the session is gone). A pipe that
/// nobody reads any more is no reason to die either, with outputs driven. Made before any other
/// thread, which would get the signals otherwise; ends with everything as before.
class StopSignals {
  public:
    StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
    ~StopSignals();

    /// Takes a signal that has arrived; true when there was one.
    bool Take();
    enum class Input { Character, Ended, Signal };
    /// Waits for a character of standard input, or a signal if that comes first.
    Input AwaitInput(char& character);
    /// Becomes readable when one arrives.
    int Descriptor() const { return m_Signals.Get(); }

  private:
    /// How the program has found the system's ways, and leaves them.
    struct Before;
    std::unique_ptr<Before> m_Before;
    FileDescriptor m_Signals;
};

/// While it lives, an `exit` from anywhere carries out an action before the process is gone: such
/// an end unwinds no stack, so no destructor would. What the action uses has to live longer than
/// this object. One at a time.
class AtExit {
  public:
    /// @param action must not throw, and need not expect that anything beside it still works
    explicit AtExit(std::function<void()> action);
    AtExit(const AtExit&) = delete;
    AtExit& operator=(const AtExit&) = delete;
    ~AtExit();
};

} // namespace ombrix
