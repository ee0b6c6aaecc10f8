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
/// EPROM or drives at their outputs no other program touches meanwhile, whoever runs it. A
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

// Notes about a board beside its claim, which outlive the program that has left them. A kind is the
// ending of the file's name ("running").

/// Leaves a note, flushed to the disk, in the place of one that is there. @throws DriveError
void LeaveNote(Platform& world, std::int32_t serial, const char* kind, const std::string& text);
/// The text of a note; an empty line of one that cannot be read, nothing where there is none.
std::optional<std::string> FindNote(const Drive& files, std::int32_t serial, const char* kind);
/// Serial numbers of the boards that have a note of a kind.
std::vector<std::int32_t> NotedBoards(const Drive& files, const char* kind);
/// A note of another user is emptied, which is as good. One that stays is logged.
void RemoveNote(Platform& world, std::int32_t serial, const char* kind);
/// A line of a note; "unknown" where it has none.
std::string NextLine(std::istream& note);

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

/// Stands in a mark for the procedure where an operator drives a board.
inline constexpr const char* DrivingByHand = "driving by hand";

/// Leaves the mark of a procedure that begins now, flushed to the disk. @throws DriveError
void LeaveMark(Platform& world, std::int32_t serial, const std::string& procedure);
/// The mark of a board; what a damaged or unreadable one does not tell stands as "unknown".
std::optional<RunningMark> FindMark(const Platform& world, std::int32_t serial);
/// This program has left the mark when its operator began to drive the board.
bool IsOwnMarkByHand(const Platform& world, std::int32_t serial);
/// Serial numbers of the boards that have a mark.
std::vector<std::int32_t> MarkedBoards(const Drive& files);
/// A mark that cannot be removed costs the next start a needless switching off; it is logged.
void RemoveMark(Platform& world, std::int32_t serial);

} // namespace ombrix
