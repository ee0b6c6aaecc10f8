#pragma once

#include "board/eprom/EpromGuard.h"
#include "calibration/run/CalibrationOutcome.h"

#include <functional>

namespace ombrix {

/// Makes a guard ready before a run drives anything: what is measured is to be stored in the
/// end. False, and noted in the outcome, when the EPROM may not be written or cannot be read.
bool Admits(EpromGuard& guard, CalibrationOutcome& outcome);

/// Has a run's result stored. False, and noted in the outcome, when the EPROM does not hold it.
bool Stored(CalibrationOutcome& outcome, const std::function<void()>& save);

} // namespace ombrix
