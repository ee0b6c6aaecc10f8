#pragma once

#include "board/unit/ACURecord.h"
#include "platform/text/SingleJson.h"

namespace ombrix {

// The forms in which journals and histories keep what runs work with. Reading one back throws
// SingleJson::exception, or std::runtime_error, when it is damaged.

/// To the second ("2026-03-15T10:20:30"); null for never.
SingleJson DateJson(OleDate date);
OleDate DateOf(const SingleJson& json);

/// What reports and histories say of a unit: number, air channels with their tables, pressure
/// sensor, and when it was calibrated. Other fields of a record are not kept.
SingleJson UnitJson(const ACURecord& record);
ACURecord RecordOf(const SingleJson& json);

} // namespace ombrix
