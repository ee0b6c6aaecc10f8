#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace ombrix {

/// What the operating system says of this computer, its user and this program.

/// The file of the program that runs.
std::filesystem::path ProgramFile();
std::int64_t ProcessId();
std::string ComputerName();
/// Name, version and machine of the operating system, for people.
std::string SystemText();
/// Where the user's programs keep their data, as the system has it; empty for a user who has no
/// such place.
std::filesystem::path UsersDataFolder();
/// Where programs of all users tell each other of this machine's boards; what is in it outlives a
/// failure of the power.
std::filesystem::path BoardsFolder();
/// Whether somebody sees standard error as it is written.
bool ErrorsGoToTerminal();
/// Has standard output and standard error take texts as they are: UTF-8, with the line ends that
/// stand in them.
void PrepareStandardStreams();

} // namespace ombrix
