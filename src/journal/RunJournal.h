#pragma once

#include "board/AIB.h"
#include "board/unit/ACURecord.h"
#include "platform/ports/Platform.h"
#include "platform/text/SingleJson.h"

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrix {

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

/// A journal cannot be read. The text says where it is damaged.
class JournalError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// What the first line of every journal says.
struct JournalHeader {
    /// Name of what runs ("velocity-system").
    std::string Kind{};
    OleDate Start{};
    ProgramIdentity Program{};
    /// The unit as the run found it.
    ACU Unit{};
};

/// File name of a journal, without folder and ending. @param unit "ACU00301"
std::string JournalName(const std::string& unit, const std::string& kind, OleDate start);

/// The first line; a kind of run may add to it. @param board tells the serial number
SingleJson HeaderJson(const JournalHeader& header, const AIB& board);
/// @throws std::runtime_error for a version that is not known, SingleJson::exception
JournalHeader HeaderOf(const SingleJson& line);

/// What a run that its program did not end came to.
inline constexpr const char* InterruptedVerdict = "interrupted";

/// The last line of a run that has ended.
std::string EndLine(OleDate date, const std::string& verdict,
                    const std::vector<std::string>& files);
/// Whether the text ends with such a line.
bool HasEnded(std::string_view text);

/// The kind that a journal names; empty when its first line cannot be read.
std::string KindOfJournal(std::string_view text);

/// What has to hold of a line. @param otherwise what is wrong with it, as the error goes on
/// @throws std::runtime_error
void Require(bool holds, const std::string& otherwise);

/// Hands over line by line. What a crash has cut off at the end is passed over.
/// @param take may throw what it likes for a line that is damaged
/// @throws JournalError when a line is damaged, or there is none
void ReadJournalLines(std::string_view text, const std::function<void(const SingleJson&)>& take);

} // namespace ombrix
