#pragma once

#include "calibration/judge/Measurement.h"

#include <optional>
#include <string_view>

namespace ombrix {

/// What a calibration run calibrates or verifies.
enum class RunKind { VelocitySystem, VelocityAudit, PressureSystem, PressureAudit };

inline constexpr std::array<RunKind, 4> RunKinds = {RunKind::VelocitySystem, RunKind::VelocityAudit,
                                                    RunKind::PressureSystem,
                                                    RunKind::PressureAudit};

/// Its name in files and on command lines ("velocity-system").
const char* NameOf(RunKind kind);
/// Its name for people ("Velocity System Calibration").
const char* TitleOf(RunKind kind);
/// The kind of that name; nothing for another text.
std::optional<RunKind> RunKindNamed(std::string_view name);

constexpr bool IsVelocity(RunKind kind) {
    return kind == RunKind::VelocitySystem || kind == RunKind::VelocityAudit;
}
constexpr CalibrationKind CalibrationKindOf(RunKind kind) {
    return kind == RunKind::VelocityAudit || kind == RunKind::PressureAudit
               ? CalibrationKind::Audit
               : CalibrationKind::System;
}
constexpr RunKind VelocityRunKind(CalibrationKind kind) {
    return kind == CalibrationKind::Audit ? RunKind::VelocityAudit : RunKind::VelocitySystem;
}
constexpr RunKind PressureRunKind(CalibrationKind kind) {
    return kind == CalibrationKind::Audit ? RunKind::PressureAudit : RunKind::PressureSystem;
}

} // namespace ombrix
