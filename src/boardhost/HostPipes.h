#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace ombrix {

/// The host's side of the pair of pipes to its program, and what the system may do to the host.
class HostPipes {
  public:
    /// Takes standard input and output for itself. What the library prints from now on goes where
    /// standard error goes, line by line; it finds nothing to read. Interrupt, terminate and
    /// hang-up are the program's business: it says when this host may end. A library that crashes
    /// ends the host by the system's own means, which the program tells people.
    HostPipes();
    HostPipes(const HostPipes&) = delete;
    HostPipes& operator=(const HostPipes&) = delete;

    /// Waits until all of it is there; false when the program is gone.
    bool Read(std::span<char> bytes) const;
    bool Write(std::span<const char> bytes) const;

    /// While it lives, a call that does not return ends the host: its program may be gone.
    class TimeLimit {
      public:
        explicit TimeLimit(std::int32_t limit_ms);
        TimeLimit(const TimeLimit&) = delete;
        TimeLimit& operator=(const TimeLimit&) = delete;
        ~TimeLimit();

      private:
        struct Timer;
        std::unique_ptr<Timer> m_Timer;
    };

  private:
    // Open for as long as the process is: a library that ends it must not be waited for.
    int m_Requests;
    int m_Answers;
};

} // namespace ombrix
