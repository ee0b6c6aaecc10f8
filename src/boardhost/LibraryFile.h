#pragma once

#include "boardhost/LibraryError.h"

#include <memory>
#include <string>

namespace ombrix {

/// A shared library, unloaded with the last that knows it.
/// @param file name or path; found as the system finds libraries
/// @throws AIBLibraryError
std::shared_ptr<void> LoadLibraryFile(const std::string& file);

/// The place of a function; null where the library has none of that name.
void* FindFunction(void* library, const char* name);

/// What the system's loader says of what it could not do last.
std::string LoadersReason();

/// For the operator: what is wrong, what the system says, and what to do.
inline std::string LibraryErrorText(const std::string& what, const std::string& reason) {
    return what + "\r\n\r\n" + reason +
           "\r\n\r\nPlease install the board library that belongs to this program.";
}

} // namespace ombrix
