#include "reports/OpenExcel.h"

#include "spreadsheet/TemplateFile.h"

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

} // namespace ombrix
