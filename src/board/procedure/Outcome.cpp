#include "board/procedure/Outcome.h"

namespace ombrix {

const char* VerdictOf(End ended) {
    switch (ended) {
    case End::Failed: return "failed";
    case End::Cancelled: return "cancelled";
    case End::Stopped: return "stopped";
    case End::NotStored: return "not stored";
    case End::Passed: break;
    }
    return "passed";
}

std::string VerdictText(const Outcome& outcome) {
    switch (outcome.Ended) {
    case End::Stopped:
    case End::NotStored: return std::string(VerdictOf(outcome.Ended)) + ": " + outcome.Error;
    case End::Failed: return "not passed";
    case End::Cancelled:
    case End::Passed: break;
    }
    return VerdictOf(outcome.Ended);
}

const char* StageResult(End ended) {
    switch (ended) {
    case End::Passed: return "Run: Passed";
    case End::Cancelled: return "Aborted";
    default: return "Run: Failed";
    }
}

const char* StageText(End ended) {
    switch (ended) {
    case End::Passed: return "Complete";
    case End::Cancelled: return "Cancelled";
    case End::NotStored: return "Not stored";
    case End::Failed:
    case End::Stopped: break;
    }
    return "Stopped";
}

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
