#include "calibration/judge/RunKind.h"

namespace ombrix {

namespace {

struct Names {
    const char* Name;
    const char* Title;
};

/// In the order of the kinds.
constexpr std::array<Names, RunKinds.size()> NamesOfKinds = {
    {{"velocity-system", "Velocity System Calibration"},
     {"velocity-audit", "Velocity Audit Calibration"},
     {"pressure-system", "Pressure System Calibration"},
     {"pressure-audit", "Pressure Audit Calibration"}}};

} // namespace

const char* NameOf(RunKind kind) {
    return NamesOfKinds.at(static_cast<std::size_t>(kind)).Name;
}

const char* TitleOf(RunKind kind) {
    return NamesOfKinds.at(static_cast<std::size_t>(kind)).Title;
}

std::optional<RunKind> RunKindNamed(std::string_view name) {
    for (const RunKind kind : RunKinds) {
        if (name == NameOf(kind))
            return kind;
    }
    return std::nullopt;
}

} // namespace ombrix
