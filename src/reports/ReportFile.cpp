#include "reports/ReportFile.h"

#include "platform/os/ProgramLog.h"
#include "platform/ports/FreePath.h"
#include "spreadsheet/Spreadsheet.h"

#include <cstdlib>

namespace ombrix {

OpenedWorkbook OpenWorkbookFromTemplate(Platform& world, const SpreadsheetLauncher& launcher,
                                        const std::string& templatePath) {
    OpenedWorkbook opened;
    try {
        opened.Application = launcher();
        if (!FindTemplateFile(world.Files, templatePath)) {
            world.Messages.Ask({"Unable to find File: \r\n\r\n  " + templatePath,
                                MessageIcon::Information, MessageButtons::Ok});
            return opened;
        }
        opened.Book = &opened.Application->Add(templatePath);
        opened.Sheet = &opened.Book->Sheet(1);
    } catch (const SpreadsheetError& error) {
        opened.Book = nullptr;
        opened.Error = error.what();
    }
    return opened;
}

OpenedWorkbook OpenExcel(OpenExcelView& view, Platform& world, const SpreadsheetLauncher& launcher,
                         const std::string& message, const std::string& templatePath) {
    view.Show(message);
    world.Events.ProcessPendingEvents();
    return OpenWorkbookFromTemplate(world, launcher, templatePath);
}

bool SaveWorkbookAs(Workbook& workbook, const std::string& path) {
    SpreadsheetApplication& application = workbook.Application();
    const bool knowsBinaryFormat = std::strtod(application.Version().c_str(), nullptr) >= 12.0;
    try {
        workbook.SaveAs(path, knowsBinaryFormat ? FileFormat::Excel8 : FileFormat::ByExtension);
    } catch (const SpreadsheetError&) {
        application.SetVisible(true);
    }
    return true;
}

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
