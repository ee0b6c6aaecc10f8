#pragma once

#include "platform/ports/Platform.h"

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace ombrix {

/// Folder of the journals, ended by a backslash.
inline constexpr const char* JournalFolder = R"(C:\Journals\)";
inline constexpr const char* JournalEnding = ".jsonl";
/// A run that goes on has a file of this ending beside its journal, locked by its program; a
/// program that dies leaves the file without its lock.
inline constexpr const char* RunningEnding = ".running";

/// The file to which a run streams what it measures, line by line, so that a crash loses at most
/// the last second. A disk that takes no journal never stops the run, and is told when
/// that is over.
class RunJournal {
  public:
    /// @param what runs, as messages name it ("calibration")
    RunJournal(Platform& world, std::string what) : m_World(world), m_What(std::move(what)) {}
    RunJournal(const RunJournal&) = delete;
    RunJournal& operator=(const RunJournal&) = delete;

    /// Begins a journal of its own. @param name without folder and ending
    void Open(const std::string& name, const std::string& header);
    bool IsOpen() const { return m_File != nullptr; }
    /// Adds a line, after the samples before it.
    void Add(const std::string& line);
    /// Adds a sample, which is written within a second. @param sample as JSON
    void Sample(std::string_view sample);
    /// Adds the last line and lets the run be over.
    void Close(const std::string& last);

  private:
    using MachineTime = std::chrono::steady_clock;

    void Write(bool sync);
    void TakeSamples();
    void GoOnWithout(const char* reason);

    Platform& m_World;
    std::string m_What;
    std::string m_Path;
    std::unique_ptr<FileLock> m_Running;
    std::unique_ptr<OutputFile> m_File;
    std::string m_Unwritten;
    std::string m_Trouble;
    /// Separated by commas.
    std::string m_Samples;
    double m_Written_s = 0.0;
    MachineTime::time_point m_Synced;
};

/// Path of the file that stands for the run going on beside a journal.
std::string RunningMarkOf(const std::string& journal);

} // namespace ombrix
