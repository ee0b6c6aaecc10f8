#pragma once

#include "platform/ports/Platform.h"

namespace ombrix {

/// The person at the bench, with everything shown and answered noted in the program's log.
class LoggedOperator final : public Operator {
  public:
    /// @param messages who is asked @param world has the log; it may still be in the making
    LoggedOperator(Operator& messages, Platform& world) : m_Messages(messages), m_World(world) {}

    Answer Ask(const Message& message) override;
    std::optional<std::string> AskText(const std::string& prompt, const std::string& proposed,
                                       const std::string& title) override;
    bool Unattended() const override { return m_Messages.Unattended(); }

  private:
    Operator& m_Messages;
    Platform& m_World;
};

/// The end of the program at once, noted in the log: what goes on elsewhere ends with it.
class LoggedEnd final : public ProgramEnd {
  public:
    /// @param world has the log; it may still be in the making
    LoggedEnd(ProgramEnd& end, Platform& world) : m_End(end), m_World(world) {}

    [[noreturn]] void EndProgram(ExitStatus status) override;

  private:
    ProgramEnd& m_End;
    Platform& m_World;
};

} // namespace ombrix
