#include "boardhost/LibraryFile.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <windows.h>

namespace ombrix {

namespace {

std::filesystem::path PathOf(const std::string& file) {
    return std::filesystem::path(std::u8string(file.begin(), file.end()));
}

/// The machine that a library is made for, which stands behind the mark "PE"; 0 when it is no
/// library.
unsigned MachineOf(const std::filesystem::path& file) {
    constexpr std::size_t headBytes = 4096;
    constexpr std::size_t placeOfMark = 0x3C;
    std::string head(headBytes, '\0');
    std::ifstream(file, std::ios::binary).read(head.data(), headBytes);
    const auto byte = [&head](std::size_t at) {
        return at < head.size() ? static_cast<unsigned char>(head[at]) : 0U;
    };
    const std::size_t mark = byte(placeOfMark) | byte(placeOfMark + 1) << 8U;
    if (!head.starts_with("MZ") || mark > headBytes || head.substr(mark, 2) != "PE")
        return 0;
    return byte(mark + 4) | byte(mark + 5) << 8U;
}

#ifdef _WIN64
constexpr unsigned OwnMachine = IMAGE_FILE_MACHINE_AMD64;
#else
constexpr unsigned OwnMachine = IMAGE_FILE_MACHINE_I386;
#endif

/// @param file the path of a file that is there
std::string WhatItIs(const std::filesystem::path& file) {
    if (!std::ifstream(file, std::ios::binary))
        return "cannot be read";
    const unsigned machine = MachineOf(file);
    if (machine == 0)
        return "is no library";
    return machine == OwnMachine ? "cannot be loaded" : "is made for another kind of computer";
}

AIBLibraryError LoadError(const std::string& file) {
    const DWORD error = ::GetLastError();
    const std::string reason = LoadersReason();
    std::error_code ignored;
    const std::filesystem::path path = PathOf(file);
    const bool isThere = std::filesystem::is_regular_file(path, ignored);
    if (!isThere && (error == ERROR_MOD_NOT_FOUND || error == ERROR_DLL_NOT_FOUND))
        return {AIBLibraryError::FileNotFound, "File not found: " + file + "\r\n\r\n" + reason};
    return {AIBLibraryError::NotLoadable,
            LibraryErrorText("The board library " + file + " " +
                                 (isThere ? WhatItIs(path) : "cannot be loaded") + ".",
                             reason)};
}

} // namespace

std::shared_ptr<void> LoadLibraryFile(const std::string& file) {
    const std::filesystem::path path = PathOf(file);
    // What a library needs of its own lies beside it.
    const DWORD flags = path.is_absolute() ? LOAD_WITH_ALTERED_SEARCH_PATH : 0;
    const HMODULE handle = ::LoadLibraryExW(path.c_str(), nullptr, flags);
    if (handle == nullptr)
        throw LoadError(file);
    return {handle, [](void* library) { ::FreeLibrary(static_cast<HMODULE>(library)); }};
}

void* FindFunction(void* library, const char* name) {
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(library), name));
}

std::string LoadersReason() {
    std::wstring text(1024, L'\0');
    const DWORD length = ::FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, ::GetLastError(), 0,
        text.data(), static_cast<DWORD>(text.size()), nullptr);
    text.resize(length);
    while (!text.empty() && (text.back() == L'\n' || text.back() == L'\r'))
        text.pop_back();
    const std::u8string bytes = std::filesystem::path(text).u8string();
    return {bytes.begin(), bytes.end()};
}

} // namespace ombrix
