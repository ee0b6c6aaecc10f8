#pragma once

#include "platform/ports/Platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ombrix {

/// What a program notes before a procedure drives a board and takes back when the outputs are
/// off: a mark that is found tells that nobody has switched them off.
struct RunningMark {
    /// "velocity calibration"
    std::string Procedure;
    /// Local date and time of its beginning.
    std::string Since;
    /// "ombrixctl, process 1234 on bench7"
    std::string Program;
};

/// Leaves the mark of a procedure that begins now, flushed to the disk. @throws DriveError
void LeaveMark(Platform& world, std::int32_t serial, const std::string& procedure);
/// The mark of a board; what a damaged or unreadable one does not tell stands as "unknown".
std::optional<RunningMark> FindMark(Platform& world, std::int32_t serial);
/// Serial numbers of the boards that have a mark.
std::vector<std::int32_t> MarkedBoards(const Drive& files);
/// A mark that cannot be removed costs the next start a needless switching off; it is logged.
void RemoveMark(Platform& world, std::int32_t serial);

} // namespace ombrix
