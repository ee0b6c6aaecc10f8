#pragma once

#include "platform/text/Text.h"
#include "windows/widgets/QtText.h"

#include <cstdint>

namespace ombrix {

/// How the panel shows counts (`optHexBin_0`, `optHexBin_1`).
enum class NumberBase { Hexadecimal = 0, Decimal = 1 };

inline QString NumberText(std::int32_t value, NumberBase base) {
    return base == NumberBase::Hexadecimal ? ToQt(HexText(value)) : QString::number(value);
}

} // namespace ombrix
