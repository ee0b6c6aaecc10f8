#pragma once

#include "board/Station.h"

#include <cstdint>
#include <functional>

namespace ombrix {

/// Writes a value to every word of the current board's EPROM, after the question, as a
/// procedure. @param progress told each address
/// @return false when the operator declines or closes the program
bool WriteWholeEPROM(Station& station, std::int32_t value,
                     const std::function<void(std::int32_t address)>& progress);

} // namespace ombrix
