#pragma once

#include "platform/text/Text.h"

#include <QString>

#include <cstdint>
#include <string_view>

namespace ombrix {

/// Texts of the core are UTF-8.
inline QString ToQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Texts of message boxes, whose lines end with CR LF.
inline QString LinesToQt(std::string_view text) {
    return ToQt(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

/// How the panel shows counts (`optHexBin_0`, `optHexBin_1`).
enum class NumberBase { Hexadecimal = 0, Decimal = 1 };

inline QString NumberText(std::int32_t value, NumberBase base) {
    return base == NumberBase::Hexadecimal ? ToQt(HexText(value)) : QString::number(value);
}

} // namespace ombrix
