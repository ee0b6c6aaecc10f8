#include "platform/os/Computer.h"

#include "platform/os/windows/WindowsApi.h"

#include <fmt/format.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>

namespace ombrix {

namespace fs = std::filesystem;

fs::path ProgramFile() {
    constexpr std::size_t longest = 32'768;
    std::wstring name(longest, L'\0');
    name.resize(::GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return name;
}

std::int64_t ProcessId() {
    return ::GetCurrentProcessId();
}

std::string ComputerName() {
    std::array<wchar_t, 256> name{};
    auto length = static_cast<DWORD>(name.size());
    const BOOL found = ::GetComputerNameExW(ComputerNameDnsHostname, name.data(), &length);
    return found != 0 ? Narrow({name.data(), length}) : "unknown";
}

std::string SystemText() {
    // The plain call tells programs of today that they run on a Windows of 2012.
    using GetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
    const auto getVersion = reinterpret_cast<GetVersion>(reinterpret_cast<void*>(
        ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (getVersion == nullptr || getVersion(&version) != 0)
        return "Windows";
    return fmt::format("Windows {}.{}.{} x86_64", version.dwMajorVersion, version.dwMinorVersion,
                       version.dwBuildNumber);
}

namespace {

/// The folder that a variable of the environment names; empty when it names none.
fs::path FolderIn(const wchar_t* variable) {
    const wchar_t* folder = ::_wgetenv(variable);
    return folder != nullptr && fs::path(folder).is_absolute() ? folder : fs::path();
}

} // namespace

fs::path UsersDataFolder() {
    return FolderIn(L"LOCALAPPDATA");
}

fs::path BoardsFolder() {
    const fs::path folder = FolderIn(L"ProgramData");
    return (folder.empty() ? fs::path(LR"(C:\ProgramData)") : folder) / L"ombrix-boards";
}

bool ErrorsGoToTerminal() {
    return ::_isatty(::_fileno(stderr)) != 0;
}

void PrepareStandardStreams() {
    // Bytes as they are: no CR before every LF.
    ::_setmode(::_fileno(stdout), _O_BINARY);
    ::_setmode(::_fileno(stderr), _O_BINARY);
    ::SetConsoleOutputCP(CP_UTF8);
    ::SetConsoleCP(CP_UTF8);
}

} // namespace ombrix
