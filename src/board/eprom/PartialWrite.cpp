#include "board/eprom/PartialWrite.h"

#include "platform/os/ProgramLog.h"
#include "platform/text/OleDate.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <sstream>

namespace ombrix {

namespace {

std::string NotePath(Platform& world, std::int32_t serial) {
    return ClaimPath(world.Files, serial, "eprom");
}

} // namespace

void NotePartialWrite(Platform& world, std::int32_t serial, const std::string& purpose,
                      const std::string& backup, const std::set<std::int32_t>& addresses) {
    PartialWrite write =
        FindPartialWrite(world, serial)
            .value_or(PartialWrite{purpose,
                                   DateText(world.Time.Now(), "yyyy-mm-dd hh:nn:ss"),
                                   NameOf(world.Program),
                                   backup,
                                   {}});
    write.Addresses.insert(addresses.begin(), addresses.end());
    world.Files.ReplaceFile(NotePath(world, serial),
                            fmt::format("{}\n{}\n{}\n{}\n{}\n", write.Purpose, write.Since,
                                        write.Program, write.Backup,
                                        fmt::join(write.Addresses, " ")));
}

std::optional<PartialWrite> FindPartialWrite(Platform& world, std::int32_t serial) {
    const std::string path = NotePath(world, serial);
    if (!world.Files.FileExists(path))
        return std::nullopt;
    std::istringstream text(TextOfClaim(world.Files, path));
    PartialWrite write;
    for (std::string* field : {&write.Purpose, &write.Since, &write.Program, &write.Backup})
        *field = LineOfClaim(text);
    for (std::int32_t address = 0; text >> address;)
        write.Addresses.insert(address);
    return write;
}

void RemovePartialWrite(Platform& world, std::int32_t serial) {
    try {
        world.Files.RemoveFile(NotePath(world, serial));
    } catch (const DriveError& error) {
        WriteLog(world,
                 fmt::format("The note of an EPROM written in part stays: {}", error.what()));
    }
}

std::string PartialWriteText(const PartialWrite& write) {
    return fmt::format("written in part: \"{}\", begun on {} ({})", write.Purpose, write.Since,
                       write.Program);
}

std::string PartialWriteWarning(Platform& world, const AIB& board, const PartialWrite& write) {
    std::string backup = write.Backup;
    try {
        backup = world.Files.RealPath(write.Backup).string();
    } catch (const DriveError&) { // a damaged note: its text is all there is
    }
    return fmt::format("The EPROM of ACU{:05} has been {}, which has not come to its end. It holds "
                       "a mixture of two contents.\r\n\r\nThe content from before lies in\r\n\r\n"
                       "   {}",
                       board.SerialNumber(), PartialWriteText(write), backup);
}

std::vector<PartlyWrittenBoard> PartlyWrittenBoards(Station& station) {
    std::vector<PartlyWrittenBoard> found;
    for (const auto& board : station.AIBList.Boards()) {
        const std::int32_t serial = board->SerialNumber();
        // A program that runs sees to its boards itself.
        if (!station.Claims.ClaimUnlessTaken(serial))
            continue;
        if (auto write = FindPartialWrite(station.World, serial))
            found.push_back({board, *std::move(write)});
    }
    return found;
}

} // namespace ombrix
