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
/// Where the user's programs keep their data, as the system has it.
std::filesystem::path UsersDataFolder();
/// Whether somebody sees standard error as it is written.
bool ErrorsGoToTerminal();
/// Has standard output and standard error take texts as they are: UTF-8, with the line ends that
/// stand in them.
void PrepareStandardStreams();

} // namespace ombrix
