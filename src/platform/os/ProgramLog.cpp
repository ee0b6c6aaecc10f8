#include "platform/os/ProgramLog.h"

#include "platform/ports/Folders.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

namespace ombrix {

namespace {

std::string OneLine(std::string_view text) {
    std::string line;
    for (const char character : text) {
        if (character == '\n')
            line += " | ";
        else if (character != '\r')
            line += character;
    }
    return line;
}

/// Names of logs stand in the order of their days.
std::string LogName(OleDate date) {
    return "ombrix_" + DateText(date, "yyyymmdd") + ".log";
}

bool IsLogName(std::string_view name) {
    return name.size() == LogName({}).size() && name.starts_with("ombrix_") &&
           name.ends_with(".log");
}

/// Where the last lines of a text begin.
std::size_t StartOfLastLines(std::string_view text, std::size_t lines) {
    std::size_t start = text.size();
    for (; lines > 0 && start > 0; --lines) {
        // The end of the line before the one that is taken.
        const std::size_t end = start < 2 ? std::string_view::npos : text.rfind('\n', start - 2);
        start = end == std::string_view::npos ? 0 : end + 1;
    }
    return start;
}

} // namespace

std::string LogPath(const Clock& clock) {
    return Paths::Logs + LogName(clock.Now());
}

void WriteLog(Platform& world, std::string_view line) {
    try {
        world.Files.CreateFolder(Paths::Logs);
        world.Files.OpenForAppending(LogPath(world.Time))
            ->Write(fmt::format("{} {}[{}] {}\n", IsoText(world.Time.Now()), world.Program.Name,
                                world.Program.ProcessId, OneLine(line)));
    } catch (const DriveError&) {
        return; // work goes on without a log
    }
}

void RemoveOldLogs(Platform& world) {
    const std::string oldest = LogName(OleDate(world.Time.Now().Days() - LogDaysKept));
    for (const std::string& name : world.Files.FilesIn(Paths::Logs)) {
        if (!IsLogName(name) || name >= oldest)
            continue;
        try {
            world.Files.RemoveFile(Paths::Logs + name);
        } catch (const DriveError& error) {
            WriteLog(world, error.what());
        }
    }
}

std::string LastLogLines(const Drive& files, std::size_t most) {
    constexpr std::size_t newest = 2;
    std::vector<std::string> names = files.FilesIn(Paths::Logs);
    std::erase_if(names, [](const std::string& name) { return !IsLogName(name); });
    std::string text;
    for (std::size_t i = names.size() - std::min(newest, names.size()); i < names.size(); ++i) {
        try {
            text += files.ReadFile(Paths::Logs + names[i]);
        } catch (const DriveError& error) {
            text += std::string(error.what()) + "\n";
        }
    }
    return text.substr(StartOfLastLines(text, most));
}

ProcedureLog::ProcedureLog(Platform& world, std::string name)
    : m_World(world), m_Name(std::move(name)) {
    WriteLog(m_World, m_Name + ": begun");
}

namespace {

std::string Heading(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::Question: return "Question: ";
    case MessageIcon::Warning: return "Warning: ";
    case MessageIcon::Critical: return "Error: ";
    case MessageIcon::Information: break;
    }
    return "Message: ";
}

const char* Name(Answer answer) {
    switch (answer) {
    case Answer::Cancel: return "Cancel";
    case Answer::Yes: return "Yes";
    case Answer::No: return "No";
    case Answer::Retry: return "Retry";
    case Answer::Open: return "Open";
    case Answer::Ok: break;
    }
    return "OK";
}

} // namespace

Answer LoggedOperator::Ask(const Message& asked) {
    const Message message = WithPlace(asked, m_World.Files);
    // Noted before it is answered: the program may die with the box still open.
    WriteLog(m_World, Heading(message.Icon) + message.Text);
    const Answer answer = m_Messages.Ask(message);
    if (message.Buttons != MessageButtons::Ok || message.OffersToOpen)
        WriteLog(m_World, std::string("Answer: ") + Name(answer));
    return answer;
}

std::optional<std::string> LoggedOperator::AskText(const std::string& prompt,
                                                   const std::string& proposed,
                                                   const std::string& title) {
    WriteLog(m_World, "Question: " + prompt);
    auto text = m_Messages.AskText(prompt, proposed, title);
    WriteLog(m_World, text ? "Answer: \"" + *text + "\"" : "Answer: Cancel");
    return text;
}

void TellOfFile(Platform& world, Message message, const std::filesystem::path& file) {
    message.OffersToOpen = !file.empty();
    if (world.Events.ProgramEnding())
        WriteLog(world, "Not shown: " + message.Text);
    else if (world.Messages.Ask(message) == Answer::Open)
        OpenOrTell(world, file);
}

void LoggedEnd::EndProgram(ExitStatus status) {
    WriteLog(m_World,
             "Program ends at once, exit status " + std::to_string(static_cast<int>(status)));
    m_End.EndProgram(status);
    std::abort(); // never reached, which the compiler does not see of a virtual call
}

} // namespace ombrix
