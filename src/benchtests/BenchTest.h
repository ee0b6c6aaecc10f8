#pragma once

#include "board/Station.h"
#include "board/procedure/Outcome.h"
#include "platform/ports/Drive.h"
#include "platform/text/OleDate.h"

#include <functional>
#include <memory>
#include <string>

namespace ombrix {

/// Where a bench test shows how far it is; each of them may be left out.
struct BenchTestView {
    /// The line on the test's own command.
    std::function<void(const std::string& text)> Caption = [](const std::string&) {};
    /// The line below it.
    std::function<void(const std::string& text)> Stage = [](const std::string&) {};
    /// The share of the test that is done, 0 to 1.
    std::function<void(double share)> Progress = [](double) {};
};

/// The CSV file of a bench test. Each line reaches the disk as a whole when it is written.
class TestLog {
  public:
    /// Creates the file and names it in the outcome. @throws DriveError
    TestLog(Station& station, const std::string& path, Outcome& outcome)
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
