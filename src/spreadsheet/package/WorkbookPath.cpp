#include "spreadsheet/package/WorkbookPath.h"

#include "platform/ports/FreePath.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix::xlsx {

namespace {

constexpr std::string_view Separators = "\\/";

std::string Extension(std::string_view path) {
    const std::string name = FileNameOf(path);
    const std::size_t dot = name.find_last_of('.');
    std::string extension = dot == std::string::npos ? "" : name.substr(dot);
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return extension;
}

bool IsComplete(std::string_view path) {
    return path.find_first_of(Separators) == 0 || (path.size() > 1 && path[1] == ':');
}

} // namespace

std::string FileNameOf(std::string_view path) {
    return std::string(path.substr(path.find_last_of(Separators) + 1)); // npos + 1 is 0
}

std::string FullPath(std::string_view path, std::string_view currentFolder) {
    if (FileNameOf(path).empty())
        throw SpreadsheetError("it needs a file name");
    if (IsComplete(path))
        return std::string(path);
    const bool ends =
        !currentFolder.empty() && Separators.find(currentFolder.back()) != std::string_view::npos;
    return fmt::format("{}{}{}", currentFolder, ends ? "" : "\\", path);
}

bool IsBinary(std::string_view path, FileFormat format) {
    const std::string extension = Extension(path);
    if (format == FileFormat::Excel8 || extension == ".xls")
        return true;
    if (extension == ".xlsx")
        return false;
    throw SpreadsheetError("the name must end in .xlsx or .xls");
}

std::string FreePathBeside(std::string_view path, std::string_view currentFolder,
                           std::string_view otherwise, const Drive& files) {
    std::string stem = FullPath(FileNameOf(path).empty() ? otherwise : path, currentFolder);
    stem.resize(stem.size() - Extension(stem).size());
    return FreePath(files, stem, ".xlsx");
}

} // namespace ombrix::xlsx
