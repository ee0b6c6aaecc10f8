#pragma once

#include "calibration/history/CalibrationHistory.h"
#include "calibration/history/RunJson.h"

namespace ombrix {

/// A run as it stands on its line of a history, and back.
SingleJson EntryJson(const HistoryEntry& entry);
HistoryEntry EntryOf(const SingleJson& json);

/// The limits that runs of a kind are judged by now.
std::vector<std::pair<std::string, float>> LimitsOf(RunKind kind);

} // namespace ombrix
