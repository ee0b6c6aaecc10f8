#pragma once

#include "board/Station.h"
#include "board/procedure/BoardClaims.h"

#include <memory>
#include <vector>

namespace ombrix {

using Boards = std::vector<std::shared_ptr<AIB>>;

/// Switches all outputs of the boards off. @return the boards that have not taken it
Boards SwitchOff(Station& station, const Boards& boards) noexcept;

/// Tells and logs which boards did not let their outputs be switched off, and what the operator
/// is to do: air may be flowing. Told also when the program is ending; never throws.
void TellAirMayFlow(Station& station, const Boards& boards) noexcept;

/// Switches off the outputs of every board that was detected last, except those that another
/// program has. Tells of those that may drive air and do not take it, and marks them for the
/// next start. A mark that was left before this program drove the board stays for the next
/// detection: an FPGA without its program may take zeros that do nothing.
/// @return whether every board has taken it
bool SwitchAllOff(Station& station) noexcept;

/// Cancels the procedure that runs, and switches off at once what all boards drive.
void StopAir(Station& station) noexcept;

/// Takes back this program's marks of boards that are driven by hand: a command that ends as it
/// should leaves what it was to set, and no later program takes that for forgotten.
void LeaveOutputsAsSet(Station& station) noexcept;

/// A board with the mark of a procedure whose program was gone before its outputs were off.
struct UnfinishedBoard {
    std::shared_ptr<AIB> Board;
    RunningMark Mark;
};

/// Looks for marks at the detected boards that this program has, and switches the outputs of
/// each such board off at once, before anything else is done with it.
std::vector<UnfinishedBoard> SwitchOffUnfinished(Station& station);

/// Warns of marks at boards that have not been found: nobody can switch their outputs off.
void TellOfMissingBoards(Station& station);

/// Once the boards are programmed: switches off again, since an FPGA without its program may
/// have taken nothing, and tells the operator what was found. The mark of a board that does not
/// take it stays, with a warning that air may be flowing.
void FinishRecovery(Station& station, const std::vector<UnfinishedBoard>& unfinished);

} // namespace ombrix
