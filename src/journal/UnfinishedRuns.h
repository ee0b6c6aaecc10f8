#pragma once

#include "journal/JournalledRun.h"

#include <memory>
#include <string>
#include <vector>

namespace ombrix {

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
void OfferUnfinishedRuns(const CalibrationServices& services, const JournalReading& read);

} // namespace ombrix
