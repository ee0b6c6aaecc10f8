#pragma once

#include <functional>

namespace ombrix {

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
