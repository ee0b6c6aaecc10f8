#include "board/procedure/RunningMark.h"

#include "board/procedure/BoardClaims.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/DateText.h"

#include <fmt/format.h>

#include <charconv>
#include <sstream>
#include <string_view>
#include <system_error>

namespace ombrix {

namespace {

constexpr const char* MarkKind = "running";

std::string NextLine(std::istream& text) {
    std::string line;
    std::getline(text, line);
    return line.empty() ? "unknown" : line;
}

std::string ContentOf(const Drive& files, const std::string& path) {
    try {
        return files.ReadFile(path);
    } catch (const DriveError&) {
        return {};
    }
}

} // namespace

void LeaveMark(Platform& world, std::int32_t serial, const std::string& procedure) {
    world.Files.ReplaceFile(ClaimPath(world.Files, serial, MarkKind),
                            fmt::format("{}\n{}\n{}\n", procedure,
                                        DateText(world.Time.Now(), "yyyy-mm-dd hh:nn:ss"),
                                        NameOf(world.Program)));
}

std::optional<RunningMark> FindMark(Platform& world, std::int32_t serial) {
    const std::string path = ClaimPath(world.Files, serial, MarkKind);
    if (!world.Files.FileExists(path))
        return std::nullopt;
    std::istringstream text(ContentOf(world.Files, path));
    RunningMark mark;
    for (std::string* field : {&mark.Procedure, &mark.Since, &mark.Program})
        *field = NextLine(text);
    return mark;
}

std::vector<std::int32_t> MarkedBoards(const Drive& files) {
    std::vector<std::int32_t> serials;
    for (const std::string& name : files.FilesIn(ClaimFolder)) {
        std::int32_t serial = 0;
        constexpr std::string_view begin = "AIB_";
        const std::size_t dot = name.find('.');
        if (name.starts_with(begin) && name.ends_with(std::string(".") + MarkKind) &&
            std::from_chars(name.data() + begin.size(), name.data() + dot, serial).ec ==
                std::errc{})
            serials.push_back(serial);
    }
    return serials;
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
