#pragma once

#include "platform/ports/Drive.h"

#include <optional>
#include <string>
#include <string_view>

namespace ombrix {

/// The file behind a template's name: that file if it exists; for "X.xlt", else "X.xltx".
std::optional<std::string> FindTemplateFile(const Drive& files, std::string_view path);

} // namespace ombrix
