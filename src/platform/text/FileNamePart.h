#pragma once

#include <string>

namespace ombrix {

/// A text as a part of a file's name: an MFC number comes from an EPROM, which may hold anything.
/// What cannot stand in a file name becomes "_".
std::string FileNamePart(std::string text);

} // namespace ombrix
