#pragma once

#include "board/Station.h"
#include "board/procedure/Outcome.h"
#include "platform/os/LineFile.h"

#include <functional>
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

/// The present time as it stands in the names of the tests' files.
std::string FileStamp(const Station& station);

/// Names the files in the outcome, and what the operator is to know of them.
void AddFile(Outcome& outcome, const LineFile& file);

/// The last line of a test that was cancelled, and of one that an error has stopped.
inline constexpr const char* CancelledLine = "Cancelled by the operator";
std::string StoppedLine(const std::string& error);

/// Runs a test with its file: whatever way it is left, its last line tells when it was cancelled or
/// stopped, and the outcome names the file.
/// @param body returns false when the operator has cancelled
bool RunLogged(LineFile& file, Outcome& outcome, const std::function<bool()>& body);

} // namespace ombrix
