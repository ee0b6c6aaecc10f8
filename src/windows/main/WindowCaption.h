#pragma once

#include <string>
#include <string_view>

namespace ombrix {

/// Caption of the main window: version "1.2.34" gives "Ombrix [v1.02.0034]".
std::string WindowCaption(std::string_view version);

} // namespace ombrix
