#include "journal/RunJournal.h"

#include "platform/os/ProgramLog.h"
#include "platform/ports/FreePath.h"

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
        files.CreateFolder(JournalFolder);
        m_Path = FreePath(files, JournalFolder + name, JournalEnding);
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

} // namespace ombrix
