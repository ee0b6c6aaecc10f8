#include "board/procedure/Outcome.h"

namespace ombrix {

std::string EndText(const Outcome& outcome) {
    switch (outcome.Ended) {
    case End::Cancelled: return "cancelled";
    case End::Stopped: return "failed: " + outcome.Error;
    case End::NotStored: return "not stored: " + outcome.Error;
    case End::Passed:
    case End::Failed: break;
    }
    return "completed";
}

} // namespace ombrix
