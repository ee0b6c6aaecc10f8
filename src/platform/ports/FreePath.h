#pragma once

#include "platform/ports/Drive.h"

#include <fmt/format.h>

#include <string>
#include <string_view>

namespace ombrix {

/// Path of a file that is not there yet: stem and ending, with " (2)", … between them when need be.
inline std::string FreePath(const Drive& files, std::string_view stem, std::string_view ending) {
    std::string path = fmt::format("{}{}", stem, ending);
    for (int number = 2; files.FileExists(path); ++number)
        path = fmt::format("{} ({}){}", stem, number, ending);
    return path;
}

} // namespace ombrix
