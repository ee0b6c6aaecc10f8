#pragma once

#include "calibration/run/CalibrationServices.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
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
    virtual RemadeReport MakeReport(const CalibrationServices& services) const = 0;
    /// Writes down that the run was cut off, where such runs are kept beside their journals.
    /// @param files of its report @return false when that could not be stored; it has been told
    virtual bool NoteInterruption(Platform& world, const std::vector<std::string>& files) const = 0;
};

/// Reads the text of a journal. @throws JournalError
using JournalReading =
    std::function<std::unique_ptr<JournalledRun>(Platform& world, std::string_view text)>;

} // namespace ombrix
