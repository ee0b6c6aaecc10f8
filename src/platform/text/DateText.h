#pragma once

#include "platform/text/OleDate.h"

#include <string>
#include <string_view>

namespace ombrix {

/// A date in a pattern of yyyy, yy, mm, dd, hh, nn (minutes) and ss; every other character
/// stands for itself. Bits that are no date give "(no date)".
std::string DateText(OleDate date, std::string_view pattern);

} // namespace ombrix
