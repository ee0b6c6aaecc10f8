#include "spreadsheet/Spreadsheet.h"

namespace ombrix {

std::optional<std::string> FindTemplateFile(const Drive& files, std::string_view path) {
    std::string name(path);
    if (files.FileExists(name))
        return name;
    name += 'x';
    if (path.ends_with(".xlt") && files.FileExists(name))
        return name;
    return std::nullopt;
}

} // namespace ombrix
