#include "board/eprom/PartialWrite.h"

#include "platform/text/OleDate.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <sstream>

namespace ombrix {

namespace {

constexpr const char* PartialWriteKind = "eprom";

} // namespace

void NotePartialWrite(Platform& world, std::int32_t serial, const std::string& purpose,
                      const std::filesystem::path& backup,
                      const std::set<std::int32_t>& addresses) {
    PartialWrite write =
        FindPartialWrite(world, serial)
            .value_or(PartialWrite{
                purpose, IsoText(world.Time.Now()), NameOf(world.Program), backup.string(), {}});
    write.Addresses.insert(addresses.begin(), addresses.end());
    LeaveNote(world, serial, PartialWriteKind,
              fmt::format("{}\n{}\n{}\n{}\n{}\n", write.Purpose, write.Since, write.Program,
                          write.Backup, fmt::join(write.Addresses, " ")));
}

std::optional<PartialWrite> FindPartialWrite(const Platform& world, std::int32_t serial) {
    const auto note = FindNote(world.Files, serial, PartialWriteKind);
    if (!note)
        return std::nullopt;
    std::istringstream text(*note);
    PartialWrite write;
    for (std::string* field : {&write.Purpose, &write.Since, &write.Program, &write.Backup})
        *field = NextLine(text);
    for (std::int32_t address = 0; text >> address;)
        write.Addresses.insert(address);
    return write;
}

void RemovePartialWrite(Platform& world, std::int32_t serial) {
    RemoveNote(world, serial, PartialWriteKind);
}

std::string PartialWriteText(const PartialWrite& write) {
    return fmt::format("written in part: \"{}\", begun on {} ({})", write.Purpose, write.Since,
                       write.Program);
}

std::string PartialWriteWarning(const AIB& board, const PartialWrite& write) {
    return fmt::format("The EPROM of ACU{:05} has been {}, which has not come to its end. It holds "
                       "a mixture of two contents.\r\n\r\nThe content from before lies in\r\n\r\n"
                       "   {}",
                       board.SerialNumber(), PartialWriteText(write), write.Backup);
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
