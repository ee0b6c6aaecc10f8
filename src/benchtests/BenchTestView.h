#pragma once

#include "board/procedure/BenchProcedure.h"

#include <functional>
#include <string>

namespace ombrix {

/// Where a bench test shows how far it is; each of them may be left out.
struct BenchTestView {
    /// The line on the test's own command.
    std::function<void(const std::string& text)> Caption = [](const std::string&) {};
    /// The line below it.
    std::function<void(const std::string& text)> Stage = [](const std::string&) {};
    /// The share of the test that is done, 0 to 1.
    std::function<void(double share)> Progress = [](double) {};
};

/// What the line below says when a test has ended.
inline const char* EndText(ProcedureOutcome::End ended) {
    switch (ended) {
    case ProcedureOutcome::End::Completed: return "Complete";
    case ProcedureOutcome::End::Cancelled: return "Cancelled";
    case ProcedureOutcome::End::NotStored: return "Not stored";
    default: return "Stopped";
    }
}

} // namespace ombrix
