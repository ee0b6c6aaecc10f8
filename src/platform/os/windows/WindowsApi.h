#pragma once

#include "platform/os/FileDescriptor.h"

// Its macros stand in the way of names of ours.
#include <windows.h>
#undef CreateFile
#undef ReplaceFile

#include <cstdint>
#include <string>
#include <string_view>

namespace ombrix {

/// Handles have no more than 32 bits that count, also in programs of 64 bits.
inline int NumberOf(HANDLE handle) {
    return handle == nullptr ? -1 : static_cast<int>(reinterpret_cast<std::intptr_t>(handle));
}
inline HANDLE HandleOf(int number) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(number)); // NOLINT
}
inline HANDLE HandleOf(const FileDescriptor& descriptor) {
    return HandleOf(descriptor.Get());
}
inline FileDescriptor Owned(HANDLE handle) {
    return FileDescriptor(NumberOf(handle));
}

std::wstring Wide(std::string_view text);
std::string Narrow(std::wstring_view text);

/// The number by which every system calls the error that the last call ended with.
int LastErrorNumber();
/// What it means, in the words of other systems where they have some.
std::string LastErrorText();

} // namespace ombrix
