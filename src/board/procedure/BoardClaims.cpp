#include "board/procedure/BoardClaims.h"

#include "platform/os/ProgramLog.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"

#include <fmt/format.h>

#include <charconv>
#include <sstream>
#include <string_view>
#include <system_error>

namespace ombrix {

std::string ClaimPath(Drive& files, std::int32_t serial, const char* kind) {
    files.CreateFolder(Paths::Claims);
    return fmt::format("{}AIB_{:05}.{}", Paths::Claims, serial, kind);
}

std::string NameOf(const ProgramIdentity& program) {
    return fmt::format("{}, process {} on {}", program.Name, program.ProcessId, program.Computer);
}

bool BoardClaims::Claim(std::int32_t serial) {
    std::unique_ptr<FileLock>& claim = m_Claims[serial];
    if (claim)
        return true;
    try {
        claim = m_World.Files.TryLock(ClaimPath(m_World.Files, serial, "lock"),
                                      NameOf(m_World.Program));
        m_Refusals[serial] = claim ? "" : "in use by " + Holder(serial);
    } catch (const DriveError& error) {
        m_Refusals[serial] = std::string("not kept from other programs: ") + error.what();
        throw;
    }
    return claim != nullptr;
}

std::string BoardClaims::Refusal(std::int32_t serial) const {
    const auto refusal = m_Refusals.find(serial);
    return refusal == m_Refusals.end() ? std::string() : refusal->second;
}

bool BoardClaims::ClaimUnlessTaken(std::int32_t serial) noexcept {
    try {
        return Claim(serial);
    } catch (const std::exception&) {
        return true;
    }
}

std::string BoardClaims::Holder(std::int32_t serial) const {
    const std::string holder = m_World.Files.ReadFile(ClaimPath(m_World.Files, serial, "lock"));
    return holder.empty() ? "another program" : holder;
}

void BoardClaims::Require(std::int32_t serial) {
    if (!Claim(serial))
        throw BoardInUse(fmt::format("Board {} is in use by {}.\r\n\r\nPlease wait until that "
                                     "program has ended, or end it, and try again.",
                                     serial, Holder(serial)));
}

std::string LineOfClaim(std::istream& text) {
    std::string line;
    std::getline(text, line);
    return line.empty() ? "unknown" : line;
}

std::string TextOfClaim(const Drive& files, const std::string& path) {
    try {
        return files.ReadFile(path);
    } catch (const DriveError&) {
        return {};
    }
}

namespace {

constexpr const char* MarkKind = "running";

} // namespace

void LeaveMark(Platform& world, std::int32_t serial, const std::string& procedure) {
    world.Files.ReplaceFile(
        ClaimPath(world.Files, serial, MarkKind),
        fmt::format("{}\n{}\n{}\n", procedure, IsoText(world.Time.Now()), NameOf(world.Program)));
}

std::optional<RunningMark> FindMark(Platform& world, std::int32_t serial) {
    const std::string path = ClaimPath(world.Files, serial, MarkKind);
    if (!world.Files.FileExists(path))
        return std::nullopt;
    std::istringstream text(TextOfClaim(world.Files, path));
    RunningMark mark;
    for (std::string* field : {&mark.Procedure, &mark.Since, &mark.Program})
        *field = LineOfClaim(text);
    return mark;
}

std::vector<std::int32_t> MarkedBoards(const Drive& files) {
    std::vector<std::int32_t> serials;
    for (const std::string& name : files.FilesIn(Paths::Claims)) {
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
