#pragma once

#include "board/Station.h"
#include "board/procedure/BoardClaims.h"

#include <memory>
#include <vector>

namespace ombrix {

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
