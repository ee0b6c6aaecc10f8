#include "board/LoadedAIBControl.h"

#include "platform/text/Text.h"

#include <fmt/format.h>

#include <cerrno>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unistd.h>

namespace ombrix {

namespace {

using Int = std::int32_t;

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

AIBLibraryError LoadError(const std::string& file, const std::string& reason) {
    // The loader begins with what it is about, which may be another library that this one needs.
    const std::string about = reason.substr(0, reason.find(": "));
    const bool isAboutIt =
        std::filesystem::path(about).filename() == std::filesystem::path(file).filename();
    // One for another machine it calls missing too.
    const bool isThere = about.find('/') != std::string::npos && std::filesystem::exists(about);
    if (isAboutIt && !isThere && reason.ends_with(std::generic_category().message(ENOENT)))
        return {AIBLibraryError::FileNotFound,
                fmt::format("File not found: {}\r\n\r\n{}", file, reason)};
    return {AIBLibraryError::NotLoadable,
            fmt::format("The board library {} {}.\r\n\r\n{}\r\n\r\n{}", file,
                        isAboutIt && isThere ? WhatItIs(about) : "cannot be loaded", reason,
                        Remedy)};
}

/// Keeps a shared library loaded.
class SharedLibrary {
  public:
    explicit SharedLibrary(const std::string& file)
        : m_File(file), m_Handle(::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        if (m_Handle == nullptr)
            throw LoadError(file, LoadersReason());
    }
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;
    ~SharedLibrary() { ::dlclose(m_Handle); }

    template <class Function>
    void Bind(Function*& function, const char* name) const {
        BindOptional(function, name);
        if (function == nullptr)
            throw AIBLibraryError(
                AIBLibraryError::FunctionNotFound,
                fmt::format("The board library {} lacks the function \"{}\".\r\n\r\n{}\r\n\r\n{}",
                            m_File, name, LoadersReason(), Remedy));
    }

    template <class Function>
    void BindOptional(Function*& function, const char* name) const {
        function = reinterpret_cast<Function*>(::dlsym(m_Handle, name));
    }

  private:
    std::string m_File;
    void* m_Handle;
};

} // namespace

struct LoadedAIBControl::Functions {
    SharedLibrary Library;

    Int (*OpenAIBAPI)() = nullptr;
    Int (*CloseAIBAPI)() = nullptr;
    Int (*GetAccessoryInfo)(Int, AccessoryInfoBlock*) = nullptr;
    Int (*UploadFPGAImage)(Int, const char*) = nullptr;
    Int (*WriteReg)(Int, Int, Int) = nullptr;
    Int (*ReadReg)(Int, Int, Int*) = nullptr;
    Int (*ConfigureGPIO)(Int, Int) = nullptr;
    Int (*SetGPO)(Int, Int) = nullptr;
    Int (*ClearGPO)(Int, Int) = nullptr;
    Int (*SetExtGPO)(Int, Int) = nullptr;
    Int (*ClearExtGPO)(Int, Int) = nullptr;
    Int (*GetGPI)(Int, Int, Int*) = nullptr;
    Int (*SetDAC)(Int, Int, Int) = nullptr;
    Int (*GetADC)(Int, Int, Int*) = nullptr;
    Int (*WriteAIBInfo)(Int, Int, Int, Int) = nullptr;
    Int (*WriteEEPROM)(Int, Int, Int) = nullptr;
    Int (*ReadEEPROM)(Int, Int, Int*) = nullptr;
    Int (*DumpEEPROM)(Int, const char*) = nullptr;
    Int (*MFCSetFlowrate)(Int, Int, Int) = nullptr;
    Int (*MFCGetFlowrate)(Int, Int, Int*) = nullptr;
    Int (*MFCSetParameter)(Int, Int, Int, Int, Int, Int) = nullptr;
    Int (*MFCGetParameter)(Int, Int, Int, Int, Int, Int*) = nullptr;
    Int (*GetVariable)(Int, Int, Int*) = nullptr;
    // Older libraries lack it; the program offers it but never calls it.
    Int (*SetVariable)(Int, Int, Int) = nullptr;

