#pragma once

#include "platform/ports/Clock.h"
#include "platform/ports/Drive.h"
#include "platform/text/SingleJson.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// What the check of a history has found. Each line carries a number, from 1, the fingerprint of
/// the line before and its own, so that nothing can be changed, removed or put in without breaking
/// what stands behind it.
struct ChainCheck {
    std::int32_t Serial = 0;
    /// Lines whose fingerprints hold, from the first.
    int Records = 0;
    /// Lines from before there were fingerprints; since the first one that has, they are covered
    /// by it.
    int Unchained = 0;
    /// Number of the first line that was changed, removed or put in.
    std::optional<int> FirstBroken{};
    /// Why, for people; empty for a chain that holds.
    std::string Reason{};
    /// Of the last line that holds; empty without one.
    std::string Fingerprint{};
};

/// Adds a record to the history of a unit as the next line of its chain.
/// @throws DriveError also while another program keeps writing to it
void AppendToChain(Drive& files, Clock& time, std::int32_t serial, SingleJson record);

/// Checks the history of a unit, and that it reaches as far as it once did.
/// @throws DriveError
ChainCheck CheckChain(const Drive& files, std::int32_t serial);

/// Serial numbers of the units whose history is there, or was once, smallest first.
std::vector<std::int32_t> UnitsWithChain(const Drive& files);

/// The file of a unit's history.
std::string HistoryPath(std::int32_t serial);

} // namespace ombrix
