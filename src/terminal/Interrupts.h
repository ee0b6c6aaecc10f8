#pragma once

#include "platform/FileDescriptor.h"

#include <optional>
#include <string>

namespace ombrix {

/// The signals by which a terminal program is told to stop, taken as events instead of at any
/// moment: interrupt (Ctrl-C) and terminate.
class Interrupts {
  public:
    Interrupts();

    /// Looks whether one has arrived; once arrived it stays.
    bool Poll();
    bool Interrupted() const { return m_Interrupted; }

    /// A line from standard input without its end; nothing at the end of input and when an
    /// interrupt arrives while waiting.
    std::optional<std::string> ReadLine();

  private:
    FileDescriptor m_Signals;
    bool m_Interrupted = false;
};

} // namespace ombrix
