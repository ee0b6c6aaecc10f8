#include "board/procedure/ProcedureOutcome.h"

namespace ombrix {

std::string EndOf(const ProcedureOutcome& outcome) {
    switch (outcome.Ended) {
    case ProcedureOutcome::End::Cancelled: return "cancelled";
    case ProcedureOutcome::End::Failed: return "failed: " + outcome.Error;
    case ProcedureOutcome::End::NotStored: return "not stored: " + outcome.Error;
    case ProcedureOutcome::End::Completed: break;
    }
    return "completed";
}

} // namespace ombrix
