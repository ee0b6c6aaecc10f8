#pragma once

#include "platform/ports/Platform.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace ombrix {

/// Path of the log of the present day.
std::string LogPath(const Clock& clock);

/// Adds a line to the log, with date, time, program and process; line ends become " | ". For
/// what somebody may have to find out later: what was written to a unit, what went wrong. A
/// disk that takes no more costs the line and nothing else.
void WriteLog(Platform& world, std::string_view line);

/// How long logs are kept.
inline constexpr int LogDaysKept = 60;

/// Removes the logs of more than LogDaysKept days ago, so that they do not fill the disk.
void RemoveOldLogs(Platform& world);

/// The last lines of the two newest logs, oldest first. A log that cannot be read is named.
std::string LastLogLines(const Drive& files, std::size_t most);

/// Notes in the log that a procedure has begun and how it ended.
class ProcedureLog {
  public:
    ProcedureLog(Platform& world, std::string name);
    ProcedureLog(const ProcedureLog&) = delete;
    ProcedureLog& operator=(const ProcedureLog&) = delete;
    /// Without a word of how it ended it has been left by an error.
    ~ProcedureLog() { WriteLog(m_World, m_Name + ": " + m_Ended); }

    void Ended(std::string how) { m_Ended = std::move(how); }

  private:
    Platform& m_World;
    std::string m_Name;
    std::string m_Ended = "left by an error";
};

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

/// Shows a message with OK, unless the program is being closed: nobody is there any more to
/// read it then, and it stands in the log alone.
inline void TellOperator(Platform& world, const std::string& text,
                         MessageIcon icon = MessageIcon::Information) {
    if (world.Events.ProgramEnding())
        WriteLog(world, "Not shown: " + text);
    else
        world.Messages.Ask({text, icon, MessageButtons::Ok});
}

/// The same of a message about a file, which the operator may open from there.
/// @param file its real path; none where there is nothing to open
void TellOfFile(Platform& world, Message message, const std::filesystem::path& file);

} // namespace ombrix
