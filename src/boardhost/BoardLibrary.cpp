#include "boardhost/BoardLibrary.h"

#include <cerrno>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unistd.h>

namespace ombrix {

namespace {

constexpr const char* Remedy = "Please install the board library that belongs to this program.";

std::string LoadersReason() {
    const char* reason = ::dlerror();
    return reason == nullptr ? "" : reason;
}

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

std::string Sentences(const std::string& what, const std::string& reason) {
    return what + "\r\n\r\n" + reason + "\r\n\r\n" + Remedy;
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
            Sentences("The board library " + file + " " + whatItIs + ".", reason)};
}

std::shared_ptr<void> Load(const std::string& file) {
    void* const handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
        throw LoadError(file, LoadersReason());
    return {handle, &::dlclose};
}

} // namespace

BoardLibrary::BoardLibrary(const std::string& file) : m_Handle(Load(file)) {
    const auto bindOptional = [this](auto& function, const char* name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(
            ::dlsym(m_Handle.get(), name));
    };
    const auto bind = [&](auto& function, const char* name) {
        bindOptional(function, name);
        if (function == nullptr)
            throw AIBLibraryError(
                AIBLibraryError::FunctionNotFound,
                Sentences("The board library " + file + " lacks the function \"" + name + "\".",
                          LoadersReason()));
    };
    bind(OpenAIBAPI, "OpenAIBAPI");
    bind(CloseAIBAPI, "CloseAIBAPI");
    bind(GetAccessoryInfo, "GetAccessoryInfo");
    bind(UploadFPGAImage, "UploadFPGAImage");
    bind(WriteReg, "WriteReg");
    bind(ReadReg, "ReadReg");
    bind(ConfigureGPIO, "ConfigureGPIO");
    bind(SetGPO, "SetGPO");
    bind(ClearGPO, "ClearGPO");
    bind(SetExtGPO, "SetExtGPO");
    bind(ClearExtGPO, "ClearExtGPO");
    bind(GetGPI, "GetGPI");
    bind(SetDAC, "SetDAC");
    bind(GetADC, "GetADC");
    bind(WriteAIBInfo, "WriteAIBInfo");
    bind(WriteEEPROM, "WriteEEPROM");
    bind(ReadEEPROM, "ReadEEPROM");
    bind(DumpEEPROM, "DumpEEPROM");
    bind(MFCSetFlowrate, "MFCSetFlowrate");
    bind(MFCGetFlowrate, "MFCGetFlowrate");
    bind(MFCSetParameter, "MFCSetParameter");
    bind(MFCGetParameter, "MFCGetParameter");
    bind(GetVariable, "GetVariable");
    bindOptional(SetVariable, "SetVariable");
}

} // namespace ombrix
