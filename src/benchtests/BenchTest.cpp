#include "benchtests/BenchTest.h"

#include "platform/text/OleDate.h"

#include <exception>

namespace ombrix {

std::string FileStamp(const Station& station) {
    return DateText(station.World.Time.Now(), "yyyymmdd_hhnnss");
}

void AddFile(Outcome& outcome, const LineFile& file) {
    outcome.Files.insert(outcome.Files.end(), file.Files().begin(), file.Files().end());
    if (file.Trouble().empty())
        return;
    outcome.AllStored = false;
    outcome.KeptElsewhere = file.Trouble();
}

std::string StoppedLine(const std::string& error) {
    return "Stopped: " + error.substr(0, error.find("\r\n"));
}

bool RunLogged(LineFile& file, Outcome& outcome, const std::function<bool()>& body) {
    try {
        const bool complete = body();
        if (!complete)
            file.WriteLast(CancelledLine);
        AddFile(outcome, file);
        return complete;
    } catch (const std::exception& error) {
        file.WriteLast(StoppedLine(error.what()));
        AddFile(outcome, file);
        throw;
    }
}

} // namespace ombrix
