#pragma once

#include "platform/ports/Platform.h"

#include <memory>
#include <string>
#include <string_view>

namespace ombrix {

/// The path, ended by a backslash.
std::string AddBackslash(std::string_view path);

/// The text up to and including the last separator; the whole text if there is none.
std::string LeftOfLast(std::string_view text, std::string_view separator);

/// The folder of a path, ended by a backslash. A path that contains "." is taken as a file's.
std::string GetFolderOfPath(std::string_view path);

enum class FolderMode { Query = 0, Create = 1, Ask = 2 };

/// Whether the folder of a path exists, after creating it where the mode says so.
bool CheckFolderExists(Drive& drive, Operator& messages, std::string_view path, FolderMode mode);

/// Creates a folder and those above it; true when it exists afterwards.
bool CreateFolderPath(Drive& drive, std::string_view path);

/// Path of a file in a sub-folder of the instrument's system folder; makes the sub-folder.
std::string GetSystemFolder(Drive& drive, std::string_view subFolder, std::string_view fileName);

/// The path, where there is such a file with " (2)", " (3)", … before its extension.
std::string FreePath(const Drive& files, std::string_view path);

/// Creates a text file under its free path. @throws DriveError
std::unique_ptr<OutputFile> OpenUnderFreeName(Drive& files, std::string_view path);

/// Stores a whole file under its free path. @return that path @throws DriveError
std::string StoreUnderFreeName(Drive& files, std::string_view path, std::string_view content);

/// A message that names a path on a line of its own, with its place on this computer: a path of the
/// program's drives ("C:\ACUs\…") gets the real one beneath the text.
Message WithPlace(Message message, const Drive& files);

/// Opens a file or folder with the program that the desktop has for it, or tells that it has none.
void OpenOrTell(Platform& world, const std::filesystem::path& path);

/// Opens a file or folder with its program; true when the desktop could.
bool ShellOpenFile(const Drive& drive, DocumentOpener& opener, std::string_view path);

} // namespace ombrix
