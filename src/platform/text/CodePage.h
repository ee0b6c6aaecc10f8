#pragma once

#include <string>
#include <string_view>

namespace ombrix {

/// Text of the boards is 8-bit text in Windows-1252; inside the program text is UTF-8.

/// Every one of the 256 bytes gives a character; the five that the code page leaves open give
/// the control character of the same number.
std::string FromWindows1252(std::string_view bytes);

/// A character that the code page lacks becomes "?".
std::string ToWindows1252(std::string_view text);

} // namespace ombrix
