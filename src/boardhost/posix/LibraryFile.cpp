#include "boardhost/LibraryFile.h"

#include <cerrno>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unistd.h>

namespace ombrix {

namespace {

/// What a library file begins with: its kind, then the size of its words and the machine.
std::string HeadOf(const std::filesystem::path& file) {
    constexpr std::size_t bytes = 20;
    std::string head(bytes, '\0');
    std::ifstream(file, std::ios::binary).read(head.data(), bytes);
    return head;
}

/// @param file the path of a file that is there
std::string WhatItIs(const std::string& file) {
    constexpr std::size_t wordSize = 4;
    constexpr std::size_t machine = 18;
    if (::access(file.c_str(), R_OK) != 0)
        return "cannot be read";
    const std::string head = HeadOf(file);
    const std::string own = HeadOf("/proc/self/exe");
    if (head.substr(0, wordSize) != own.substr(0, wordSize))
        return "is no library";
    if (head[wordSize] != own[wordSize] || head.substr(machine) != own.substr(machine))
        return "is made for another kind of computer";
    return "cannot be loaded";
}

AIBLibraryError LoadError(const std::string& file, const std::string& reason) {
    // The loader begins with what it is about, which may be another library that this one needs.
    const std::string about = reason.substr(0, reason.find(": "));
    const bool isAboutIt =
        std::filesystem::path(about).filename() == std::filesystem::path(file).filename();
    // One for another machine it calls missing too.
    const bool isThere = about.find('/') != std::string::npos && std::filesystem::exists(about);
    if (isAboutIt && !isThere && reason.ends_with(std::generic_category().message(ENOENT)))
        return {AIBLibraryError::FileNotFound, "File not found: " + file + "\r\n\r\n" + reason};
    const std::string whatItIs = isAboutIt && isThere ? WhatItIs(about) : "cannot be loaded";
    return {AIBLibraryError::NotLoadable,
            LibraryErrorText("The board library " + file + " " + whatItIs + ".", reason)};
}

} // namespace

std::shared_ptr<void> LoadLibraryFile(const std::string& file) {
    void* const handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
        throw LoadError(file, LoadersReason());
    return {handle, &::dlclose};
}

void* FindFunction(void* library, const char* name) {
    return ::dlsym(library, name);
}

std::string LoadersReason() {
    const char* reason = ::dlerror();
    return reason == nullptr ? "" : reason;
}

} // namespace ombrix
