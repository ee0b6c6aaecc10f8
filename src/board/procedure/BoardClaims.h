#pragma once

#include "platform/ports/Platform.h"

#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace ombrix {

/// Another program has the board; the text names both and the remedy.
class BoardInUse : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The boards that this program has to itself, by serial number: what it writes into their
/// EPROM or drives at their outputs no other program of this data folder touches meanwhile. A
/// claim ends with the program, however that dies.
class BoardClaims {
  public:
    explicit BoardClaims(Platform& world) : m_World(world) {}

    /// True when the board is this program's, now or already before; false while another
    /// program has it. @throws DriveError when the data folder takes no lock
    bool Claim(std::int32_t serial);
    /// Claims the board and tells whether no other program has it. One whose claim cannot even be
    /// tried counts as ours: switching air off comes before keeping out of somebody's way.
    bool ClaimUnlessTaken(std::int32_t serial) noexcept;
    /// Why the board is not this program's to drive, since it was last tried to claim it ("in use
    /// by ombrixctl, process 1234 on bench7"); empty when it is, and before.
    std::string Refusal(std::int32_t serial) const;
    /// Who has the board that could not be claimed ("ombrixctl, process 1234 on bench7").
    std::string Holder(std::int32_t serial) const;
    /// Claims a board that is about to be driven. @throws BoardInUse, DriveError
    void Require(std::int32_t serial);
    /// Gives every board back, as before they are detected anew.
    void ReleaseAll() {
        m_Claims.clear();
        m_Refusals.clear();
    }

  private:
    Platform& m_World;
    std::map<std::int32_t, std::unique_ptr<FileLock>> m_Claims;
    std::map<std::int32_t, std::string> m_Refusals;
};

/// A program as others are told of it: "ombrixctl, process 1234 on bench7".
std::string NameOf(const ProgramIdentity& program);

/// Path of a file about a board in the folder of claims, which it makes: the lock, or the mark
/// of a procedure that drives the board. @param kind ending of the name ("lock")
std::string ClaimPath(Drive& files, std::int32_t serial, const char* kind);

/// The text of a file about a board; empty when it cannot be read.
std::string TextOfClaim(const Drive& files, const std::string& path);
/// Its next line; what is missing is "unknown".
std::string LineOfClaim(std::istream& text);

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
