#pragma once

#include "board/Station.h"
#include "board/procedure/Outcome.h"
#include "journal/UnfinishedRuns.h"
#include "platform/ports/Platform.h"
#include "reports/ReportFile.h"
#include "terminal/TerminalPorts.h"

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>

namespace ombrix {

/// What a command of the terminal program came to.
struct CommandResult {
    ExitStatus Status = ExitStatus::Done;
    /// The keys of the command; those that every command has are added when it is printed.
    nlohmann::ordered_json Json = nlohmann::ordered_json::object();
    /// The same for a person to read.
    std::string Text;
    /// Why the status is not Done.
    std::string Error;
};

/// A command cannot go on.
class CommandError : public std::runtime_error {
  public:
    CommandError(ExitStatus status, const std::string& text)
        : std::runtime_error(text), m_Status(status) {}
    ExitStatus Status() const noexcept { return m_Status; }

  private:
    ExitStatus m_Status;
};

/// What the commands work with.
struct CommandContext {
    Station& TheStation;
    TerminalEventPump& Events;
    TerminalOperator& Messages;
    Interrupts& Signals;
    const ReportTools& Reports;
    const JournalReaders& Journals;
    std::int32_t Board = 0;
    /// The program's options in use, a line each.
    std::string Options{};
};

/// Detects and programs the boards as the window does at its start.
/// @throws CommandError when there is none
void DetectBoards(CommandContext& context);

/// The chosen board, made current, with its record read. @throws CommandError
AIB& ChosenBoard(CommandContext& context);

ExitStatus StatusOf(const Outcome& outcome);

/// @throws CommandError for a number that a unit cannot hold
void RequireMFCNumber(const std::string& number);

/// Adds the key "files" and, to the readable text, a line for each file.
void AddFiles(CommandResult& result, const std::vector<std::filesystem::path>& files);

/// Status, error and files of a procedure. @param name what was cancelled ("The air flow test")
void AddOutcome(CommandResult& result, const Outcome& outcome, const std::string& name);

} // namespace ombrix
