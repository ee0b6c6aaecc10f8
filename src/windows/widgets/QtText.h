#pragma once

#include <QString>

#include <string>
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

} // namespace ombrix
