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

namespace {

constexpr const char* LockKind = "lock";
constexpr const char* MarkKind = "running";

std::string ClaimPath(std::int32_t serial, const char* kind) {
    return fmt::format("{}AIB_{:05}.{}", Paths::Claims, serial, kind);
}

} // namespace

std::string NameOf(const ProgramIdentity& program) {
    return fmt::format("{}, process {} on {}", program.Name, program.ProcessId, program.Computer);
}

bool BoardClaims::Claim(std::int32_t serial) {
    std::unique_ptr<FileLock>& claim = m_Claims[serial];
    if (claim)
        return true;
    try {
        m_World.Files.CreateFolder(Paths::Claims);
        claim = m_World.Files.TryLock(ClaimPath(serial, LockKind), NameOf(m_World.Program));
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
    const std::string holder = m_World.Files.ReadFile(ClaimPath(serial, LockKind));
    return holder.empty() ? "another program" : holder;
}

void BoardClaims::Require(std::int32_t serial) {
    if (!Claim(serial))
        throw BoardInUse(fmt::format("Board {} is in use by {}.\r\n\r\nPlease wait until that "
                                     "program has ended, or end it, and try again.",
                                     serial, Holder(serial)));
}

void LeaveNote(Platform& world, std::int32_t serial, const char* kind, const std::string& text) {
    world.Files.CreateFolder(Paths::Claims);
    world.Files.OverwriteFile(ClaimPath(serial, kind), text);
}

std::optional<std::string> FindNote(const Drive& files, std::int32_t serial, const char* kind) {
    const std::string path = ClaimPath(serial, kind);
    if (!files.FileExists(path))
        return std::nullopt;
    try {
        std::string text = files.ReadFile(path);
        return text.empty() ? std::nullopt : std::optional(std::move(text));
    } catch (const DriveError&) {
        return "\n"; // it tells nothing, and is there all the same
    }
}

std::vector<std::int32_t> NotedBoards(const Drive& files, const char* kind) {
    std::vector<std::int32_t> serials;
    for (const std::string& name : files.FilesIn(Paths::Claims)) {
        std::int32_t serial = 0;
        constexpr std::string_view begin = "AIB_";
        const std::size_t dot = name.find('.');
        if (name.starts_with(begin) && name.ends_with(std::string(".") + kind) &&
            std::from_chars(name.data() + begin.size(), name.data() + dot, serial).ec ==
                std::errc{})
            serials.push_back(serial);
    }
    return serials;
}

void RemoveNote(Platform& world, std::int32_t serial, const char* kind) {
    const std::string path = ClaimPath(serial, kind);
    if (!world.Files.FileExists(path))
        return;
    try {
        // Emptied first: a user cannot remove what another one has left in a shared folder.
        world.Files.OverwriteFile(path, "");
        world.Files.RemoveFile(path);
    } catch (const DriveError& error) {
        if (!FindNote(world.Files, serial, kind))
            return;
        WriteLog(world, fmt::format("The mark of what has ended stays: {}", error.what()));
    }
}

std::string NextLine(std::istream& note) {
    std::string line;
    std::getline(note, line);
    return line.empty() ? "unknown" : line;
}

void LeaveMark(Platform& world, std::int32_t serial, const std::string& procedure) {
    LeaveNote(
        world, serial, MarkKind,
        fmt::format("{}\n{}\n{}\n", procedure, IsoText(world.Time.Now()), NameOf(world.Program)));
}

std::optional<RunningMark> FindMark(const Platform& world, std::int32_t serial) {
    const auto note = FindNote(world.Files, serial, MarkKind);
    if (!note)
        return std::nullopt;
    std::istringstream text(*note);
    RunningMark mark;
    for (std::string* field : {&mark.Procedure, &mark.Since, &mark.Program})
        *field = NextLine(text);
    return mark;
}

bool IsOwnMarkByHand(const Platform& world, std::int32_t serial) {
    const auto mark = FindMark(world, serial);
    return mark && mark->Procedure == DrivingByHand && mark->Program == NameOf(world.Program);
}

std::vector<std::int32_t> MarkedBoards(const Drive& files) {
    return NotedBoards(files, MarkKind);
}

void RemoveMark(Platform& world, std::int32_t serial) {
    RemoveNote(world, serial, MarkKind);
}

} // namespace ombrix
