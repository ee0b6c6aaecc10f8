#pragma once

#include "board/procedure/BenchProcedure.h"
#include "platform/ports/Drive.h"
#include "platform/text/DateText.h"

#include <memory>
#include <string>

namespace ombrix {

/// The CSV file of a bench test. Each line reaches the disk as a whole when it is written.
class TestLog {
  public:
    /// Creates the file and names it in the outcome. @throws DriveError
    TestLog(Station& station, const std::string& path, ProcedureOutcome& outcome)
        : m_File(station.World.Files.OpenForWriting(path)) {
        outcome.Files.push_back(m_File->RealPath());
    }

    /// @throws DriveError
    void WriteLine(const std::string& line) { m_File->Write(line + "\r\n"); }

    /// The time of the start as it stands in the names of these files.
    static std::string Stamp(const Station& station) {
        return DateText(station.World.Time.Now(), "yyyymmdd_hhnnss");
    }

  private:
    std::unique_ptr<OutputFile> m_File;
};

} // namespace ombrix