    explicit Functions(const std::string& file) : Library(file) {
        Library.Bind(OpenAIBAPI, "OpenAIBAPI");
        Library.Bind(CloseAIBAPI, "CloseAIBAPI");
        Library.Bind(GetAccessoryInfo, "GetAccessoryInfo");
        Library.Bind(UploadFPGAImage, "UploadFPGAImage");
        Library.Bind(WriteReg, "WriteReg");
        Library.Bind(ReadReg, "ReadReg");
        Library.Bind(ConfigureGPIO, "ConfigureGPIO");
        Library.Bind(SetGPO, "SetGPO");
        Library.Bind(ClearGPO, "ClearGPO");
        Library.Bind(SetExtGPO, "SetExtGPO");
        Library.Bind(ClearExtGPO, "ClearExtGPO");
        Library.Bind(GetGPI, "GetGPI");
        Library.Bind(SetDAC, "SetDAC");
        Library.Bind(GetADC, "GetADC");
        Library.Bind(WriteAIBInfo, "WriteAIBInfo");
        Library.Bind(WriteEEPROM, "WriteEEPROM");
        Library.Bind(ReadEEPROM, "ReadEEPROM");
        Library.Bind(DumpEEPROM, "DumpEEPROM");
        Library.Bind(MFCSetFlowrate, "MFCSetFlowrate");
        Library.Bind(MFCGetFlowrate, "MFCGetFlowrate");
        Library.Bind(MFCSetParameter, "MFCSetParameter");
        Library.Bind(MFCGetParameter, "MFCGetParameter");
        Library.Bind(GetVariable, "GetVariable");
        Library.BindOptional(SetVariable, "SetVariable");
    }
};

LoadedAIBControl::LoadedAIBControl(std::string file) : m_File(std::move(file)) {}

LoadedAIBControl::~LoadedAIBControl() = default;

const LoadedAIBControl::Functions& LoadedAIBControl::Bound() {
    if (!m_Functions)
        m_Functions = std::make_unique<Functions>(m_File);
    return *m_Functions;
}

Int LoadedAIBControl::OpenAIBAPI() {
    return Bound().OpenAIBAPI();
}

AIBStatus LoadedAIBControl::CloseAIBAPI() {
    return Bound().CloseAIBAPI();
}

AIBStatus LoadedAIBControl::GetAccessoryInfo(Int index, AccessoryInfoBlock& record) {
    return Bound().GetAccessoryInfo(index, &record);
}

AIBStatus LoadedAIBControl::UploadFPGAImage(Int index, const std::string& path) {
    return Bound().UploadFPGAImage(index, ToWindows1252(path).c_str());
}

AIBStatus LoadedAIBControl::WriteReg(Int index, Int address, Int value) {
    return Bound().WriteReg(index, address, value);
}

AIBStatus LoadedAIBControl::ReadReg(Int index, Int address, Int& value) {
    return Bound().ReadReg(index, address, &value);
}

AIBStatus LoadedAIBControl::ConfigureGPIO(Int index, Int mask) {
    return Bound().ConfigureGPIO(index, mask);
}

AIBStatus LoadedAIBControl::SetGPO(Int index, Int pin) {
    return Bound().SetGPO(index, pin);
}

AIBStatus LoadedAIBControl::ClearGPO(Int index, Int pin) {
    return Bound().ClearGPO(index, pin);
}

AIBStatus LoadedAIBControl::SetExtGPO(Int index, Int pin) {
    return Bound().SetExtGPO(index, pin);
}

AIBStatus LoadedAIBControl::ClearExtGPO(Int index, Int pin) {
    return Bound().ClearExtGPO(index, pin);
}

AIBStatus LoadedAIBControl::GetGPI(Int index, Int pin, Int& level) {
    return Bound().GetGPI(index, pin, &level);
}

AIBStatus LoadedAIBControl::SetDAC(Int index, Int channel, Int value) {
    return Bound().SetDAC(index, channel, value);
}

AIBStatus LoadedAIBControl::GetADC(Int index, Int channel, Int& value) {
    return Bound().GetADC(index, channel, &value);
}

AIBStatus LoadedAIBControl::WriteAIBInfo(Int index, Int first, Int code, Int serial) {
    return Bound().WriteAIBInfo(index, first, code, serial);
}

AIBStatus LoadedAIBControl::WriteEEPROM(Int index, Int address, Int word) {
    return Bound().WriteEEPROM(index, address, word);
}

AIBStatus LoadedAIBControl::ReadEEPROM(Int index, Int address, Int& word) {
    return Bound().ReadEEPROM(index, address, &word);
}

AIBStatus LoadedAIBControl::DumpEEPROM(Int index, const std::string& path) {
    return Bound().DumpEEPROM(index, ToWindows1252(path).c_str());
}

AIBStatus LoadedAIBControl::MFCSetFlowrate(Int index, Int channel, Int setPoint) {
    return Bound().MFCSetFlowrate(index, channel, setPoint);
}

AIBStatus LoadedAIBControl::MFCGetFlowrate(Int index, Int channel, Int& flow) {
    return Bound().MFCGetFlowrate(index, channel, &flow);
}

AIBStatus LoadedAIBControl::MFCSetParameter(Int index, const MFCParameter& parameter, Int value) {
    return Bound().MFCSetParameter(index, parameter.First, parameter.Second, parameter.Third,
                                   parameter.Fourth, value);
}

AIBStatus LoadedAIBControl::MFCGetParameter(Int index, const MFCParameter& parameter, Int& value) {
    return Bound().MFCGetParameter(index, parameter.First, parameter.Second, parameter.Third,
                                   parameter.Fourth, &value);
}

AIBStatus LoadedAIBControl::GetVariable(Int index, Int number, Int& value) {
    return Bound().GetVariable(index, number, &value);
}

AIBStatus LoadedAIBControl::SetVariable(Int index, Int number, Int value) {
    auto* const setVariable = Bound().SetVariable;
    return setVariable == nullptr ? Status::HardwareError : setVariable(index, number, value);
}

} // namespace ombrix
