#pragma once

#include "platform/os/ChildProcess.h"
#include "platform/os/FileDescriptor.h"

#include <chrono>
#include <memory>
#include <span>
#include <string>
#include <sys/types.h>
#include <vector>

namespace ombrix {

/// A program that works for this one: told by its standard input, it answers by its standard
/// output, and what it writes on standard error is kept. An interrupt at the terminal does not
/// reach it; it sees its standard input end when this program is gone, whatever way that goes.
class PipedProcess {
  public:
    /// @param arguments the program first @throws std::system_error when it cannot be started
    explicit PipedProcess(const std::vector<std::string>& arguments);
    PipedProcess(const PipedProcess&) = delete;
    PipedProcess& operator=(const PipedProcess&) = delete;
    /// One that still runs is killed.
    ~PipedProcess();

    /// False when the program takes nothing more.
    bool Send(std::span<const char> bytes);

    enum class Received { All, TimedOut, Ended };
    using TimePoint = std::chrono::steady_clock::time_point;
    /// Waits until all of it has come.
    Received Receive(std::span<char> bytes, TimePoint deadline);

    /// What it has written on standard error since this was last asked for.
    std::string TakeErrorOutput();

    /// How it ends when it is left to itself that long; then it is killed. Asked for once.
    ChildOutcome AwaitEnd(std::chrono::milliseconds timeout);
    /// The program sees that nothing more is sent.
    void EndInput() { m_Input = FileDescriptor(); }

  private:
    void Kill() noexcept;
    void ReadErrorOutput();

    FileDescriptor m_Input;
    std::string m_ErrorOutput;
#ifdef _WIN32
    /// What there is to read, and the program.
    struct Parts;
    std::unique_ptr<Parts> m_Parts;
#else
    FileDescriptor m_Output;
    FileDescriptor m_Errors;
    /// 0 when it has ended and is known to have.
    pid_t m_Child = 0;
#endif
};

} // namespace ombrix
