#pragma once

#include "board/procedure/ProcedureGate.h"
#include "platform/os/ProgramStop.h"
#include "platform/ports/Platform.h"

#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ombrix {

/// Writes to standard error at once. A terminal that is gone takes nothing more, which must not
/// disturb what is being made safe meanwhile.
inline void WriteError(std::string_view text) noexcept {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

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

/// Lets a running procedure be interrupted from the terminal.
class TerminalEventPump final : public EventPump {
  public:
    explicit TerminalEventPump(Interrupts& interrupts) : m_Interrupts(interrupts) {}

    /// What an interrupt does while a procedure runs; nothing in between.
    std::function<void()> OnInterrupt;

    void ProcessPendingEvents() override;
    /// An interrupt cancels the procedure; the program then ends by itself.
    bool ProgramEnding() const override { return false; }

  private:
    Interrupts& m_Interrupts;
    std::chrono::steady_clock::time_point m_LastLook;
};

/// While it lives, an interrupt cancels the procedure that runs.
class CancelOnInterrupt {
  public:
    CancelOnInterrupt(TerminalEventPump& events, ProcedureGate& procedures) : m_Events(events) {
        m_Events.OnInterrupt = [&procedures] { procedures.Cancel(); };
    }
    ~CancelOnInterrupt() { m_Events.OnInterrupt = nullptr; }
    CancelOnInterrupt(const CancelOnInterrupt&) = delete;
    CancelOnInterrupt& operator=(const CancelOnInterrupt&) = delete;

  private:
    TerminalEventPump& m_Events;
};

/// The operator at a terminal: messages and prompts on standard error, answers from standard
/// input. Once the input has ended, every question is declined.
class TerminalOperator final : public Operator {
  public:
    /// @param yes answers for an unattended station, without asking: yes to everything but
    ///        whether to try again, and input boxes with what they propose
    TerminalOperator(Interrupts& interrupts, bool yes) : m_Interrupts(interrupts), m_Yes(yes) {}

    Answer Ask(const Message& message) override;
    std::optional<std::string> AskText(const std::string& prompt, const std::string& proposed,
                                       const std::string& title) override;
    bool Unattended() const override { return m_Yes; }

    /// The last warning or critical message; empty when there was none.
    const std::string& LastTrouble() const { return m_LastTrouble; }

  private:
    Interrupts& m_Interrupts;
    bool m_Yes;
    std::string m_LastTrouble;
};

/// No desktop program is started from a terminal: the path is named instead.
class TerminalDocuments final : public DocumentOpener {
  public:
    bool OpenDocument(const std::filesystem::path& path) override;
};

/// The program is to end with this status.
struct ProgramEndRequest {
    ExitStatus Status;
};

class TerminalProgramEnd final : public ProgramEnd {
  public:
    [[noreturn]] void EndProgram(ExitStatus status) override { throw ProgramEndRequest{status}; }
};

/// Text without the carriage returns of message texts.
std::string WithPlainLineEnds(const std::string& text);

} // namespace ombrix
