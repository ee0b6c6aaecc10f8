#include "platform/ProgramLog.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

std::string OneLine(std::string_view text) {
    std::string line;
    for (const char character : text) {
        if (character == '\n')
            line += " | ";
        else if (character != '\r')
            line += character;
    }
    return line;
}

} // namespace

std::string LogPath(const Clock& clock) {
    const CivilTime now = clock.Now().ToCivil().value_or(CivilTime{});
    return fmt::format("{}ombrix_{:04}{:02}{:02}.log", LogFolder, now.Year, now.Month, now.Day);
}

void WriteLog(Platform& world, std::string_view line) {
    const CivilTime now = world.Time.Now().ToCivil().value_or(CivilTime{});
    try {
        world.Files.CreateFolder(LogFolder);
        world.Files.OpenForAppending(LogPath(world.Time))
            ->Write(fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02} {}[{}] {}\n", now.Year,
                                now.Month, now.Day, now.Hour, now.Minute, now.Second,
                                world.Program.Name, world.Program.ProcessId, OneLine(line)));
    } catch (const DriveError&) {
        return; // work goes on without a log
    }
}

} // namespace ombrix
