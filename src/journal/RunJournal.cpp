#include "journal/RunJournal.h"

#include "journal/UnitJson.h"
#include "platform/os/ProgramLog.h"
#include "platform/ports/Folders.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <utility>

namespace ombrix {

namespace {

/// Less than the second that may be lost, by more than two samples lie apart.
constexpr double WriteSpacing_s = 0.7;

} // namespace

std::string RunningMarkOf(const std::string& journal) {
    return journal.substr(0, journal.size() - std::string_view(JournalEnding).size()) +
           RunningEnding;
}

void RunJournal::Open(const std::string& name, const std::string& header) {
    try {
        Drive& files = m_World.Files;
        files.CreateFolder(Paths::Journals);
        m_Path = FreePath(files, Paths::Journals + name + JournalEnding);
        const ProgramIdentity& program = m_World.Program;
        m_Running =
            files.TryLock(RunningMarkOf(m_Path), fmt::format("{}, process {} on {}", program.Name,
                                                             program.ProcessId, program.Computer));
        if (!m_Running)
            throw DriveError(m_Path + " is being written by another program");
        m_File = files.OpenForAppending(m_Path);
        m_Unwritten = header;
        Write(true);
    } catch (const DriveError& error) {
        GoOnWithout(error.what());
    }
}

void RunJournal::Add(const std::string& line) {
    if (!IsOpen())
        return;
    TakeSamples();
    m_Unwritten += line;
    Write(false);
}

void RunJournal::Sample(std::string_view sample) {
    if (!IsOpen())
        return;
    m_Samples += m_Samples.empty() ? "" : ",";
    m_Samples += sample;
    if (MonotonicSeconds(m_World.Time) - m_Written_s < WriteSpacing_s)
        return;
    TakeSamples();
    Write(false);
}

void RunJournal::Close(const std::string& last) {
    Add(last);
    if (IsOpen())
        Write(true);
    m_File.reset();
    // Not while it measured: a question that waits for somebody would hold up driven air.
    if (!m_Trouble.empty())
        TellOperator(m_World, std::exchange(m_Trouble, {}), MessageIcon::Warning);
    if (!m_Running)
        return;
    try {
        m_World.Files.RemoveFile(RunningMarkOf(m_Path));
    } catch (const DriveError&) {
        // The last line says as well that the run is over.
    }
    m_Running.reset();
}

void RunJournal::TakeSamples() {
    if (m_Samples.empty())
        return;
    m_Unwritten += fmt::format("{{\"samples\":[{}]}}\n", std::exchange(m_Samples, {}));
}

void RunJournal::Write(bool sync) {
    // Power fails in the machine's time, which a simulated bench may run ahead of.
    const auto now = MachineTime::now();
    try {
        if (!m_Unwritten.empty())
            m_File->Write(std::exchange(m_Unwritten, {}));
        if (sync || now - m_Synced >= std::chrono::duration<double>(WriteSpacing_s)) {
            m_File->Sync();
            m_Synced = now;
        }
        m_Written_s = MonotonicSeconds(m_World.Time);
    } catch (const DriveError& error) {
        GoOnWithout(error.what());
    }
}

void RunJournal::GoOnWithout(const char* reason) {
    m_File.reset();
    m_Trouble =
        fmt::format("The journal of the {0} could not be written:\r\n\r\n{1}\r\n\r\nThe {0} "
                    "went on without it. What it measured would have been lost with the "
                    "program: please make room on the disk for the next one.",
                    m_What, reason);
    WriteLog(m_World, m_Trouble);
}

namespace {

/// Version of the format, which stands in the first line.
constexpr int JournalVersion = 1;

SingleJson BoardJson(const AIB& board) {
    return {{"serial", board.SerialNumber()},
            {"bus", board.BusTypeText()},
            {"hwVersion", board.HWVersion()},
            {"buildDate", Trimmed(board.BuildDate())}};
}

/// An object without members for a line that cannot be read.
SingleJson ObjectOf(std::string_view line) {
    SingleJson json = SingleJson::parse(line, nullptr, false);
    return json.is_object() ? json : SingleJson::object();
}

} // namespace

std::string JournalName(const std::string& unit, const std::string& kind, OleDate start) {
    return fmt::format("{}_{}_{}", unit, kind, DateText(start, "yyyymmdd_hhnnss"));
}

SingleJson HeaderJson(const JournalHeader& header, const AIB& board) {
    return {{"journal", JournalVersion},           {"kind", header.Kind},
            {"start", DateJson(header.Start)},     {"program", header.Program.Name},
            {"version", header.Program.Version},   {"station", header.Program.Computer},
            {"process", header.Program.ProcessId}, {"board", BoardJson(board)},
            {"unit", UnitJson(header.Unit.Record)}};
}

JournalHeader HeaderOf(const SingleJson& line) {
    if (const int version = IntegerOf<int>(line.at("journal")); version != JournalVersion)
        throw std::runtime_error(fmt::format(
            "it is a journal of version {}, which this program does not know", version));
    return {line.at("kind").get<std::string>(), DateOf(line.at("start")),
            ProgramIdentity{
                line.at("program").get<std::string>(), line.at("version").get<std::string>(),
                line.at("station").get<std::string>(), IntegerOf<std::int64_t>(line.at("process"))},
            ACU{IntegerOf<std::int32_t>(line.at("board").at("serial")), RecordOf(line.at("unit"))}};
}

std::string EndLine(OleDate date, const std::string& verdict,
                    const std::vector<std::string>& files) {
    return LineOf({{"end", DateJson(date)}, {"verdict", verdict}, {"files", files}});
}

bool HasEnded(std::string_view text) {
    const std::size_t end = text.rfind('\n');
    if (end == std::string_view::npos || end == 0)
        return false;
    const std::size_t before = text.rfind('\n', end - 1);
    const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
    return ObjectOf(text.substr(begin, end - begin)).contains("end");
}

std::string KindOfJournal(std::string_view text) {
    const SingleJson header = ObjectOf(text.substr(0, text.find('\n')));
    const auto kind = header.find("kind");
    return kind != header.end() && kind->is_string() ? kind->get<std::string>() : std::string();
}

void Require(bool holds, const std::string& otherwise) {
    if (!holds)
        throw std::runtime_error(otherwise);
}

void ReadJournalLines(std::string_view text, const std::function<void(const SingleJson&)>& take) {
    if (text.find('\n') == std::string_view::npos)
        throw JournalError("The journal is empty: the run had not begun to measure.");
    for (int number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos)
            break; // cut off
        try {
            take(SingleJson::parse(text.substr(0, end)));
        } catch (const std::runtime_error& error) {
            throw JournalError(
                fmt::format("The journal is damaged in line {}: {}.", number, error.what()));
        } catch (const std::exception&) { // of the JSON, or of what it is taken into
            throw JournalError(fmt::format("The journal is damaged in line {}.", number));
        }
        text.remove_prefix(end + 1);
    }
}

} // namespace ombrix
