#pragma once

#include "platform/os/StopSignals.h"

#include <optional>
#include <string>

namespace ombrix {

/// Whether a terminal program has been told to stop, and the input that waits beside that.
class Interrupts {
  public:
    /// Looks whether one has arrived; once arrived it stays.
    bool Poll();
    bool Interrupted() const { return m_Interrupted; }

    /// A line from standard input without its end; nothing at the end of input and when an
    /// interrupt arrives while waiting.
    std::optional<std::string> ReadLine();

  private:
    StopSignals m_Signals;
    bool m_Interrupted = false;
};

} // namespace ombrix
