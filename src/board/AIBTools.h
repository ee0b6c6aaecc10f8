#pragma once

#include "platform/ports/Drive.h"
#include "platform/ports/Platform.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace ombrix {

/// Every occurrence of a text replaced by another.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view by);

/// The template with "[1]", "[2]", … replaced by the first, second, … value.
std::string FormatArgs(std::string_view text, std::initializer_list<std::string_view> values);

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

/// The two places of the instrument's system folder, in the order in which they are searched.
inline constexpr std::array<std::string_view, 2> SystemFolders = {
    R"(C:\Program Files\Pulvatron\System\)", R"(C:\Program Files (x86)\Pulvatron\System\)"};

/// Spreadsheet column letters of a column, from 0: A … Z, AA … ZZ (701), AAA ….
std::string ColumnLetters(int column);

/// Spreadsheet address of a cell, column from 0: column 0, row 5 is A5.
std::string CellAddress(int column, std::int64_t row);

/// Least-squares line y = Slope · x + Intercept through rows first to last of a table of
/// (x, y), in Single arithmetic. False without rows; false, with the line unchanged, when all
/// x are equal.
struct Line {
    float Slope = 0.0F;
    float Intercept = 0.0F;
};
bool LinearFit(std::span<const std::array<std::int32_t, 2>> table, int first, int last, Line& line);

/// Opens a file or folder with its program; true when the desktop could.
bool ShellOpenFile(const Drive& drive, DocumentOpener& opener, std::string_view path);

} // namespace ombrix
