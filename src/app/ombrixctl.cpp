// The program from a terminal: one line does one job.
#include "app/Assembly.h"
#include "board/eprom/EpromGuard.h"
#include "board/procedure/SafeOutputs.h"
#include "platform/os/Computer.h"
#include "platform/os/CrashReport.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/Paths.h"
#include "terminal/CommandLine.h"
#include "terminal/TerminalPorts.h"
#include "terminal/TerminalStages.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <span>
#include <system_error>

namespace {

using namespace ombrix;

struct Output {
    bool AsJson = false;

    int Print(const std::string& command, const CommandResult& result) const {
        const bool done = result.Status == ExitStatus::Done;
        if (AsJson) {
            nlohmann::ordered_json object = {{"command", command}, {"ok", done}};
            object.update(result.Json);
            if (!done)
                object["error"] = result.Error;
            // Texts of a damaged EPROM may be no UTF-8.
            Write(object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
        } else {
            Write(result.Text);
        }
        if (!done)
            WriteError(fmt::format("ombrixctl: {}\n", result.Error));
        return static_cast<int>(result.Status);
    }

  private:
    /// A reader who is gone has no use for the result; a disk that is full has lost it.
    static void Write(const std::string& text) {
        if ((std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) && errno != EPIPE)
            throw std::system_error(errno, std::generic_category(),
                                    "Standard output takes no more");
    }
};

CommandResult Failure(ExitStatus status, const std::string& error) {
    CommandResult result;
    result.Status = status;
    result.Error = error;
    return result;
}

CommandResult Unexpected(const std::exception& error, const CrashReport& crash) {
    return Failure(ExitStatus::NotPassed,
                   WithPlainLineEnds(UnexpectedErrorText(error, crash.WriteException(error))));
}

/// Carries out work; whatever stops it becomes a result with its reason.
CommandResult Attempt(const TerminalOperator& messages, const CrashReport& crash,
                      const std::function<CommandResult()>& work) {
    try {
        return work();
    } catch (const ProgramEndRequest& request) {
        return Failure(request.Status, WithPlainLineEnds(messages.LastTrouble()));
    } catch (const CommandError& error) {
        return Failure(error.Status(), error.what());
    } catch (const EpromError& error) {
        return Failure(ExitStatus::NotStored, WithPlainLineEnds(error.what()));
    } catch (const BoardInUse& error) {
        return Failure(ExitStatus::NotPassed, WithPlainLineEnds(error.what()));
    } catch (const DriveError& error) {
        return Failure(ExitStatus::NotStored, error.what());
    } catch (const std::filesystem::filesystem_error& error) {
        return Failure(ExitStatus::NotStored, error.what());
    } catch (const BoardError& error) {
        return Failure(ExitStatus::NotPassed, WithPlainLineEnds(error.what()));
    } catch (const std::exception& error) {
        return Unexpected(error, crash);
    }
}

CommandResult RunCommand(const ChosenCommand& command, const StationOptions& options, bool yes,
                         const CrashReport& crash) {
    Interrupts interrupts;
    TerminalEventPump events(interrupts);
    TerminalOperator messages(interrupts, yes);
    TerminalDocuments documents;
    TerminalProgramEnd end;
    return Attempt(messages, crash, [&] {
        Assembly assembly(options, {events, messages, documents, end}, "ombrixctl");
        NoWaitWindow wait;
        const ReportTools reports = assembly.Reports(wait);
        const JournalReaders journals = ReadersOfJournals(reports);
        const CancelOnInterrupt cancel(events, assembly.TheStation().Procedures);
        CommandContext context{
            assembly.TheStation(), events, messages, interrupts, reports, journals, options.Board,
            assembly.OptionsText()};
        ProcedureLog log(context.TheStation.World, "Command " + command.Name);
        CommandResult result = Attempt(messages, crash, [&] { return command.Run(context); });
        // What has failed to be switched off keeps its mark for the next start.
        if (!context.TheStation.AirMayFlow)
            LeaveOutputsAsSet(context.TheStation);
        // A script must not go on beside a unit that may be blowing.
        if (context.TheStation.AirMayFlow && result.Status == ExitStatus::Done) {
            result.Status = ExitStatus::NotPassed;
            result.Error = "Outputs that were left on could not be set to zero: air may still be "
                           "flowing.";
        }
        log.Ended(fmt::format("exit status {} {}", static_cast<int>(result.Status), result.Error));
        return result;
    });
}

} // namespace

int main(int argc, char** argv) {
    PrepareStandardStreams();
    CLI::App app{"Production and service tool for powder-testing accessories", "ombrixctl"};
    StationOptions options;
    ChosenCommand command;
    Output output;
    bool yes = false;
    AddStationOptions(app, options);
    app.add_flag("--yes", yes, "Answer every prompt in the affirmative");
    app.add_flag("--json", output.AsJson, "The result as one JSON object on standard output");
    app.set_version_flag("--version", "ombrixctl " OMBRIX_VERSION);
    AddCommands(app, command);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& success) {
        return app.exit(success); // --help, --version
    } catch (const CLI::ParseError& error) {
        // A line that cannot be parsed may still ask for JSON.
        const std::span<char*> words(argv, static_cast<std::size_t>(argc));
        output.AsJson =
            std::find(words.begin(), words.end(), std::string_view("--json")) != words.end();
        return output.Print("", Failure(ExitStatus::WrongUsage, error.what()));
    }
    const CrashReport crash(options.DataRoot / Paths::DiagnosticsName, "ombrixctl", OMBRIX_VERSION);
    try {
        return output.Print(command.Name, RunCommand(command, options, yes, crash));
    } catch (const std::exception& error) {
        // Standard output takes no more.
        fmt::print(stderr, "ombrixctl: {}\n", Unexpected(error, crash).Error);
        return static_cast<int>(ExitStatus::NotStored);
    }
}
