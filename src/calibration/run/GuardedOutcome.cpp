#include "calibration/run/GuardedOutcome.h"

#include "board/procedure/ProcedureWait.h"

namespace ombrix {

bool Admits(EpromGuard& guard, CalibrationOutcome& outcome) {
    outcome.NothingDriven = !Stored(outcome, [&guard] { guard.MakeReady(); });
    return !outcome.NothingDriven;
}

bool Stored(CalibrationOutcome& outcome, const std::function<void()>& save) {
    try {
        save();
        return true;
    } catch (const EpromError& error) {
        outcome.AllStored = false;
        outcome.NotInEprom = true;
        outcome.Error = error.what();
    } catch (const BoardError& error) {
        outcome.Error = error.what();
    }
    return false;
}

} // namespace ombrix
