#include "board/RunningMark.h"

#include "board/BoardClaims.h"
#include "platform/ProgramLog.h"

#include <fmt/format.h>

#include <sstream>

namespace ombrix {

namespace {

constexpr const char* MarkKind = "running";

std::string NextLine(std::istream& text) {
    std::string line;
    std::getline(text, line);
    return line.empty() ? "unknown" : line;
}

} // namespace

void LeaveMark(Platform& world, std::int32_t serial, const std::string& procedure) {
    const CivilTime now = world.Time.Now().ToCivil().value_or(CivilTime{});
    world.Files.ReplaceFile(ClaimPath(world.Files, serial, MarkKind),
                            fmt::format("{}\n{:04}-{:02}-{:02} {:02}:{:02}:{:02}\n{}\n", procedure,
                                        now.Year, now.Month, now.Day, now.Hour, now.Minute,
                                        now.Second, NameOf(world.Program)));
}

std::optional<RunningMark> FindMark(Platform& world, std::int32_t serial) {
    const std::string path = ClaimPath(world.Files, serial, MarkKind);
    if (!world.Files.FileExists(path))
        return std::nullopt;
    std::istringstream text(world.Files.ReadFile(path));
    RunningMark mark;
    for (std::string* field : {&mark.Procedure, &mark.Since, &mark.Program})
        *field = NextLine(text);
    return mark;
}

void RemoveMark(Platform& world, std::int32_t serial) {
    try {
        world.Files.RemoveFile(ClaimPath(world.Files, serial, MarkKind));
    } catch (const DriveError& error) {
        WriteLog(world,
                 fmt::format("The mark of a procedure that has ended stays: {}", error.what()));
    }
}

} // namespace ombrix
