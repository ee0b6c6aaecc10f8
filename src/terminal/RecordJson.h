#pragma once

#include "calibration/unit/ACURecord.h"

#include <nlohmann/json.hpp>

namespace ombrix {

/// The record with the names of its fields, without "m_". Dates are ISO 8601, null for never;
/// numbers that JSON lacks (an erased Single) are null; texts are without surrounding blanks.
nlohmann::ordered_json RecordJson(const ACURecord& record);

} // namespace ombrix
