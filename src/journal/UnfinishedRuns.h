#pragma once

#include "platform/ports/Platform.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrix {

/// What became of workbooks that were made again.
struct RemadeReport {
    /// Real paths, in the order of writing.
    std::vector<std::filesystem::path> Files;
    /// Every workbook that the run makes lies where it belongs.
    bool AllStored = true;
};

/// A run of whatever kind as its journal tells it, and what can be done with it.
class JournalledRun {
  public:
    JournalledRun() = default;
    JournalledRun(const JournalledRun&) = delete;
    JournalledRun& operator=(const JournalledRun&) = delete;
    virtual ~JournalledRun() = default;

    /// The run came to its end, whichever way.
    virtual bool Ended() const = 0;
    /// One line that says which run it was and how far it had come.
    virtual std::string Describe() const = 0;
    /// There is something to make workbooks of.
    virtual bool HasReport() const = 0;
    /// Makes its workbooks as the run does; they replace nothing, and no board is needed.
    virtual RemadeReport MakeReport() const = 0;
    /// Writes down that the run was cut off, where such runs are kept beside their journals.
    /// @param files of its report @return false when that could not be stored; it has been told
    virtual bool NoteInterruption(Platform& world, const std::vector<std::string>& files) const = 0;
};

/// Reads the journals of every kind of run. Those who know a kind say how; the program hands the
/// readers down.
class JournalReaders {
  public:
    /// Reads the text of a journal. @throws JournalError
    using Reading = std::function<std::unique_ptr<JournalledRun>(std::string_view text)>;

    /// @param kind as the first line of a journal names it
    void Add(const std::string& kind, Reading read) { m_Readings[kind] = std::move(read); }
    /// @throws JournalError
    std::unique_ptr<JournalledRun> Read(std::string_view text) const;

  private:
    std::map<std::string, Reading> m_Readings;
};

/// A run whose program was gone before it had ended. While the object lives, no other program
/// takes it for unfinished.
struct UnfinishedRun {
    /// Path of its journal.
    std::string Journal;
    std::unique_ptr<FileLock> Hold;
};

/// The unfinished runs, in the order of their names; runs that are going on are not among them.
std::vector<UnfinishedRun> FindUnfinishedRuns(Platform& world);

/// Notes the interruption and ends the journal. @param files of the run's report
/// @return false when it could not be noted: the run stays unfinished
bool SettleUnfinishedRun(Platform& world, const std::string& journal, const JournalledRun& run,
                         const std::vector<std::filesystem::path>& files);

/// Asks of each unfinished run whether to write the report of what there is, to discard it, or to
/// ask again at the next start; and does that.
void OfferUnfinishedRuns(Platform& world, const JournalReaders& readers);

} // namespace ombrix
