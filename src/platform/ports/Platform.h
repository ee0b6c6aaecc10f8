#pragma once

#include "platform/ports/Clock.h"
#include "platform/ports/Drive.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace ombrix {

/// What a long procedure asks of the world around it while it waits.
class EventPump {
  public:
    virtual ~EventPump() = default;

    /// Lets pending events be handled: clicks, repaints, an interrupt from the terminal.
    virtual void ProcessPendingEvents() = 0;
    /// True once the operator has closed the program; a running procedure then ends safely.
    virtual bool ProgramEnding() const = 0;
};

enum class MessageIcon { Information, Question, Warning, Critical };
enum class MessageButtons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };
enum class Answer { Ok, Cancel, Yes, No, Retry, Open };

/// A modal message box. Texts use CR LF as line end, as they stand in the operator's manual.
struct Message {
    std::string Text;
    MessageIcon Icon = MessageIcon::Information;
    MessageButtons Buttons = MessageButtons::Ok;
    std::string Title = {};
    /// An unattended station declines: to try something again, so that nothing runs for ever, and
    /// to store what somebody ought to have looked at.
    bool DeclinedUnattended = false;
    /// The refusing button is the one that Enter presses.
    bool DefaultsToRefusal = false;
    /// Has a button "Open" too, for the file that it tells of; on a terminal, which opens nothing,
    /// it has none.
    bool OffersToOpen = false;
    /// The file or folder that it tells of, on this computer: a desktop offers to show it.
    std::filesystem::path Place = {};
};

/// The person at the bench: told of failures and asked for decisions.
class Operator {
  public:
    virtual ~Operator() = default;

    /// Shows the message until it is answered.
    virtual Answer Ask(const Message& message) = 0;
    /// Asks for a line of text; nothing when the operator cancels.
    virtual std::optional<std::string>
    AskText(const std::string& prompt, const std::string& proposed, const std::string& title) = 0;
    /// Nobody is there: every answer is the proposed one, so that asking again changes nothing.
    virtual bool Unattended() const { return false; }
};

/// Opens a file or folder with the program that the desktop has for it.
class DocumentOpener {
  public:
    virtual ~DocumentOpener() = default;

    /// False when the desktop has no program for it or none could be started.
    virtual bool OpenDocument(const std::filesystem::path& path) = 0;
};

/// Exit statuses of the programs, as scripts rely on them.
enum class ExitStatus {
    Done = 0,
    NotPassed = 1,
    WrongUsage = 2,
    NoBoard = 3,
    NotStored = 4,
};

/// Ends the program at once, when going on would be unsafe.
class ProgramEnd {
  public:
    virtual ~ProgramEnd() = default;

    /// Does not return; no window is shown and no clean-up done beyond what ending does.
    [[noreturn]] virtual void EndProgram(ExitStatus status) = 0;
};

/// Who this program is, for files that others read.
struct ProgramIdentity {
    /// "ombrix" or "ombrixctl".
    std::string Name;
    /// "major.minor.revision"
    std::string Version;
    /// Name of the computer: the bench or station.
    std::string Computer;
    std::int64_t ProcessId = 0;
};

/// Everything that the core asks of the world, chosen once by main and handed down.
struct Platform {
    Clock& Time;
    EventPump& Events;
    Operator& Messages;
    Drive& Files;
    DocumentOpener& Documents;
    ProgramEnd& End;
    ProgramIdentity Program{};
};

} // namespace ombrix
