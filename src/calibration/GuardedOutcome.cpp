#include "calibration/GuardedOutcome.h"

#include <exception>

namespace ombrix {

bool Admits(EpromGuard& guard, CalibrationOutcome& outcome) {
    outcome.NothingDriven = !Stored(outcome, [&guard] { guard.MakeReady(); });
    return !outcome.NothingDriven;
}

bool Stored(CalibrationOutcome& outcome, const std::function<void()>& save) {
    try {
        save();
        return true;
    } catch (const std::exception& error) {
        outcome.AllStored = false;
        outcome.NotInEprom = true;
        outcome.Error = error.what();
        return false;
    }
}

} // namespace ombrix
