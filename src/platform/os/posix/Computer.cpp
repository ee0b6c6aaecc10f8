#include "platform/os/Computer.h"

#include "platform/os/FolderDrive.h"

#include <climits>
#include <fmt/format.h>

#include <array>
#include <cstdlib>
#include <sys/utsname.h>
#include <unistd.h>

namespace ombrix {

namespace fs = std::filesystem;

fs::path ProgramFile() {
    return fs::canonical("/proc/self/exe");
}

std::int64_t ProcessId() {
    return ::getpid();
}

std::string ComputerName() {
    std::array<char, HOST_NAME_MAX + 1> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "unknown";
}

namespace {

/// The name that the system gives itself.
std::string SystemName() {
    constexpr std::string_view key = "PRETTY_NAME=";
    try {
        const std::string release = ReadWholeFile("/etc/os-release");
        const std::size_t start = release.find(key);
        if (start != std::string::npos)
            return release.substr(start + key.size(),
                                  release.find('\n', start) - start - key.size());
    } catch (const DriveError&) {
        return "unknown"; // not every system has that file
    }
    return "unknown";
}

} // namespace

std::string SystemText() {
    utsname kernel{};
    ::uname(&kernel);
    return fmt::format("{}, {} {} {}", SystemName(), kernel.sysname, kernel.release,
                       kernel.machine);
}

/// As the XDG base directories say.
fs::path UsersDataFolder() {
    if (const char* dataHome = std::getenv("XDG_DATA_HOME");
        dataHome != nullptr && *dataHome == '/')
        return dataHome;
    const char* home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? fs::path(home) / ".local" / "share" : fs::path();
}

fs::path BoardsFolder() {
    return "/var/tmp/ombrix-boards";
}

bool ErrorsGoToTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

void PrepareStandardStreams() {
    // They always do.
}

} // namespace ombrix
