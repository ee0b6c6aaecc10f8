#include "reports/KeptWorkbook.h"

#include "platform/os/TellOperator.h"
#include "platform/ports/FreePath.h"

namespace ombrix {

namespace {

constexpr std::string_view Extension = ".xlsx";

std::string KeptPath(const Drive& files, const std::string& fileName) {
    const std::string stem = fileName.substr(0, fileName.size() - Extension.size());
    return FreePath(files, R"(T:\)" + stem, Extension);
}

} // namespace

std::optional<std::filesystem::path> KeepWorkbook(Platform& world, Workbook& workbook,
                                                  const std::string& fileName) {
    try {
        const std::string file = KeptPath(world.Files, fileName);
        workbook.SaveAs(file, FileFormat::ByExtension);
        const std::filesystem::path path = world.Files.RealPath(file);
        TellOperator(world,
                     "The report has been kept in the folder for temporary files:\r\n\r\n   " +
                         path.string() + "\r\n\r\nPlease move it to a safe place.",
                     MessageIcon::Information);
        return path;
    } catch (const std::exception& error) {
        TellOperator(world,
                     std::string("The report could not be kept in the folder for temporary files "
                                 "either:\r\n\r\n") +
                         error.what(),
                     MessageIcon::Critical);
        return std::nullopt;
    }
}

} // namespace ombrix
