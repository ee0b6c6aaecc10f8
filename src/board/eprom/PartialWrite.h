#pragma once

#include "board/Station.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ombrix {

/// A writing to a unit's EPROM that has begun: until it is noted as whole, the unit may hold a
/// mixture of what was and what was to be. Kept beside the claims, so that it outlives a program
/// that is killed.
struct PartialWrite {
    /// "EPROM Restore"
    std::string Purpose;
    /// Local date and time of its beginning.
    std::string Since;
    /// "ombrixctl, process 1234 on bench7"
    std::string Program;
    /// Real path, which holds for every user, of what the EPROM held before.
    std::string Backup;
    /// Addresses of all words that are a part of it.
    std::set<std::int32_t> Addresses;
};

/// Notes that words are about to be written, flushed to the disk. A writing that is noted already
/// stays, and has these words added. @throws DriveError
void NotePartialWrite(Platform& world, std::int32_t serial, const std::string& purpose,
                      const std::filesystem::path& backup, const std::set<std::int32_t>& addresses);
/// What is noted for a unit; what a damaged file does not tell stands as "unknown".
std::optional<PartialWrite> FindPartialWrite(const Platform& world, std::int32_t serial);
/// The EPROM is whole again. A note that cannot be removed is logged.
void RemovePartialWrite(Platform& world, std::int32_t serial);

/// "written in part: \"EPROM Restore\", begun on … (ombrix, process 12 on bench7)"
std::string PartialWriteText(const PartialWrite& write);
/// For the operator: that, and where the content from before lies.
std::string PartialWriteWarning(const AIB& board, const PartialWrite& write);

/// A board that this program has, and whose EPROM was written in part.
struct PartlyWrittenBoard {
    std::shared_ptr<AIB> Board;
    PartialWrite Write;
};
std::vector<PartlyWrittenBoard> PartlyWrittenBoards(Station& station);

} // namespace ombrix
