#pragma once

#include "boardhost/Protocol.h"
#include "platform/os/PipedProcess.h"

#include <chrono>
#include <span>
#include <string>

namespace ombrix {

/// A board host that runs: the program that has loaded the board library and makes its calls.
class BoardHost {
  public:
    /// @param library name or path of the library's file
    /// @param limit how long it may take to load
    /// @throws AIBLibraryError when the host cannot be started or the library cannot be loaded
    BoardHost(const std::string& program, const std::string& library,
              std::chrono::milliseconds limit);
    BoardHost(const BoardHost&) = delete;
    BoardHost& operator=(const BoardHost&) = delete;
    /// Lets it end without touching the outputs, as a program does that ends as it should.
    ~BoardHost();

    struct Reply {
        enum Kind { Answered, TimedOut, Ended };
        Kind Kind = Ended;
        hostprotocol::Answer Answer;
    };
    /// Has the library make a call, and waits for its end.
    /// @param block what goes with the request, and takes what comes with the answer: as long as
    ///        the longer of both
    Reply Make(hostprotocol::Request request, std::span<char> block,
               std::chrono::milliseconds limit);

    /// How a host that has stopped answering has ended ("signal 11", "exit status 3"). Afterwards
    /// it is gone.
    std::string HowItEnded();
    /// What the library has printed since this was last asked for.
    std::string TakePrinted() { return m_Process.TakeErrorOutput(); }

  private:
    void Load(const std::string& library, std::chrono::milliseconds limit);

    PipedProcess m_Process;
    std::int32_t m_Number = 0;
    bool m_Sound = true;
};

} // namespace ombrix
