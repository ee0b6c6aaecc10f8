#pragma once

#include <string>

namespace ombrix::templates {

/// The template of the health check's report (".xltx").
std::string MakeACUHealthCheck();

} // namespace ombrix::templates
