#pragma once

#include "board/Station.h"

#include <cstdint>

namespace ombrix {

/// Which MFCs the unit behind a board has, as the identity holds it.
enum class MFCSetup : std::int32_t { AnalogOnly = 0, DigitalAndAnalog = 1, DigitalOnly = 2 };

constexpr MFCSetup MFCSetupOf(bool digital, bool analog) {
    if (!digital)
        return MFCSetup::AnalogOnly;
    return analog ? MFCSetup::DigitalAndAnalog : MFCSetup::DigitalOnly;
}

/// Writes the identity of the current board, whose EPROM is saved before. The identity is read
/// again by the next detection only.
/// @return status of the board library @throws EpromError, BoardError
AIBStatus WriteIdentity(Station& station, std::int32_t serial, MFCSetup setup);

} // namespace ombrix
