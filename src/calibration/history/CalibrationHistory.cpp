#include "calibration/history/CalibrationHistory.h"

#include "calibration/history/HistoryJson.h"
#include "platform/os/TellOperator.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace ombrix {

namespace {

std::string PathOf(std::int32_t serial) {
    return fmt::format("{}ACU{:05}.jsonl", HistoryFolder, serial);
}

/// What a crash has cut off must not spoil the line that comes next.
bool EndsWithinALine(const Drive& files, const std::string& path) {
    return files.FileExists(path) && !files.ReadFile(path).ends_with('\n');
}

} // namespace

bool AppendToHistory(Platform& world, HistoryEntry entry) {
    entry.Limits = LimitsOf(entry.Kind);
    try {
        world.Files.CreateFolder(HistoryFolder);
        const std::string path = PathOf(entry.Serial);
        const char* const begin = EndsWithinALine(world.Files, path) ? "\n" : "";
        const auto file = world.Files.OpenForAppending(path);
        file->Write(begin + LineOf(EntryJson(entry)));
        file->Sync();
        return true;
    } catch (const DriveError& error) {
        TellOperator(world,
                     std::string("The run could not be added to the calibration history:\r\n\r\n") +
                         error.what() + "\r\n\r\nPlease make room on the disk and keep the report.",
                     MessageIcon::Warning);
        return false;
    }
}

bool IsInHistory(const Drive& files, const HistoryEntry& run) {
    const std::vector<HistoryEntry> runs = ReadHistory(files, run.Serial).Runs;
    return std::any_of(runs.begin(), runs.end(), [&run](const HistoryEntry& other) {
        return other.Kind == run.Kind && other.When == run.When &&
               other.Program.ProcessId == run.Program.ProcessId &&
               other.Program.Computer == run.Program.Computer;
    });
}

std::vector<std::int32_t> UnitsWithHistory(const Drive& files) {
    std::vector<std::int32_t> serials;
    for (const std::string& name : files.FilesIn(HistoryFolder)) {
        std::int32_t serial = 0;
        if (std::sscanf(name.c_str(), "ACU%d", &serial) == 1 && PathOf(serial).ends_with(name))
            serials.push_back(serial);
    }
    std::sort(serials.begin(), serials.end());
    return serials;
}

CalibrationHistory ReadHistory(const Drive& files, std::int32_t serial) {
    CalibrationHistory history;
    if (!files.FileExists(PathOf(serial)))
        return history;
    std::istringstream text(files.ReadFile(PathOf(serial)));
    for (std::string line; std::getline(text, line);) {
        try {
            history.Runs.push_back(EntryOf(SingleJson::parse(line)));
            history.Runs.back().Line = line;
        } catch (const std::exception&) {
            ++history.DamagedLines;
        }
    }
    return history;
}

} // namespace ombrix
